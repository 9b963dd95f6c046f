#include "embedded/formula_context/kept_formulas.h"

#include <QXmlStreamReader>

#include "embedded/formula/compiled/stored_formula.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr qsizetype kDeepest = 256;  // elements; an import takes no more

struct Element {
  QString name, called, event;
};

// An attribute by which people know the element; "" when it has none.
QString calledBy(const QXmlStreamAttributes& attributes) {
  for (const QString& known : {u"title"_s, u"name"_s, u"itemname"_s, u"id"_s})
    if (const QStringView value = attributes.value(known); !value.isEmpty()) return value.toString();
  return {};
}

bool isCode(const Element& element) {
  return element.name == u"code";
}

class ElementFormulas {
 public:
  explicit ElementFormulas(const QString& xml) : xml_(xml) {}
  QVector<KeptFormula> take();

 private:
  void begin();
  formula::CompiledReading readFormula();
  QString formulaText();
  QString place() const;
  bool isReadElsewhere() const;

  QXmlStreamReader xml_;
  QVector<Element> around_;  // from the kept element inwards
  QVector<KeptFormula> found_;
};

QVector<KeptFormula> ElementFormulas::take() {
  while (!xml_.atEnd() && around_.size() < kDeepest) {
    switch (xml_.readNext()) {
      case QXmlStreamReader::StartElement:
        begin();
        break;
      case QXmlStreamReader::EndElement:
        if (!around_.isEmpty()) around_.removeLast();
        break;
      // What an import keeps declares nothing.
      case QXmlStreamReader::DTD:
        return std::move(found_);
      default:
        break;
    }
  }
  return std::move(found_);
}

void ElementFormulas::begin() {
  if (xml_.name() != u"formula") {
    const QXmlStreamAttributes attributes = xml_.attributes();
    around_.push_back(
        {xml_.name().toString(), calledBy(attributes), attributes.value(u"event"_s).toString()});
    return;
  }
  const formula::CompiledReading reading = readFormula();
  if (!xml_.hasError()) found_.push_back({place(), reading, isReadElsewhere()});
}

formula::CompiledReading ElementFormulas::readFormula() {
  const bool compiled = xml_.attributes().value(u"compiled"_s) == u"true";
  const QString text = formulaText();
  if (compiled) return formula::readStored(QByteArray::fromBase64(text.toLatin1()));
  return formula::sourceReading(text);
}

// Up to the end tag; the reader writes line breaks of some texts as elements.
QString ElementFormulas::formulaText() {
  QString text;
  for (int depth = 1; depth > 0 && !xml_.atEnd();) {
    switch (xml_.readNext()) {
      case QXmlStreamReader::StartElement:
        ++depth;
        if (xml_.name() == u"break") text += u'\n';
        break;
      case QXmlStreamReader::EndElement:
        --depth;
        break;
      case QXmlStreamReader::Characters:
        text += xml_.text();
        break;
      default:
        break;
    }
  }
  return text;
}

// The nearest element that has a name, the one that the formula belongs to, and the event.
QString ElementFormulas::place() const {
  QStringList words;
  QString event;
  for (auto element = around_.crbegin(); element != around_.crend(); ++element) {
    if (isCode(*element)) {
      if (event.isEmpty()) event = element->event;
      continue;
    }
    if (element->called.isEmpty()) {
      if (words.isEmpty()) words.push_front(element->name);
      continue;
    }
    words.push_front(element->name + u' ' + element->called);
    break;
  }
  if (!event.isEmpty()) words.push_back(event == u"hidewhen" ? u"hide-when"_s : event);
  return words.join(u", "_s);
}

bool ElementFormulas::isReadElsewhere() const {
  if (around_.isEmpty() || !isCode(around_.last())) return false;
  if (around_.size() == 1) return true;
  const QString& event = around_.last().event;
  const QString& owner = around_[around_.size() - 2].name;
  if (owner == u"column") return event == u"value";
  return owner == u"field" &&
         (event == u"defaultvalue" || event == u"inputtranslation" || event == u"inputvalidation");
}

}  // namespace

QVector<KeptFormula> formulasOfElement(const QString& xml) {
  return ElementFormulas(xml).take();
}

}  // namespace lens

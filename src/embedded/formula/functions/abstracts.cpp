#include "embedded/formula/functions/abstracts.h"

#include "embedded/formula/formula.h"
#include "embedded/formula/functions/text_units.h"

namespace lens::formula {
namespace {

constexpr qsizetype kSimpleSize = 100;
constexpr int kSimpleParagraphs = 2;

// The texts of the named items, each on a line of its own. Items without text have none to give.
QString itemTexts(const Call& call, const Value& names) {
  const Document& document = call.document();
  QStringList texts;
  for (qsizetype i = 0; i < names.count(); ++i) {
    call.charge(1);
    const Name name(names.text(i).toString());
    QString text = document.richText(name);
    Value value;
    if (text.isEmpty() && call.evaluation().item(name, value) && value.isText())
      text = value.toTexts().join(u' ');
    if (!text.isEmpty()) texts.append(text);
  }
  return texts.join(u'\n');
}

// How far an abstract may go to save room.
struct Shortening {
  bool dropsVowels = false, dropsPunctuation = false, joinsBlanks = false, capitals = false;
  // Only when the text does not fit as it is.
  bool onlyWhenNeeded = false;

  explicit Shortening(const Value& keywords) {
    for (qsizetype i = 0; i < keywords.count(); ++i) {
      const QStringView word = keywords.text(i);
      if (word == u"DROPVOWELS") dropsVowels = true;
      if (word == u"TRIMPUNCT") dropsPunctuation = true;
      if (word == u"TRIMWHITE") joinsBlanks = true;
      if (word == u"INITCAPS" || word == u"INITIALCAPS") capitals = true;
      if (word == u"TRYFIT") onlyWhenNeeded = true;
    }
  }
};

bool isVowel(QChar c) {
  return QStringView(u"aeiouAEIOU").contains(c);
}

QString shortened(QStringView text, const Shortening& how) {
  QString result;
  result.reserve(text.size());
  bool insideWord = false;
  for (const QChar c : text) {
    const bool letter = c.isLetterOrNumber() || c.isSurrogate(), space = c.isSpace();
    const bool dropped = (how.dropsVowels && insideWord && isVowel(c)) ||
                         (how.dropsPunctuation && !letter && !space) ||
                         (how.joinsBlanks && space && (result.isEmpty() || result.back().isSpace()));
    if (!dropped) result.append(how.capitals && letter && !insideWord ? c.toUpper() : c);
    insideWord = letter;
  }
  return result;
}

QStringView cut(QStringView text, qsizetype characters) {
  return text.first(forward(text, 0, characters));
}

}  // namespace

Value abstract(const Call& call) {
  const qsizetype size = countOf(call[1].number());
  if (size <= 0) return Value::error(fault::AbstractSize);
  const Shortening how(call[0]);
  const QString beginning = call[2].text().toString();
  QString text = itemTexts(call, call[3]);
  call.charge(text.size() / 4);
  const bool fits = characterCount(beginning) + characterCount(text) <= size;
  if (!how.onlyWhenNeeded || !fits) text = shortened(text, how);
  const QString all = beginning + text;
  return Value::text(cut(all, size));
}

Value abstractSimple(const Call& call) {
  const QString all = itemTexts(call, call[0]);
  qsizetype end = -1;
  for (int paragraph = 0; paragraph < kSimpleParagraphs; ++paragraph) {
    end = all.indexOf(u'\n', end + 1);
    if (end < 0) break;
  }
  return Value::text(cut(end < 0 ? QStringView(all) : QStringView(all).first(end), kSimpleSize));
}

}  // namespace lens::formula

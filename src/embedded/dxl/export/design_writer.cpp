#include "embedded/dxl/export/design_writer.h"

#include <QSet>
#include <algorithm>

#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/export/design_children.h"
#include "embedded/dxl/export/formula_writer.h"
#include "embedded/dxl/export/kept_elements.h"
#include "embedded/dxl/export/native_values.h"
#include "embedded/dxl/export/note_parts.h"
#include "embedded/dxl/export/read_back.h"
#include "embedded/dxl/export/rich_text_places.h"
#include "notes/literals.h"

namespace lens {

namespace {

constexpr quint16 kDesignMarks = noteclass::Default | noteclass::Private;

bool cameAsElement(const Note& note) {
  const bool kept = std::any_of(note.items.cbegin(), note.items.cend(),
                                [](const Item& item) { return item.name.startsWith(kKeptPrefix); });
  return kept || hasSourceInViewFormat(note) || hasSourceInAction(note) || hasSourceInBody(note);
}

// What an import kept of the element, by where it goes.
struct KeptParts {
  QStringList columns, schedules, attributes;
  QVector<Item> body;
};

QString eventOf(const QString& code) {
  QXmlStreamReader xml(code);
  xml.readNextStartElement();
  return xml.attributes().value(u"event"_s).toString();
}

QString eventOf(const DesignKind& kind, const Item& item) {
  if (item.flags != itemflag::Summary || item.value.size() < 2 || item.type() != itemtype::Formula) return {};
  if (kind.noteClass == noteclass::View && item.name == u"$Formula") return u"selection"_s;
  if (kind.noteClass == noteclass::View && item.name == u"$FormFormula") return u"form"_s;
  if (kind.noteClass == noteclass::Form && item.name == u"$WindowTitle") return u"windowtitle"_s;
  if (kind.noteClass == noteclass::Form && item.name == u"$HTMLHeadTag") return u"htmlhead"_s;
  return {};
}

void takeKept(DesignContent& content, const Item& item, KeptParts& kept) {
  const QString element = item.name.mid(kKeptPrefix.size());
  if (element == u"attributes") {
    constexpr qsizetype kMost = 1000;  // far more than an element has
    if (item.flags == 0 && item.type() == itemtype::TextList) nativeTexts(item.data(), kept.attributes);
    if (kept.attributes.size() > kMost) kept.attributes.clear();
    return;
  }
  const QString xml = keptElement(item, element);
  if (xml.isEmpty()) return;
  const bool view = content.is(u"view") || content.is(u"folder");
  if (view && element == u"column")
    kept.columns.push_back(xml);
  else if (content.is(u"agent") && element == u"schedule")
    kept.schedules.push_back(xml);
  else
    content.add(element, xml);
}

QSet<QString> keptEvents(const Note& note) {
  QSet<QString> events;
  for (const Item& item : note.items) {
    if (item.name == u"$DXL_code") events.insert(eventOf(keptElement(item, u"code")));
  }
  return events;
}

// Kept elements and formulas in the order of their items; the text of a form takes what stands in it.
KeptParts addItems(DesignContent& content) {
  KeptParts kept;
  const Note& note = content.note();
  const QHash<qsizetype, qsizetype> groups = keptGroups(note, {});
  const QSet<QString> events = keptEvents(note);
  for (qsizetype place = 0; place < note.items.size(); ++place) {
    const Item& item = note.items[place];
    const qsizetype group = groups.value(place);
    const QString event = eventOf(content.kind(), item);
    if (group > 0) {
      if (note.items[place + group].name == u"$Body") kept.body = note.items.sliced(place, group);
      place += group - 1;
    } else if (item.name.startsWith(kKeptPrefix)) {
      takeKept(content, item, kept);
    } else if (!event.isEmpty() && !events.contains(event)) {
      content.write(u"code"_s, [&](DxlWriter& out) { writeFormulaCode(out, event, item.data()); });
    }
  }
  return kept;
}

void addTitle(DesignContent& content) {
  const DesignKind& kind = content.kind();
  const bool untitled = kind.noteClass == noteclass::About || kind.noteClass == noteclass::Using;
  if (untitled || content.is(u"agentdata") || !QStringView(kind.title).isEmpty()) return;
  const QString title = content.note().text(u"$TITLE");
  content.attribute(u"name"_s, title.section(u'|', 0, 0));
  if (title.contains(u'|')) content.attribute(u"alias"_s, title.section(u'|', 1));
  if (content.note().has(u"$Comment")) content.attribute(u"comment"_s, content.note().text(u"$Comment"));
}

void addAttributes(DesignContent& content) {
  const Note& note = content.note();
  const auto fromItem = [&](const QString& attribute, QStringView item) {
    if (note.has(item)) content.attribute(attribute, note.text(item));
  };
  fromItem(u"designerversion"_s, u"$DesignerVersion");
  fromItem(u"fromtemplate"_s, u"$Class");
  fromItem(u"language"_s, u"$Language");
  if (note.text(u"$PublicAccess") == u"1") content.attribute(u"publicaccess"_s, u"true"_s);
  if (note.header.noteClass & noteclass::Default) content.attribute(u"default"_s, u"true"_s);
  if (note.header.noteClass & noteclass::Private) content.attribute(u"private"_s, u"true"_s);
  QString flags = note.text(u"$Flags");
  if (flags.startsWith(QStringView(content.kind().letters)))
    flags = flags.sliced(QStringView(content.kind().letters).size());
  for (const QString& word : letterAttributes(flags, note.text(u"$WebFlags")))
    content.attribute(word.section(u'=', 0, 0), word.section(u'=', 1));
}

void addContent(DesignContent& content) {
  const KeptParts kept = addItems(content);
  addTitle(content);
  for (const QString& word : kept.attributes)
    content.attribute(word.section(u'=', 0, 0), word.section(u'=', 1));
  addAttributes(content);
  if (content.is(u"view") || content.is(u"folder"))
    addViewContent(content, kept.columns);
  else if (content.is(u"agent"))
    addAgentContent(content, kept.schedules);
  else if (content.is(u"imageresource") || content.is(u"fileresource") || content.is(u"stylesheetresource"))
    addResourceContent(content);
  else if (content.is(u"scriptlibrary") || content.is(u"databasescript"))
    addLibraryContent(content);
  else if (const Item* const body = content.note().find(u"$Body"))
    addFormContent(content, kept.body, *body);
}

// What an import makes of the element with these items, of which the element that is read tells the places.
bool readDesignBack(const DesignContent& content, const QVector<Item>& items, Note& note) {
  const auto write = [&](DxlWriter& out) {
    out.startDocument();
    content.begin(out);
    out.declareMarks();
    out.verbatim(content.children());
    for (qsizetype i = 0; i < items.size(); ++i) {
      out.begin(u"item"_s);
      out.end();
    }
    out.end();
    return true;
  };
  qsizetype next = 0;
  const auto read = [&](ReadContext& context) {
    context.in.next();
    readDesignElement(content.kind(), context, note, [&] {
      if (!context.in.is(u"item")) return false;
      context.in.skip();
      note.items.push_back(items[next++]);
      return true;
    });
    context.in.finish();
    return true;
  };
  return comesBack(write, read);
}

// Where the items of the other note stand in the note, each place once; -1 for those that do not.
QVector<qsizetype> placesIn(const Note& other, const Note& note) {
  const auto key = [](const Item& item) {
    return std::pair(item.name, QByteArray::number(item.flags) + ' ' + item.value);
  };
  QHash<std::pair<QString, QByteArray>, QVector<qsizetype>> free;
  for (qsizetype place = note.items.size() - 1; place >= 0; --place)
    free[key(note.items[place])].push_back(place);
  QVector<qsizetype> places;
  for (const Item& item : other.items) {
    const auto found = free.find(key(item));
    const bool there = found != free.end() && !found->isEmpty();
    places.push_back(there ? found->takeLast() : -1);
  }
  return places;
}

// Items that the element does not stand for, and the order of all when it comes out as another one.
struct Rest {
  QVector<Item> items;
  QString order;
};

bool findRest(const DesignContent& content, Rest& rest) {
  const Note& note = content.note();
  Note made, again;
  if (!readDesignBack(content, {}, made)) return false;
  QVector<bool> told(note.items.size());
  for (const qsizetype place : placesIn(made, note)) {
    if (place >= 0) told[place] = true;
  }
  for (qsizetype place = 0; place < note.items.size(); ++place) {
    if (!told[place]) rest.items.push_back(note.items[place]);
  }
  if (!readDesignBack(content, rest.items, again) || again.header.noteClass != note.header.noteClass ||
      again.items.size() != note.items.size())
    return false;
  const QVector<qsizetype> order = placesIn(again, note);
  if (order.contains(-1)) return false;
  QStringList words;
  for (const qsizetype place : order) words.push_back(QString::number(place));
  if (!std::is_sorted(order.cbegin(), order.cend())) rest.order = words.join(u' ');
  return true;
}

}  // namespace

bool writeDesign(ExportContext& context, const Note& note) {
  const quint16 noteClass = noteclass::base(note.header.noteClass);
  if (noteClass == noteclass::Document || !note.header.parent.isNull() || !cameAsElement(note)) return false;
  if (note.header.noteClass & ~(noteClass | kDesignMarks)) return false;
  const DesignKind* const kind = designKindOf(noteClass, note.text(u"$Flags"));
  if (!kind) return false;
  DesignContent content(*kind, note);
  addContent(content);
  Rest rest;
  if (!content.isComplete() || !findRest(content, rest)) return false;
  DxlWriter& out = context.out;
  content.begin(out);
  if (!rest.order.isEmpty()) out.mark(exactmark::kOrder, rest.order);
  out.layout();
  writeNoteInfo(out, note.header);
  out.verbatim(content.children());
  Note others;
  others.header.noteClass = note.header.noteClass;
  others.items = rest.items;
  writeItems(context, others, {}, 0);
  out.end();
  out.layout();
  out.check();
  return true;
}

}  // namespace lens

#include "embedded/dxl/export/kept_elements.h"

#include <QBuffer>
#include <algorithm>

#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/export/native_values.h"
#include "embedded/dxl/import_context.h"
#include "notes/literals.h"

namespace lens {

namespace {

// Those of "database" that stand for properties.
bool isProperty(const QString& attribute) {
  for (const QStringView known : {u"title", u"templatename", u"fromtemplate", u"categories", u"replicaid",
                                  u"version", u"maintenanceversion", u"milestonebuild", u"path"}) {
    if (attribute == known) return true;
  }
  return false;
}

bool isPlainName(const QString& name) {
  return !name.isEmpty() && std::all_of(name.cbegin(), name.cend(), [](QChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9');
  }) && name[0].isLetter();
}

bool keptAttributes(const Item& item, QStringList& words) {
  if (item.flags != 0 || item.type() != itemtype::TextList || !nativeTexts(item.data(), words)) return false;
  QStringList names;
  for (const QString& word : std::as_const(words)) {
    const QString name = word.section(u'=', 0, 0);
    if (!isPlainName(name) || isProperty(name) || names.contains(name) || !isXmlText(word)) return false;
    names.push_back(name);
  }
  return !words.isEmpty();
}

}  // namespace

QString keptElement(const Item& item, QStringView element) {
  QString xml;
  const bool kept = item.name == kKeptPrefix.toString() + element.toString() && item.flags == 0 &&
                    item.type() == itemtype::Text && nativeText(item.data(), xml) && isXmlText(xml);
  if (!kept) return {};
  QByteArray bytes = xml.toUtf8();
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::ReadOnly);
  DxlSource source(buffer);
  DxlReader in(source);
  try {
    in.next();
    if (!in.is(element) || !in.namespaceUri().isEmpty()) return {};
    in.startRecording();
    in.skip();
    const QString again = in.stopRecording();
    in.finish();
    return again == xml ? xml : QString();
  } catch (const DxlFault&) {
    return {};
  }
}

KeptSettings keptSettings(const Note& icon) {
  KeptSettings settings;
  const auto last = [&]() -> const Item* {
    const qsizetype place = icon.items.size() - settings.items - 1;
    return place >= 0 ? &icon.items[place] : nullptr;
  };
  for (const QStringView element : {u"launchsettings", u"fulltextsettings"}) {
    const QString xml = last() ? keptElement(*last(), element) : QString();
    if (xml.isEmpty()) continue;
    settings.elements.prepend(xml);
    ++settings.items;
  }
  const Item* const item = last();
  if (item && item->name == u"$DXL_attributes" && keptAttributes(*item, settings.attributes))
    ++settings.items;
  else
    settings.attributes.clear();
  return settings;
}

}  // namespace lens

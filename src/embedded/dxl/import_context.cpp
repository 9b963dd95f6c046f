#include "embedded/dxl/import_context.h"

#include <algorithm>

namespace lens {

void keepXml(ImportContext& context, Note& note, const QString& element, const QString& xml) {
  note.add(QStringLiteral("$DXL_") + element, 0, storedTextValue(xml));
  context.findings.keptRaw(QStringLiteral("element \"%1\"").arg(element));
}

void keepElement(ImportContext& context, Note& note) {
  if (context.in.recording()) {
    // It stands in the record of an element around it already.
    context.in.skip();
    return;
  }
  const QString element = context.in.name().toString();
  context.in.startRecording();
  context.in.skip();
  keepXml(context, note, element, context.in.stopRecording());
}

QByteArray storedTextValue(QStringView text) {
  QByteArray value = textValue(text);
  if (text.contains(u'\n')) {
    // The two bytes of the type word stay; the byte of a line feed is no part of another character.
    char* bytes = value.data();
    std::replace(bytes + 2, bytes + value.size(), '\n', '\0');
  }
  return value;
}

QByteArray storedTextListValue(const QStringList& texts) {
  QStringList stored = texts;
  for (QString& text : stored) text.replace(QChar(u'\n'), QChar(u'\0'));
  return textListValue(stored);
}

quint16 itemFlags(const DxlReader& in) {
  quint16 flags = 0;
  const QXmlStreamAttributes attributes = in.attributes();
  for (const QXmlStreamAttribute& a : attributes) {
    const QStringView name = a.name();
    if (a.value() != u"true") continue;
    if (name == u"sign")
      flags |= itemflag::Sign;
    else if (name == u"seal" || name == u"sealed")
      flags |= itemflag::Seal;
    else if (name == u"summary")
      flags |= itemflag::Summary;
    else if (name == u"authors")
      flags |= itemflag::Authors | itemflag::Names;
    else if (name == u"names")
      flags |= itemflag::Names;
    else if (name == u"placeholder")
      flags |= itemflag::Placeholder;
    else if (name == u"protected")
      flags |= itemflag::Protected;
    else if (name == u"readers")
      flags |= itemflag::Readers | itemflag::Names;
    else if (name == u"unchanged")
      flags |= itemflag::Unchanged;
  }
  return flags;
}

}  // namespace lens

#include "embedded/dxl/import_context.h"

#include <algorithm>

#include "notes/literals.h"

namespace lens {

void keepXml(ReadContext& context, Note& note, const QString& element, const QString& xml) {
  note.add(u"$DXL_"_s + element, 0, storedTextValue(xml));
  context.findings.keptRaw(u"element \"%1\""_s.arg(element));
}

void keepElement(ReadContext& context, Note& note) {
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

}  // namespace lens

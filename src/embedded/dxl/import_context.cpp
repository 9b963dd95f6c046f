#include "embedded/dxl/import_context.h"

#include "embedded/format/lmbcs.h"
#include "notes/literals.h"

namespace lens {

void keepXml(ReadContext& context, Note& note, const QString& element, const QString& xml) {
  note.add(kKeptPrefix.toString() + element, 0, storedTextValue(xml));
  context.findings.keptRaw(u"element \"%1\""_s.arg(element));
}

void keepUnlessRead(ReadContext& context, Note& note, const QString& element, bool recorded) {
  if (!recorded) return;
  bool complete = false;
  const QString xml = context.in.stopRecording(&complete);
  if (!complete) keepXml(context, note, element, xml);
}

void keepElement(ReadContext& context, Note& note) {
  if (context.in.recording()) {
    // It stands in the record of an element around it already.
    context.in.passOver();
    return;
  }
  const QString element = context.in.name().toString();
  context.in.startRecording();
  context.in.skip();
  keepXml(context, note, element, context.in.stopRecording());
}

QByteArray storedTextValue(QStringView text) {
  return text.contains(u'\n') ? textValue(withStoredBreaks(text.toString())) : textValue(text);
}

QByteArray storedTextListValue(const QStringList& texts) {
  QStringList stored;
  stored.reserve(texts.size());
  for (const QString& text : texts) stored.append(withStoredBreaks(text));
  return textListValue(stored);
}

}  // namespace lens

#include "embedded/dxl/acl_element.h"

#include "embedded/dxl/dxl_datetime.h"
#include "embedded/dxl/exact_marks.h"
#include "notes/literals.h"

namespace lens {

namespace {

QString readAclEntry(ReadContext& context, Note& note) {
  DxlReader& in = context.in;
  QStringList words{in.attribute(u"name")};
  words += in.takeUnread();
  QStringList roles;
  while (in.nextChild()) {
    if (in.is(u"role"))
      roles.push_back(in.readText());
    else
      keepElement(context, note);
  }
  if (!roles.isEmpty()) words.push_back(u"roles="_s + roles.join(u','));
  return words.join(u"; "_s);
}

// One line of the list's history: its attributes, then its text.
QString readLogEntry(ReadContext& context, Note& note) {
  DxlReader& in = context.in;
  QStringList words = in.takeUnread();
  for (;;) {
    const DxlReader::Token token = in.next();
    if (token == QXmlStreamReader::EndElement) return words.join(u"; "_s);
    if (token == QXmlStreamReader::StartElement)
      keepElement(context, note);
    else if (!in.text().trimmed().isEmpty())
      words.push_back(in.text().toString());
  }
}

}  // namespace

bool readAclHeader(const DxlReader& in, NoteHeader& header) {
  QString text;
  if (!readMark(in, exactmark::kHeader, text)) return false;
  const QStringList words = text.split(u' ');
  bool sequence = false, classed = false;
  header.sequence = words.value(1).toUInt(&sequence);
  header.noteClass = words.value(2).toUShort(&classed, 16);
  bool good = words.size() == 8 && sequence && classed && Unid::parse(words[0], header.unid) &&
              noteclass::base(header.noteClass) == noteclass::Acl;
  TimeDate* const times[] = {&header.sequenceTime, &header.created, &header.modified, &header.accessed,
                             &header.added};
  for (int i = 0; good && i < 5; ++i) good = parseTimeDateHex(words[3 + i], *times[i]);
  if (!good) in.fail(u"\"%1\" tells of no note"_s.arg(text.left(200)));
  return true;
}

bool readAcl(ReadContext& context, Note& note) {
  DxlReader& in = context.in;
  note.header.noteClass = noteclass::Acl;
  const bool marked = readAclHeader(in, note.header);
  QStringList entries, roles, log;
  const QStringList attributes = in.takeUnread();
  while (in.nextChild()) {
    if (in.is(u"aclentry"))
      entries.push_back(readAclEntry(context, note));
    else if (in.is(u"role"))
      roles.push_back(in.readText());
    else if (in.is(u"logentry"))
      log.push_back(readLogEntry(context, note));
    else
      keepElement(context, note);
  }
  note.add(u"$ACLEntries"_s, itemflag::Summary, storedTextListValue(entries));
  note.add(u"$ACLRoles"_s, itemflag::Summary, storedTextListValue(roles));
  note.add(u"$ACLLog"_s, 0, storedTextListValue(log));
  note.add(u"$ACLAttributes"_s, 0, storedTextListValue(attributes));
  context.findings.keptRaw(u"access control list as text"_s);
  return marked;
}

}  // namespace lens

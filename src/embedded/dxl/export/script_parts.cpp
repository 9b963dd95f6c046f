#include "embedded/dxl/export/script_parts.h"

#include "notes/literals.h"

namespace lens {

namespace {

constexpr QStringView kPartHead = u"'++LotusScript Development Environment:2:";

// "5:(Options):0:3": kind, name of the part, a zero, lines.
bool readPartHead(const QString& line, QString& event, qsizetype& lines) {
  const QStringList words = line.split(u':');
  if (words.size() < 4) return false;
  bool number = false;
  lines = words.last().toLongLong(&number);
  event = words.sliced(1, words.size() - 3).join(u':');
  if (event == u"(Options)")
    event = u"options"_s;
  else if (event == u"(Declarations)")
    event = u"declarations"_s;
  else if (!event.isEmpty())
    event[0] = event[0].toLower();
  return number;
}

}  // namespace

void addScriptParts(DesignContent& content, const QString& script) {
  QStringList parts = script.split(kPartHead.toString());
  if (parts.size() < 2 || !parts.takeFirst().isEmpty()) return;
  for (const QString& part : std::as_const(parts)) {
    const qsizetype line = part.indexOf(u'\n');
    QString event;
    qsizetype lines = 0;
    if (line < 0 || !readPartHead(part.first(line), event, lines)) return;
    QString source = part.sliced(line + 1);
    // A line end that the head does not count was added to the last line.
    if (source.count(u'\n') == lines && source.endsWith(u'\n')) source.chop(1);
    content.write(u"code"_s, [&](DxlWriter& out) {
      out.begin(u"code"_s);
      out.attribute(u"event"_s, event);
      out.begin(u"lotusscript"_s);
      out.literal(source);
      out.end();
      out.end();
    });
  }
}

}  // namespace lens

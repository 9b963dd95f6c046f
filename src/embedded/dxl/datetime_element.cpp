#include "embedded/dxl/datetime_element.h"

#include "embedded/dxl/dxl_datetime.h"
#include "embedded/dxl/exact_marks.h"
#include "notes/literals.h"

namespace lens {

TimeDate readDatetime(ReadContext& context, const QString& what) {
  const bool dst = context.in.flag(u"dst");
  QString exact;
  const bool marked = readMark(context.in, exactmark::kTime, exact);
  const QString& text = context.in.readText();
  TimeDate time;
  if (marked) {
    if (!parseTimeDateHex(exact, time)) context.in.fail(u"%1: \"%2\" is no time"_s.arg(what, exact.left(64)));
    return time;
  }
  if (!parseDxlTime(text, dst, time)) context.in.fail(u"%1: \"%2\" is no time"_s.arg(what, text.left(64)));
  return time;
}

}  // namespace lens

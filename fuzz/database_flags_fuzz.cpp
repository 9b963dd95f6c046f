// Flags from the fuzzer, over the legend and over texts of the fuzzer's own: each part that is named lies
// within the text, holds " = " behind its flag and ends with its line.

#include "check.h"
#include "inspector/database_flags.h"

namespace lens {
namespace {

void checkStretches(QStringView flags, QStringView legend) {
  const QVector<Stretch> stretches = flagStretches(flags, legend);
  check(stretches.size() <= flags.size(), "More parts are named than there are flags.");
  for (const Stretch& stretch : stretches) {
    check(stretch.start >= 0 && stretch.start < legend.size(), "A part begins outside the text.");
    const QStringView rest = legend.mid(stretch.start);
    check(rest.contains(u" = "), "A part explains nothing.");
    check(flags.contains(rest.front()), "A part begins with a letter that is no flag.");
    const qsizetype lineEnd = rest.indexOf(u'\r');
    check(stretch.length == (lineEnd < 0 ? -1 - stretch.start : lineEnd),
          "A part does not end with its line.");
  }
}

// A zero byte parts the flags from a text to look in.
void tryFlags(QByteArrayView input) {
  static const QString legend = databaseLegend();
  const qsizetype middle = input.indexOf('\0');
  const QString flags = QString::fromUtf8(middle < 0 ? input : input.first(middle));
  checkStretches(flags, legend);
  for (const Stretch& stretch : flagStretches(flags, legend))
    check(stretch.length > 0, "A line of the legend has no end.");
  if (middle >= 0) checkStretches(flags, QString::fromUtf8(input.sliced(middle + 1)));
}

}  // namespace
}  // namespace lens

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  lens::tryFlags(QByteArrayView(reinterpret_cast<const char*>(data), qsizetype(size)));
  return 0;
}

// Reply blocks of a server's console from the fuzzer: whatever length they tell, the walk ends at a NUL.
#include <QByteArray>

#include "check.h"
#include "tools/cls_remote_console.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  QByteArray block(reinterpret_cast<const char*>(data), qsizetype(size));
  block.append(2, '\0');  // the library ends every reply so
  const QString text = lens::decodedReply(block.constData());
  lens::check(text.size() <= block.size(), "More characters than bytes.");
  for (const QChar c : text)
    lens::check(c == u'\r' || c == u'\n' || (c >= u' ' && c <= u'}'), "A character that cannot be shown.");
  return 0;
}

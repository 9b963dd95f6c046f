// Records of rich text from the fuzzer: what is read is written back byte for byte; after a replacement
// and joined runs the bytes read back as the text that the object has.

#include "check.h"
#include "embedded/richtext/rich_text.h"

namespace lens {
namespace {

void checkRereads(const RichText& text, const char* what) {
  if (text.complete()) check(RichText::fromBytes(text.toBytes()).plainText() == text.plainText(), what);
}

// The first byte tells how much of the input is searched for and how much takes its place.
void tryRecords(QByteArrayView input) {
  const qsizetype searched = qMin<qsizetype>(input.size(), input.isEmpty() ? 0 : quint8(input[0]) % 8);
  const QString search = QString::fromLatin1(input.first(searched));
  const QByteArrayView records = input.sliced(searched);
  RichText text = RichText::fromBytes(records);
  check(text.toBytes() == records, "What was read is not written back.");
  const QString before = text.plainText();
  text.compact();
  check(text.plainText() == before, "Joined runs changed the text.");
  checkRereads(text, "Joined runs read back as another text.");
  for (const Qt::CaseSensitivity cs : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
    const int one = text.replace(search, QStringLiteral("<new>"), cs, 1);
    check(one <= 1 && (!search.isEmpty() || one == 0), "More was replaced than asked for.");
    checkRereads(text, "A replaced text reads back as another one.");
    text.replace(search, QString(), cs, 1000);
    checkRereads(text, "A shortened text reads back as another one.");
  }
  text.formattedText(true, 10);
}

}  // namespace
}  // namespace lens

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  lens::tryRecords(QByteArrayView(reinterpret_cast<const char*>(data), qsizetype(size)));
  return 0;
}

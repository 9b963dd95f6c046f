// Messages from the fuzzer: each is read as a tree within the limits, every text of it can be asked for, and
// cut into items and joined again it is the same message.
#include "check.h"
#include "embedded/mime/mime_entity.h"

namespace lens {
namespace {

int entitiesIn(const MimeEntity& entity, int depth) {
  check(depth <= 33, "An entity lies too deep.");
  entity.contentType();
  entity.contentSubType();
  entity.parameter(u"charset");
  entity.header(u"Subject");
  entity.contentAsBytes();
  entity.contentAsText();
  check(entity.headers().size() <= 1000, "An entity has too many headers.");
  int count = 1;
  for (const std::shared_ptr<MimeEntity>& child : entity.children()) count += entitiesIn(*child, depth + 1);
  return count;
}

void tryMessage(QByteArrayView message) {
  check(entitiesIn(*MimeEntity::parse(message), 1) <= 10'001, "A message has too many entities.");
  Note note;
  for (const QByteArray& value : mimePartValues(message)) note.add(QStringLiteral("Body"), 0, value);
  check(mimeMessage(note) == message, "Cut into items and joined again, the message is another.");
}

}  // namespace
}  // namespace lens

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  lens::tryMessage(QByteArrayView(reinterpret_cast<const char*>(data), qsizetype(size)));
  return 0;
}

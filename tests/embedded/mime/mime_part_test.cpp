#include <gtest/gtest.h>

#include "embedded/mime/mime_entity.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

const char kMessage[] =
    "Subject: offer\r\nContent-Type: multipart/mixed; boundary=\"cut\"\r\n\r\n"
    "--cut\r\nContent-Type: text/plain\r\n\r\nfirst\r\n"
    "--cut\r\n\r\nsecond\r\n"
    "--cut--\r\n";

Note noteOf(const QVector<QByteArray>& values) {
  Note note;
  for (const QByteArray& value : values) note.add(QStringLiteral("Body"), 0, value);
  return note;
}

MimePart read(const QByteArray& value) {
  MimePart part;
  EXPECT_TRUE(readMimePart(QByteArrayView(value).sliced(2), part));
  return part;
}

TEST(MimePartValue, HasTheStoredLayout) {
  MimePart part;
  part.boundary = "--b\n";
  part.headers = "A:b\n\n";
  part.body = "xy";
  EXPECT_EQ(mimePartValue(part).toHex(), QByteArray("1900"
                                                    "0200"
                                                    "03000000"
                                                    "02"
                                                    "00"
                                                    "0b00"
                                                    "0400"
                                                    "0500"
                                                    "0000"
                                                    "00000000"
                                                    "2d2d620a"
                                                    "413a620a0a"
                                                    "7879"));
}

TEST(MimePartValue, IsReadBack) {
  MimePart part;
  part.kind = 1;
  part.headers = "A: b\r\n\r\n";
  part.body = "text";
  const MimePart back = read(mimePartValue(part));
  EXPECT_EQ(back.flags, 2u);
  EXPECT_EQ(back.kind, 1);
  EXPECT_EQ(back.boundary, QByteArray());
  EXPECT_EQ(back.headers, part.headers);
  EXPECT_EQ(back.body, part.body);
}

TEST(MimePartValue, EveryCutIsRefused) {
  MimePart part;
  part.boundary = "--b\n";
  part.body = "text";
  const QByteArray value = mimePartValue(part);
  for (qsizetype size = 2; size < value.size(); ++size) {
    MimePart read;
    EXPECT_FALSE(readMimePart(QByteArrayView(value).first(size).sliced(2), read)) << size;
  }
}

TEST(MimePartValue, LengthsBeyondTheCountAreRefused) {
  QByteArray data = QByteArray::fromHex("0200 03000000 02 00 0400 0300 0200 0000 00000000") + "abcdefgh";
  MimePart part;
  EXPECT_FALSE(readMimePart(data, part));
  data[8] = 5;
  EXPECT_TRUE(readMimePart(data, part));
  EXPECT_EQ(part.boundary, QByteArray("abc"));
  EXPECT_EQ(part.headers, QByteArray("de"));
}

TEST(MimePartValue, BodyInAnObjectMayBeAbsent) {
  const QByteArray data = QByteArray::fromHex("0200 04000000 02 00 FFFF 0300 0000 0000 00000000") + "abc";
  MimePart part;
  ASSERT_TRUE(readMimePart(data, part));
  EXPECT_EQ(part.boundary, QByteArray("abc"));
  EXPECT_EQ(part.body, QByteArray());
}

TEST(MimePartValue, MoreThanItsCountCanTellIsRefused) {
  MimePart part;
  part.body = QByteArray(65536, 'x');
  EXPECT_THROW(mimePartValue(part), RuntimeError);
}

TEST(MimePartValues, OnePerPartAndJoinedAgain) {
  const QVector<QByteArray> values = mimePartValues(kMessage);
  ASSERT_EQ(values.size(), 4);
  EXPECT_EQ(read(values[0]).kind, 1);
  EXPECT_EQ(read(values[1]).boundary, QByteArray("--cut\r\n"));
  EXPECT_EQ(read(values[1]).headers, QByteArray("Content-Type: text/plain\r\n\r\n"));
  EXPECT_EQ(read(values[1]).body, QByteArray("first\r\n"));
  EXPECT_EQ(read(values[3]).kind, 3);
  EXPECT_EQ(mimeMessage(noteOf(values)), QByteArray(kMessage));
}

TEST(MimePartValues, MalformedMessagesAreJoinedAgain) {
  for (const QByteArray message : {"", "x", "\n", "\r\nbody", "A: b", "A: b\n", "A: b\n\nc",
                                   "Content-Type: multipart/mixed; boundary=b\n--b\nA: c\n--b--\n--b--",
                                   "Content-Type: multipart/mixed; boundary=b\n\n--b",
                                   "Content-Type: multipart/mixed; boundary=b\n\n--b\n--b\nx"}) {
    EXPECT_EQ(mimeMessage(noteOf(mimePartValues(message))), message) << message.constData();
  }
  EXPECT_TRUE(mimePartValues("").isEmpty());
}

TEST(MimePartValues, LongPartsAreSpreadOverValues) {
  const QByteArray message = QByteArray(kMessage).replace("first", QByteArray(200000, 'z'));
  const QVector<QByteArray> values = mimePartValues(message);
  EXPECT_EQ(values.size(), 7);
  for (const QByteArray& value : values) EXPECT_LE(value.size(), 65536 + 22);
  EXPECT_EQ(mimeMessage(noteOf(values)), message);
}

TEST(MimePartValues, LongHeadsAreSpreadOverValues) {
  QByteArray message;
  for (int i = 0; i < 20000; ++i) message += "X-Trace: some\r\n";
  message += "\r\nbody";
  EXPECT_EQ(mimeMessage(noteOf(mimePartValues(message))), message);
}

TEST(MimeMessage, OtherItemsAndUnreadableOnesArePassedOver) {
  Note note;
  note.add(QStringLiteral("Subject"), 0, QByteArray::fromHex("0005") + "text");
  note.add(QStringLiteral("Body"), 0, mimePartValues("A: b\n\none ")[0]);
  note.add(QStringLiteral("Broken"), 0, QByteArray::fromHex("19000200"));
  MimePart more;
  more.body = "two";
  note.add(QStringLiteral("Other"), 0, mimePartValue(more));
  EXPECT_EQ(mimeMessage(note), QByteArray("A: b\n\none two"));
  EXPECT_EQ(mimeMessage(Note()), QByteArray());
}

TEST(MimeMessage, BareBoundariesBecomeLines) {
  MimePart head, leaf, end;
  head.headers = "Content-Type: multipart/mixed; boundary=b\r\n";
  leaf.boundary = "b";
  leaf.headers = "Content-Type: text/plain";
  leaf.body = "text";
  end.boundary = "--b--";
  const Note note = noteOf({mimePartValue(head), mimePartValue(leaf), mimePartValue(end)});
  const auto root = MimeEntity::parse(mimeMessage(note));
  ASSERT_EQ(root->children().size(), 1);
  EXPECT_EQ(root->children()[0]->contentAsText(), QStringLiteral("text"));
}

}  // namespace
}  // namespace lens

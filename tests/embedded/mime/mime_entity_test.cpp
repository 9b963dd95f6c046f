#include "embedded/mime/mime_entity.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>

namespace lens {
namespace {

std::shared_ptr<MimeEntity> textWith(const QByteArray& headers, const QByteArray& body) {
  return MimeEntity::parse(headers + "\r\n\r\n" + body);
}

QString bodyIn(const QByteArray& charset, const QByteArray& body) {
  return textWith("Content-Type: text/plain; charset=" + charset, body)->contentAsText();
}

TEST(MimeHeaders, MissingContentTypeIsPlainText) {
  const auto entity = MimeEntity::parse("Subject: x\n\nbody");
  EXPECT_EQ(entity->contentType(), QStringLiteral("text"));
  EXPECT_EQ(entity->contentSubType(), QStringLiteral("plain"));
  EXPECT_EQ(entity->contentAsText(), QStringLiteral("body"));
}

TEST(MimeHeaders, TypeIsReadWithoutItsParametersAndInLowerCase) {
  const auto entity = textWith("Content-Type: Text / HTML ; Charset=\"utf-8\"", "");
  EXPECT_EQ(entity->contentType(), QStringLiteral("text"));
  EXPECT_EQ(entity->contentSubType(), QStringLiteral("html"));
  EXPECT_EQ(entity->parameter(u"charset"), QStringLiteral("utf-8"));
  EXPECT_EQ(entity->parameter(u"boundary"), QString());
  EXPECT_EQ(textWith("Content-Type: text;x=a/b", "")->contentType(), QStringLiteral("text"));
}

TEST(MimeHeaders, QuotedParametersMayHoldSemicolonsAndQuotes) {
  const auto entity = textWith("Content-Type: a/b; name=\"x;\\\"y\"; charset=latin1 (comment); q=\"open", "");
  EXPECT_EQ(entity->parameter(u"NAME"), QStringLiteral("x;\"y"));
  EXPECT_EQ(entity->parameter(u"charset"), QStringLiteral("latin1"));
  EXPECT_EQ(entity->parameter(u"q"), QStringLiteral("open"));
}

TEST(MimeHeaders, FoldedLinesAreJoined) {
  const auto entity = MimeEntity::parse("Subject: one\r\n two\r\n\tthree\r\nTo: x\r\n\r\n");
  EXPECT_EQ(entity->header(u"subject"), QStringLiteral("one two\tthree"));
  EXPECT_EQ(entity->header(u"TO"), QStringLiteral("x"));
  EXPECT_EQ(entity->headers().size(), 2);
}

TEST(MimeHeaders, LineWithoutColonIsPassedOver) {
  const auto entity = MimeEntity::parse("Subject: a\nno header here\nTo: b\n\nbody");
  EXPECT_EQ(entity->headers().size(), 2);
  EXPECT_EQ(entity->header(u"To"), QStringLiteral("b"));
  EXPECT_EQ(entity->contentAsText(), QStringLiteral("body"));
}

TEST(MimeHeaders, TextThatBeginsWithoutHeaderIsAllBody) {
  const auto entity = MimeEntity::parse("Dear reader\n\nTo: b\n");
  EXPECT_TRUE(entity->headers().isEmpty());
  EXPECT_EQ(entity->contentAsText(), QStringLiteral("Dear reader\n\nTo: b\n"));
}

TEST(MimeHeaders, EncodedWordsAreDecoded) {
  const auto subject = [](const char* value) {
    return MimeEntity::parse(QByteArray("Subject: ") + value + "\n\n")->header(u"Subject");
  };
  EXPECT_EQ(subject("=?utf-8?Q?Gr=C3=BC=C3=9Fe_aus?= Bern"), QStringLiteral("Grüße aus Bern"));
  EXPECT_EQ(subject("=?ISO-8859-1?b?R3L832U=?="), QStringLiteral("Grüße"));
  EXPECT_EQ(subject("=?utf-8?q?a?=  =?utf-8?q?b?= c"), QStringLiteral("ab c"));
  EXPECT_EQ(subject("=?utf-8?q?=C3?=\r\n =?UTF-8*de?q?=BC?="), QStringLiteral("ü"));
  EXPECT_EQ(subject("=?utf-8?x?a?= =? =?utf-8?q?open"), QStringLiteral("=?utf-8?x?a?= =? =?utf-8?q?open"));
}

TEST(MimeHeaders, RawBytesAreUtf8OrLatin1) {
  EXPECT_EQ(MimeEntity::parse("A: \xC3\xBC\n\n")->header(u"A"), QStringLiteral("ü"));
  EXPECT_EQ(MimeEntity::parse("A: \xFC\n\n")->header(u"A"), QStringLiteral("ü"));
}

TEST(MimeHeaders, NumberAndLengthAreBounded) {
  QByteArray message;
  for (int i = 0; i < 5000; ++i) message.append("A: b\n");
  EXPECT_EQ(MimeEntity::parse(message + "\nbody")->headers().size(), 1000);
  EXPECT_EQ(MimeEntity::parse(message + "\nbody")->contentAsText(), QStringLiteral("body"));
  QByteArray folded = "A: ";
  for (int i = 0; i < 20000; ++i) folded.append("0123456789\n ");
  EXPECT_LE(MimeEntity::parse(folded + "x\n\nbody")->header(u"A").size(), 64 * 1024);
}

TEST(MimeBody, QuotedPrintableIsDecoded) {
  const auto decoded = [](const char* body) {
    return textWith("Content-Transfer-Encoding: Quoted-Printable", body)->contentAsBytes();
  };
  EXPECT_EQ(decoded("a=3Db=c3=BC"), QByteArray("a=b\xC3\xBC"));
  EXPECT_EQ(decoded("one=\r\ntwo= \nthree="), QByteArray("onetwothree"));
  EXPECT_EQ(decoded("blank \t\r\nkept=20\r\nx"), QByteArray("blank\r\nkept \r\nx"));
  EXPECT_EQ(decoded("100= =ZZ =4"), QByteArray("100= =ZZ =4"));
}

TEST(MimeBody, Base64IsDecodedAndJunkPassedOver) {
  const auto decoded = [](const char* body) {
    return textWith("Content-Transfer-Encoding: BASE64", body)->contentAsBytes();
  };
  EXPECT_EQ(decoded("SGVs\r\nbG8="), QByteArray("Hello"));
  EXPECT_EQ(decoded("S*G-Vs bG8"), QByteArray("Hello"));
  EXPECT_EQ(decoded("SGk=SGk="), QByteArray("HiHi"));
  EXPECT_EQ(decoded("===="), QByteArray());
}

TEST(MimeBody, BigBase64BodyIsDecoded) {
  QByteArray bytes(1 << 20, '\0');
  for (qsizetype i = 0; i < bytes.size(); ++i) bytes[i] = char(i * 7);
  QByteArray encoded;
  const QByteArray whole = bytes.toBase64();
  for (qsizetype at = 0; at < whole.size(); at += 76) encoded.append(whole.mid(at, 76)).append("\r\n");
  EXPECT_EQ(textWith("Content-Transfer-Encoding: base64", encoded)->contentAsBytes(), bytes);
}

TEST(MimeBody, PlainEncodingsLeaveTheBytes) {
  for (const char* encoding : {"7bit", "8bit", "binary", "x-unknown"}) {
    const QByteArray header = QByteArray("Content-Transfer-Encoding: ") + encoding;
    EXPECT_EQ(textWith(header, "a=3D \r\n")->contentAsBytes(), QByteArray("a=3D \r\n")) << encoding;
  }
}

TEST(MimeBody, TextIsReadInItsCharacterSet) {
  EXPECT_EQ(bodyIn("utf-8", "\xC3\xBC"), QStringLiteral("ü"));
  EXPECT_EQ(bodyIn("ISO-8859-1", "\xFC"), QStringLiteral("ü"));
  EXPECT_EQ(bodyIn("windows-1252", "\x80"), QStringLiteral("€"));
  EXPECT_EQ(bodyIn("koi8-r", "\xC1"), QStringLiteral("а"));
  EXPECT_EQ(bodyIn("shift_jis", "\x88\xEA"), QStringLiteral("一"));
  EXPECT_EQ(bodyIn("utf-16be", QByteArray("\0A", 2)), QStringLiteral("A"));
}

TEST(MimeBody, BytesThatAreNoTextBecomeTheReplacementCharacter) {
  EXPECT_EQ(bodyIn("utf-8",
                   "a\xFF"
                   "b\xC3"),
            QStringLiteral("a\uFFFDb\uFFFD"));
  EXPECT_EQ(bodyIn("us-ascii", "a\xFF"), QStringLiteral("a\uFFFD"));
}

TEST(MimeBody, UnknownCharacterSetIsUtf8OrLatin1) {
  EXPECT_EQ(bodyIn("no-such-set", "\xC3\xBC"), QStringLiteral("ü"));
  EXPECT_EQ(bodyIn("../../etc/x", "\xFC"), QStringLiteral("ü"));
  EXPECT_EQ(bodyIn("", "\xFC"), QStringLiteral("ü"));
}

const char kNested[] =
    "Content-Type: multipart/mixed; boundary=\"out\"\r\n\r\n"
    "preamble\r\n"
    "--out\r\n"
    "Content-Type: multipart/alternative; boundary=out-in\r\n\r\n"
    "--out-in\r\n\r\nplain\r\n"
    "--out-in  \r\nContent-Type: text/html\r\n\r\n<b>html</b>\r\n\r\n"
    "--out-in--\r\nepilogue\r\n"
    "--out\r\n"
    "Content-Type: image/png\r\nContent-Transfer-Encoding: base64\r\n\r\nAQID\r\n"
    "--out--\r\n"
    "--out\r\n\r\nnot a part\r\n";

TEST(MimeMultipart, NestedPartsBecomeChildren) {
  const auto root = MimeEntity::parse(kNested);
  EXPECT_EQ(root->contentType(), QStringLiteral("multipart"));
  ASSERT_EQ(root->children().size(), 2);
  const auto inner = root->children()[0];
  EXPECT_EQ(inner->contentSubType(), QStringLiteral("alternative"));
  ASSERT_EQ(inner->children().size(), 2);
  EXPECT_EQ(inner->children()[0]->contentAsText(), QStringLiteral("plain"));
  EXPECT_EQ(inner->children()[1]->contentAsText(), QStringLiteral("<b>html</b>\r\n"));
  EXPECT_EQ(root->children()[1]->contentAsBytes(), QByteArray("\1\2\3"));
}

TEST(MimeMultipart, LfAloneEndsLinesToo) {
  const auto root = MimeEntity::parse(QByteArray(kNested).replace("\r\n", "\n"));
  ASSERT_EQ(root->children().size(), 2);
  EXPECT_EQ(root->children()[0]->children()[0]->contentAsText(), QStringLiteral("plain"));
}

TEST(MimeMultipart, ChildrenOutliveTheirParent) {
  const auto child = MimeEntity::parse(kNested)->children()[0]->children()[0];
  EXPECT_EQ(child->contentAsText(), QStringLiteral("plain"));
}

TEST(MimeMultipart, ItsOwnTextIsTheRawBody) {
  const QByteArray message = kNested;
  const QByteArray body = message.mid(message.indexOf("preamble"));
  EXPECT_EQ(MimeEntity::parse(message)->contentAsText(), QString::fromLatin1(body));
}

TEST(MimeMultipart, MissingClosingBoundaryEndsWithTheText) {
  const auto root =
      MimeEntity::parse("Content-Type: multipart/mixed; boundary=b\n\n--b\n\none\n--b\n\ntwo\n");
  ASSERT_EQ(root->children().size(), 2);
  EXPECT_EQ(root->children()[0]->contentAsText(), QStringLiteral("one"));
  EXPECT_EQ(root->children()[1]->contentAsText(), QStringLiteral("two\n"));
}

TEST(MimeMultipart, WithoutBoundaryThereAreNoChildren) {
  EXPECT_TRUE(MimeEntity::parse("Content-Type: multipart/mixed\n\n--b\n\none\n")->children().isEmpty());
  EXPECT_TRUE(
      MimeEntity::parse("Content-Type: multipart/mixed; boundary=b\n\nno parts")->children().isEmpty());
}

TEST(MimeMultipart, LineThatOnlyBeginsLikeABoundaryIsText) {
  const auto root =
      MimeEntity::parse("Content-Type: multipart/mixed; boundary=b\n\n--b\n\n--bc\n--b-\n--b--");
  ASSERT_EQ(root->children().size(), 1);
  EXPECT_EQ(root->children()[0]->contentAsText(), QStringLiteral("--bc\n--b-"));
}

TEST(MimeMultipart, BoundaryInPlaceOfTheBlankLineEndsTheHead) {
  const auto root =
      MimeEntity::parse("Content-Type: multipart/mixed; boundary=b\n--b\nA: c\n--b\n\nx\n--b--");
  ASSERT_EQ(root->children().size(), 2);
  EXPECT_EQ(root->children()[0]->header(u"A"), QStringLiteral("c"));
  EXPECT_EQ(root->children()[1]->contentAsText(), QStringLiteral("x"));
}

TEST(MimeMultipart, EmptyPartsAreParts) {
  const auto root = MimeEntity::parse("Content-Type: multipart/mixed; boundary=b\n\n--b\n--b\n\n--b--");
  ASSERT_EQ(root->children().size(), 2);
  EXPECT_EQ(root->children()[0]->contentAsText(), QString());
}

QByteArray bomb(int levels) {
  QByteArray message;
  for (int i = 0; i < levels; ++i) {
    const QByteArray boundary = "b" + QByteArray::number(i);
    message += "Content-Type: multipart/mixed; boundary=" + boundary + "\r\n\r\n--" + boundary + "\r\n";
  }
  return message + "\r\ndeep";
}

TEST(MimeMultipart, NestingIsBounded) {
  auto entity = MimeEntity::parse(bomb(10000));
  int levels = 1;
  while (!entity->children().isEmpty()) {
    const auto child = entity->children()[0];
    entity = child;
    ++levels;
  }
  EXPECT_EQ(levels, 32);
  EXPECT_TRUE(entity->contentAsText().endsWith(QLatin1String("deep")));
}

TEST(MimeMultipart, NumberOfPartsIsBounded) {
  QByteArray message = "Content-Type: multipart/mixed; boundary=b\n\n";
  for (int i = 0; i < 30000; ++i) message += "--b\n\nx\n";
  EXPECT_LE(MimeEntity::parse(message)->children().size(), 10000);
  EXPECT_GT(MimeEntity::parse(message)->children().size(), 9000);
}

TEST(MimeMultipart, AllCutsAreRead) {
  const QByteArray message = kNested;
  for (qsizetype size = 0; size <= message.size(); ++size) {
    EXPECT_LE(MimeEntity::parse(message.first(size))->children().size(), 2) << size;
  }
}

TEST(MimeMultipart, RandomTextIsRead) {
  QRandomGenerator random(99);
  const QVector<QByteArray> pieces = {
      "--b",  "--",   "\r\n",     "\n", "\r", "Content-Type: multipart/mixed; boundary=b\n",
      "=?",   "?=",   "utf-8?q?", "=",  ":",  " ",
      "\n\n", "\xFF", "x",        ";",  "\""};
  for (int round = 0; round < 5000; ++round) {
    QByteArray message =
        "Content-Type: multipart/mixed; boundary=b\nContent-Transfer-Encoding: quoted-printable\n";
    for (int i = random.bounded(40); i > 0; --i) message += pieces[random.bounded(int(pieces.size()))];
    const auto entity = MimeEntity::parse(message);
    entity->contentAsText();
    for (const auto& child : entity->children()) child->contentAsText();
    Note note;
    for (const QByteArray& value : mimePartValues(message)) note.add(QStringLiteral("Body"), 0, value);
    ASSERT_EQ(mimeMessage(note), message) << message.toHex().constData();
  }
}

}  // namespace
}  // namespace lens

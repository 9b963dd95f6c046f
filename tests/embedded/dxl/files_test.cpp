#include <QRandomGenerator>

#include "embedded/dxl/dxl_source.h"
#include "embedded/dxl/file_elements.h"
#include "embedded/richtext/rich_text.h"
#include "import_fixture.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

QByteArray fileItem(const QByteArray& attributes, const QByteArray& data) {
  return "<item name='$FILE' summary='true'><object><file " + attributes +
         "><created><datetime>20240101T100000,00+00</datetime></created><filedata>\n" + data +
         "\n</filedata></file></object></item>";
}

// As an export writes it: lines of 76 characters.
QByteArray inLines(const QByteArray& base64) {
  QByteArray lines;
  for (qsizetype at = 0; at < base64.size(); at += 76) lines += base64.mid(at, 76) + "\n";
  return lines;
}

FileObject fileOf(const Item& item) {
  FileObject file;
  EXPECT_TRUE(readFileObject(item.data(), file));
  return file;
}

TEST_F(DxlImport, AttachmentGoesToTheObjectsOfTheDatabase) {
  const Note note =
      document(fileItem("hosttype='msdos' compression='none' flags='storedindoc' attribute='readonly' "
                        "name='a.txt' size='5'",
                        "aGVs\nbG8="));
  const FileObject file = fileOf(note.items[0]);
  EXPECT_EQ(attachment(file.objectId).toStdString(), "hello");
  EXPECT_EQ(file.name.toStdString(), "a.txt");
  EXPECT_EQ(file.size, 5u);
  EXPECT_EQ(file.flags, 2);
  EXPECT_EQ(file.attributes, 1);
  EXPECT_EQ(file.hostType, 0);
  EXPECT_TRUE(instantOf(file.created).isValid());
  EXPECT_EQ(note.items[0].flags, itemflag::Summary);
  EXPECT_TRUE(last_.ignored.isEmpty());
}

TEST_F(DxlImport, HostTypesHaveTheirNumbers) {
  const Note note = document(fileItem("hosttype='cdstorage' name='a'", "") +
                             fileItem("hosttype='bytearrayext' name='b'", "") +
                             fileItem("hosttype='unknown' name='c'", ""));
  EXPECT_EQ(fileOf(note.items[0]).hostType, 0x0800);
  EXPECT_EQ(fileOf(note.items[1]).hostType, 0x0600);
  EXPECT_EQ(fileOf(note.items[2]).hostType, 0x0300);
}

TEST_F(DxlImport, SeveralFilesOfOneNoteAreKept) {
  const Note note = document(fileItem("name='a'", "YQ==") + fileItem("name='a'", "Yg=="));
  ASSERT_EQ(note.items.size(), 2);
  EXPECT_EQ(attachment(fileOf(note.items[1]).objectId).toStdString(), "b");
}

TEST_F(DxlImport, LongAttachmentArrivesWhole) {
  QByteArray bytes(3 * 1024 * 1024 + 1, Qt::Uninitialized);
  QRandomGenerator random(7);
  for (char& c : bytes) c = char(random.generate());
  for (const QByteArray& text : {inLines(bytes.toBase64()), bytes.toBase64()}) {
    const Note note = onlyNote(run("<document><noteinfo unid='00000000000000010000000000000001'/>" +
                                   fileItem("name='big'", text) + "</document>"),
                               noteclass::Document);
    const FileObject file = fileOf(note.items[0]);
    EXPECT_EQ(file.size, quint32(bytes.size()));
    EXPECT_TRUE(attachment(file.objectId) == bytes);
  }
}

TEST_F(DxlImport, JunkDeepInAnAttachmentIsFoundAndPlaced) {
  QByteArray text = inLines(QByteArray(300000, 'x').toBase64());
  text[200000] = '!';
  const QString reason = refusal(fileItem("name='big'", text));
  EXPECT_TRUE(reason.contains(u"item \"$FILE\", file \"big\": \"!\" is no base64")) << reason.toStdString();
}

TEST(DxlSource, LongFileDataIsCutIntoNodesAndNothingElseIsTouched) {
  const QByteArray line = QByteArray(76, 'A') + "\n";
  const QByteArray data = line.repeated(6000);
  const QByteArray xml = "<!-- <filedata>" + data + " --><d><![CDATA[<filedata>" + data + "]]><x>" + data +
                         "</x><filedata\n>" + data + "</filedata></d>";
  QByteArray copy = xml;
  QBuffer buffer(&copy);
  buffer.open(QIODevice::ReadOnly);
  DxlSource source(buffer);
  QByteArray read = source.readAll();
  EXPECT_GE(read.count("<!---->"), 5);
  const qsizetype tag = read.indexOf("<filedata\n>");
  EXPECT_EQ(read.indexOf("<!---->") > tag, true);
  read.replace("<!---->", "");
  EXPECT_TRUE(read == xml);
}

TEST_F(DxlImport, AttachmentsKeepTheirNames) {
  for (const QString& name : {u"..\\..\\x"_s, u"/etc/x"_s, u"dcimages/x"_s, u"Report: Q1.doc"_s, u"aux.c"_s,
                              u".."_s, u""_s, u"a\tb\nc"_s}) {
    const QByteArray written =
        name.toHtmlEscaped().replace(u'\t', u"&#9;"_s).replace(u'\n', u"&#10;"_s).toUtf8();
    const Note note = document(
        "<noteinfo unid='0123456789ABCDEF0123456789ABCDEF'/>" + fileItem("name='" + written + "'", "YQ==") +
        "<item name='Body'><richtext><pardef id='1'/><par def='1'><attachmentref name='" + written +
        "'/></par></richtext></item>");
    EXPECT_EQ(fileOf(note.items[0]).name, name);
    const RichText text = RichText::fromBytes(note.find(u"Body")->data());
    for (const RichElement& element : text.elements())
      if (element.kind == RichElement::Kind::Attachment) {
        EXPECT_EQ(element.text, name);
      }
  }
}

TEST_F(DxlImport, AttachmentWithoutANameIsRefused) {
  EXPECT_TRUE(refusal(fileItem("", "YQ==")).contains(u"has no name"));
}

TEST_F(DxlImport, AttachmentWithoutItsDataIsReported) {
  const Note note = document("<item name='$FILE'><object><file name='a' size='9'/></object></item>");
  EXPECT_EQ(fileOf(note.items[0]).size, 0u);
  EXPECT_TRUE(last_.ignored.join(u' ').contains(u"\"a\" came without its data"));
}

TEST_F(DxlImport, CompressedAttachmentKeepsItsMethodAndIsReported) {
  const Note note = document(fileItem("name='a' compression='huffman' size='900'", "YQ=="));
  EXPECT_EQ(fileOf(note.items[0]).compression, 1);
  EXPECT_EQ(fileOf(note.items[0]).size, 900u);
  EXPECT_TRUE(last_.keptRaw.join(u' ').contains(u"compressed form"));
}

TEST_F(DxlImport, ObjectThatIsNoFileIsKept) {
  const Note note = document("<item name='O'><object><other>1</other></object></item>");
  EXPECT_EQ(note.text(u"$DXL_other").toStdString(), "<other>1</other>");
}

}  // namespace
}  // namespace lens

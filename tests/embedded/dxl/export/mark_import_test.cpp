// The attributes that an export adds to DXL come from outside as everything else does.
#include "embedded/dxl/import_fixture.h"

namespace lens {
namespace {

class DxlMarks : public DxlImport {
 protected:
  static QByteArray markedItem(const QByteArray& attributes, const QByteArray& value) {
    return "<item xmlns:lens='urn:tessaly-lens:dxl' xmlns:other='urn:other' name='A' " + attributes + ">" +
           value + "</item>";
  }
};

TEST_F(DxlMarks, OfAnotherNamespaceAreNoMarks) {
  const Note note = document(markedItem("other:itemflags='200' other:exactname='B'", "<text>x</text>"));
  ASSERT_EQ(namesText(note), "A");
  EXPECT_EQ(note.items.first().flags, itemflag::Summary);
}

TEST_F(DxlMarks, TellNamesAndFlags) {
  const Note note = document(markedItem("lens:itemflags='200' lens:exactname='B%07'", "<text>x</text>"));
  ASSERT_EQ(note.items.size(), 1);
  EXPECT_EQ(note.items.first().name, QStringLiteral("B\a"));
  EXPECT_EQ(note.items.first().flags, itemflag::Protected);
}

TEST_F(DxlMarks, ThatAreMalformedAreRefused) {
  const QByteArray file = "<object><file name='a' ", end = "><filedata/></file></object>";
  EXPECT_TRUE(
      refusal(markedItem("lens:itemflags='flags'", "<text>x</text>")).contains(u"no set of item flags"));
  EXPECT_TRUE(
      refusal(markedItem("lens:itemflags='10000'", "<text>x</text>")).contains(u"no set of item flags"));
  EXPECT_TRUE(refusal(markedItem("", "<datetime lens:timedate='12'/>")).contains(u"is no time"));
  EXPECT_TRUE(refusal(markedItem("", file + "lens:itemvalue='?'" + end)).contains(u"no base64 of a value"));
  EXPECT_TRUE(
      refusal(markedItem("", file + "lens:itemvalue='AwAA'" + end)).contains(u"no base64 of a value"));
  EXPECT_TRUE(run("<document xmlns:lens='urn:tessaly-lens:dxl' lens:parentunid='12'/>")
                  .failed.join(u' ')
                  .contains(u"no UNID of a parent"));
}

TEST_F(DxlMarks, LeaveAValueThatIsNotMarkedUnderTheUsualChecks) {
  const QByteArray raw = "type='501'>BQAB</rawitemdata>";
  EXPECT_TRUE(refusal(markedItem("", "<rawitemdata " + raw)).contains(u"does not fit"));
  EXPECT_EQ(valuesText(document(markedItem("", "<rawitemdata lens:asstored='true' " + raw)), u"A"), "");
}

TEST_F(DxlMarks, OfAnAttachmentDoNotChooseItsObject) {
  // The value names object 77; the attachment has its own.
  const QByteArray value = QByteArray("\x03\x00\x00\x00\x4D\x00\x00\x00", 8).toBase64();
  const Note note = document(markedItem("", "<object><file name='a' lens:itemvalue='" + value +
                                                "'><filedata>YWJj</filedata>" + "</file></object>"));
  ASSERT_EQ(note.items.size(), 1);
  ByteReader reader(note.items.first().data());
  reader.skip(2);
  EXPECT_EQ(attachment(reader.u32()).toStdString(), "abc");
}

}  // namespace
}  // namespace lens

#include "embedded/dxl/export/export_fixture.h"

namespace lens {
namespace {

class AttachmentExport : public DxlExport {
 protected:
  FileObject attach(const QByteArray& bytes, const QString& name = u"a.bin"_s) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    const StoredObject stored = source_->objects().add(buffer);
    FileObject file;
    file.objectId = stored.id;
    file.size = quint32(stored.size);
    file.name = name;
    file.created = timeDateOf(QDateTime(QDate(2024, 3, 1), QTime(8, 0), Qt::UTC), {60, true});
    file.modified = file.created;
    return file;
  }
  QByteArray trip(const FileObject& file, const QString& item = u"$FILE"_s) {
    return itemTrip(itemflag::Summary, fileObjectValue(file), item);
  }
};

TEST_F(AttachmentExport, AttachmentsOfEverySizeComeBackByteForByte) {
  QByteArray bytes;
  for (int i = 0; i < 300 * 1024; ++i) bytes.append(char(i * 7 + i / 256));
  for (const qsizetype size : {0, 1, 2, 3, 56, 57, 58, 256 * 1024 - 1, 256 * 1024 + 1, 300 * 1024})
    save([&] {
      Note note;
      note.add(u"$FILE"_s, itemflag::Summary, fileObjectValue(attach(bytes.first(size))));
      return note;
    }());
  const QByteArray dxl = roundTrip();
  EXPECT_EQ(dxl.count("<filedata"), 10);
  EXPECT_FALSE(dxl.contains("itemvalue"));
}

TEST_F(AttachmentExport, PropertiesOfAFileAreAttributes) {
  FileObject file = attach("abc");
  file.hostType = 0x0200;
  file.attributes = 3;
  file.flags = 7;
  const QByteArray dxl = trip(file);
  EXPECT_TRUE(
      dxl.contains("<file hosttype=\"mac\" compression=\"none\" attribute=\"readonly private\" "
                   "flags=\"sign storedindoc mime\" name=\"a.bin\" size=\"3\">"))
      << dxl.toStdString();
  EXPECT_TRUE(dxl.contains("<created><datetime dst=\"true\">20240301T100000,00+02</datetime></created>"));
  EXPECT_FALSE(dxl.contains("itemvalue"));
}

TEST_F(AttachmentExport, PackedFilesKeepTheirSizes) {
  FileObject file = attach("packed");
  file.compression = 2;
  file.size = 123456;
  EXPECT_TRUE(trip(file).contains("compression=\"lz1\""));
}

TEST_F(AttachmentExport, WhatAFileElementDoesNotTellStandsInAMark) {
  QVector<FileObject> files(7, attach("abc"));
  files[0].name = u"bell\a"_s;
  files[1].hostType = 0x0B00;
  files[2].hostType = 0x0301;
  files[3].compression = 9;
  files[4].attributes = 0x80;
  files[5].flags = 0x80;
  files[6].size = 4;
  for (const FileObject& file : files) EXPECT_EQ(trip(file).count("itemvalue"), 1 + (&file - files.data()));
  itemTrip(0, fileObjectValue(attach("abc")) + "tail", u"$FILE"_s);
}

TEST_F(AttachmentExport, NamesComeBackWhateverADiskWouldSay) {
  for (const QString& name : {u"dir/a.bin"_s, u"C:\\a.bin"_s, u""_s, u".."_s, u"aux.c"_s, u" a\tb\nc "_s})
    EXPECT_FALSE(trip(attach("abc", name)).contains("itemvalue")) << name.toStdString();
}

TEST_F(AttachmentExport, OddTimesOfAFileComeBack) {
  FileObject file = attach("abc");
  file.created = {};
  file.modified = {{9000000, 77}};
  EXPECT_TRUE(trip(file).contains("timedate=\"0000004D00895440\""));
}

TEST_F(AttachmentExport, OtherObjectsGoInOneRawValue) {
  QByteArray value;
  appendU16(value, itemtype::Object);
  appendU16(value, 8);
  appendU32(value, attach("run data").objectId);
  const QByteArray dxl = itemTrip(0, value, u"$AssistRunInfo"_s);
  EXPECT_TRUE(dxl.contains("<rawitemdata type=\"3\">")) << dxl.toStdString();
  itemTrip(0, value + "more than a descriptor", u"Odd"_s);
}

TEST_F(AttachmentExport, DescriptorsOfNothingStayWhatTheyAre) {
  for (const char* data : {"", "abc", "\x06\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x0B\x0C\x0D"})
    itemTrip(0, rawValue(itemtype::Object, QByteArray(data)), u"Odd"_s);
}

TEST_F(AttachmentExport, AnAttachmentWithoutItsBytesIsNamedWithItsNote) {
  FileObject file = attach("abc");
  source_->objects().remove(file.objectId);
  Note note;
  note.add(u"$FILE"_s, 0, fileObjectValue(file));
  const QString id = save(note).hexText();
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  try {
    exportDatabase(*source_, buffer);
    ADD_FAILURE() << "it was exported";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), enginefault::Damaged);
    EXPECT_TRUE(error.description().contains(source_->path())) << error.description().toStdString();
    EXPECT_TRUE(error.description().contains(u"note %1"_s.arg(id))) << error.description().toStdString();
  }
}

}  // namespace
}  // namespace lens

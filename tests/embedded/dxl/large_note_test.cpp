// Notes whose items are too large to be held together: they go in and out value by value.
#include <sqlite3.h>

#include <QFileInfo>
#include <QRandomGenerator>
#include <functional>
#include <iostream>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "embedded/dxl/dxl_exporter.h"
#include "embedded/dxl/export/database_compare.h"
#include "embedded/dxl/import_fixture.h"
#include "embedded/format/packed_items.h"
#include "embedded/store/large_note.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

// Somewhat more than the 4 MB from which a note is a large one.
class LargeNotes : public DxlImport {
 protected:
  LargeNotes() {
    QRandomGenerator random(11);
    for (int i = 0; i < 500; ++i) {
      QByteArray records("\x81\x02", 2);
      for (int text = 0; text < 3; ++text) {
        QByteArray data(3000 + i % 7 * 2, Qt::Uninitialized);
        for (char& c : data) c = char('a' + random.bounded(26));
        records.append("\x85\xFF", 2);
        appendU16(records, quint16(data.size() + 8));
        records.append(QByteArray("\x01\x00\x00\x0A", 4)).append(data);
      }
      note_.add(i % 3 == 0 ? u"Body"_s : u"Part%1"_s.arg(i), 0, rawValue(itemtype::RichText, records));
      if (i % 50 == 0) note_.add(u"Small%1"_s.arg(i), itemflag::Summary, textValue(u"small"));
    }
    note_.add(u"Long"_s, 0, textValue(QString(30000, u'\u00FC')));
    note_.add(u"Form"_s, itemflag::Summary, textValue(u"Memo"));
  }
  QByteArray xml(const QByteArray& more = {}) const {
    QByteArray items;
    for (const Item& item : note_.items)
      items += "<item name='" + item.name.toUtf8() + "' summary='" +
               ((item.flags & itemflag::Summary) ? "true" : "false") + "'><rawitemdata type='" +
               QByteArray::number(item.type(), 16) + "'>" + item.data().toByteArray().toBase64() +
               "</rawitemdata></item>";
    return "<document><noteinfo unid='0123456789ABCDEF0123456789ABCDEF'/>" + items + more + "</document>";
  }
  void expectAsGiven(const Note& stored, qsizetype more = 0) const {
    ASSERT_EQ(stored.items.size(), note_.items.size() + more);
    for (qsizetype i = 0; i < note_.items.size(); ++i) {
      ASSERT_EQ(stored.items[i].name, note_.items[i].name);
      ASSERT_EQ(stored.items[i].flags, note_.items[i].flags);
      ASSERT_TRUE(stored.items[i].value == note_.items[i].value) << i;
    }
  }
  Note note_;
};

TEST_F(LargeNotes, EveryItemArrivesInItsPlace) {
  expectAsGiven(onlyNote(run(xml()), noteclass::Document));
  const Note replaced = onlyNote(
      run(xml("<item name='$FILE'><object><file name='a'><filedata>YWJj</filedata></file></object></item>")),
      noteclass::Document);
  expectAsGiven(replaced, 1);
  EXPECT_EQ(last_.replaced, 1);
  FileObject file;
  ASSERT_TRUE(readFileObject(replaced.items.last().data(), file));
  EXPECT_EQ(attachment(file.objectId).toStdString(), "abc");
  // A small note behind a large one has nothing of it.
  run("<database>" + xml() +
      "<document><noteinfo unid='0123456789ABCDEF0123456789ABCDE0'/><item "
      "name='A'><text>x</text></item></document>"
      "</database>");
  Note small;
  ASSERT_TRUE(database_->notes().read(Unid::fromText(u"0123456789ABCDEF0123456789ABCDE0"_s), small));
  EXPECT_EQ(namesText(small), "A");
}

TEST_F(LargeNotes, AnExportGivesThemBack) {
  ASSERT_EQ(run(xml()).failed.join(u' ').toStdString(), "");
  const QString path = folder_.filePath(u"out.dxl"_s);
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  EXPECT_TRUE(exportDatabase(*database_, file));
  file.close();
  const auto target = Database::create(folder_.filePath(u"second.nsf"_s), {});
  ImportReport report;
  DxlImporter(*target).importFile(path, report);
  EXPECT_EQ(report.failed.join(u' ').toStdString(), "");
  EXPECT_EQ(difference(*database_, *target).toStdString(), "");
}

TEST_F(LargeNotes, WhatEndsTooEarlyLeavesNothing) {
  const QByteArray whole = xml();
  EXPECT_EQ(run(whole.chopped(20)).failed.size(), 1);
  EXPECT_EQ(notes(), 0);
  sqlite3_exec(database_->handle(), "PRAGMA max_page_count = 300", nullptr, nullptr, nullptr);
  EXPECT_EQ(run(whole).failed.size(), 1);
  EXPECT_EQ(notes(), 0);
  sqlite3_exec(database_->handle(), "PRAGMA max_page_count = 100000", nullptr, nullptr, nullptr);
  expectAsGiven(onlyNote(run(whole), noteclass::Document));
}

TEST_F(LargeNotes, DamageIsToldWithTheNote) {
  ASSERT_EQ(run(xml()).failed.join(u' ').toStdString(), "");
  const NoteId id = database_->notes().list(noteclass::Document).first().id;
  for (const qsizetype at : {0, 4, 5, 8, 16, 20}) {
    Note before;
    ASSERT_TRUE(database_->notes().read(id, before));
    QByteArray packed = packItems(before.items);
    const QByteArray kept = packed;
    packed[at] = packed[at + 1] = packed[at + 2] = '\xFF';
    const auto put = [&](const QByteArray& bytes) {
      StoredBlob blob(database_->connection(), id, StoredBlob::Use::Write);
      blob.write(0, bytes);
    };
    put(packed);
    Note read;
    LargeValues large;
    int number = 0;
    try {
      if (NoteReader(*database_).read(id, read, large))
        for (qsizetype i = 0; i < read.items.size(); ++i) large.whole(read, i);
    } catch (const RuntimeError& error) {
      number = error.number();
    }
    EXPECT_EQ(number, enginefault::Damaged) << at;
    large = {};
    put(kept);
  }
}

#if defined(__GLIBC__) && !defined(LENS_SANITIZED)
// What the process held at most while it did something, beyond what it held before; in MB.
qint64 peakOf(const std::function<void()>& work) {
  const auto told = [](const QByteArray& name) {
    QFile status(u"/proc/self/status"_s);
    EXPECT_TRUE(status.open(QIODevice::ReadOnly));
    for (const QByteArray& line : status.readAll().split('\n'))
      if (line.startsWith(name)) return line.simplified().split(' ').value(1).toLongLong() / 1024;
    return qint64(-1);
  };
  malloc_trim(0);  // what earlier tests gave back is no room for this one
  QFile reset(u"/proc/self/clear_refs"_s);
  EXPECT_TRUE(reset.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && reset.write("5") == 1);
  const qint64 before = told("VmRSS:");
  work();
  return told("VmHWM:") - before;
}

// Neither way has the document in memory: that alone were its size three times over.
TEST_F(LargeNotes, ManyItemsOfRichTextAreNotHeldTogether) {
  constexpr qint64 kMost = 32;
  const QString in = folder_.filePath(u"in.dxl"_s), out = folder_.filePath(u"out.dxl"_s);
  QByteArray piece;
  while (piece.size() < 60000)
    piece += "<par def='1'><run><font size='10pt'/>The delivery dates follow the letter.</run></par>\n";
  {
    QFile file(in);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<document>");
    for (int i = 0; i < 400; ++i)
      file.write("<item name='Body'><richtext><pardef id='1'/>" + piece + "</richtext></item>");
    file.write("</document>");
  }
  ImportReport report;
  const qint64 import = peakOf([&] { DxlImporter(*database_).importFile(in, report); });
  EXPECT_EQ(report.failed.join(u' ').toStdString(), "");
  const qint64 exporting = peakOf([&] {
    QFile file(out);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && exportDatabase(*database_, file));
  });
  EXPECT_GE(QFileInfo(out).size(), 20 * 1000 * 1000);
  EXPECT_LE(import, kMost);
  EXPECT_LE(exporting, kMost);
  std::cout << "peak: import " << import << " MB, export " << exporting << " MB\n";
}
#endif

TEST(PackedDirectory, IsWhatStandsBeforeTheValues) {
  QRandomGenerator random(5);
  for (int round = 0; round < 200; ++round) {
    QVector<Item> items;
    for (int i = random.bounded(12); i > 0; --i)
      items.push_back({QString(random.bounded(5), QChar(u'a' + i)) + QString(random.bounded(3), QChar(0xFC)),
                       quint16(random.bounded(0x800)), rawValue(0x500, QByteArray(random.bounded(40), 'v'))});
    const QByteArray whole = packItems(items);
    QByteArray parts = packDirectory(items, [](const Item& item) { return item.value.size(); });
    for (const Item& item : items) parts += item.value;
    ASSERT_EQ(parts, whole);
    const qsizetype directory = packedDirectorySize(QByteArrayView(whole).first(kPackedHead), whole.size());
    const QVector<PackedPlace> places = packedPlaces(QByteArrayView(whole).first(directory), whole.size());
    ASSERT_EQ(places.size(), items.size());
    for (qsizetype i = 0; i < items.size(); ++i) {
      EXPECT_EQ(QString::fromUtf8(whole.mid(places[i].nameAt, places[i].nameLength)), items[i].name);
      EXPECT_EQ(whole.mid(places[i].valueAt, places[i].valueLength), items[i].value);
      EXPECT_EQ(places[i].flags, items[i].flags);
    }
  }
}

}  // namespace
}  // namespace lens

// Large imports: files of any size that are taken for large ones, and whatever a database shows of itself.
#pragma once

#include <sqlite3.h>

#include <QCryptographicHash>
#include <algorithm>
#include <functional>
#include <thread>

#include "embedded/format/packed_note.h"
#include "embedded/store/object_copy.h"
#include "import_fixture.h"
#include "notes/literals.h"

namespace lens {

// Does something once, when the importer has come to so many elements.
class AtElement : public ImportProgress {
 public:
  AtElement(int element, std::function<void()> work) : left_(element), work_(std::move(work)) {}
  bool go(const QString&, qint64 done, qint64 total) override {
    EXPECT_LE(done, total);
    if (left_-- == 0) work_();
    return true;
  }
  bool reached() const { return left_ < 0; }

 private:
  int left_;
  std::function<void()> work_;
};

inline qint64 firstNumber(const Database& database, const char* sql) {
  sqlite3_stmt* statement = nullptr;
  EXPECT_EQ(sqlite3_prepare_v2(database.handle(), sql, -1, &statement, nullptr), SQLITE_OK) << sql;
  const qint64 number = sqlite3_step(statement) == SQLITE_ROW ? sqlite3_column_int64(statement, 0) : -1;
  sqlite3_finalize(statement);
  return number;
}

class LargeImportTest : public DxlImport {
 protected:
  static QByteArray unidOf(int number) {
    return QByteArray("AB0011223344556677889900") + QByteArray::number(number).rightJustified(8, '0');
  }
  static QByteArray document(int number, const QByteArray& subject, const QByteArray& more = {}) {
    return "<document form='Memo'><noteinfo unid='" + unidOf(number) +
           "' sequence='3'><created><datetime>20240311T085502,00+01</datetime></created>"
           "<modified><datetime>20240311T091244,00+01</datetime></modified>"
           "<revised><datetime>20240311T091244,00+01</datetime></revised></noteinfo>"
           "<item name='Subject'><text>" +
           subject + "</text></item>" + more + "</document>";
  }
  static QByteArray attachment(const QByteArray& bytes) {
    return "<item name='$FILE' summary='true'><object><file name='a.bin' size='" +
           QByteArray::number(bytes.size()) + "'><filedata>" + bytes.toBase64() +
           "</filedata></file></object></item>";
  }
  // Whole, with attachments at each seventh.
  static QByteArray documents(int first, int last, const QByteArray& subject = "arrived pump") {
    QByteArray xml;
    for (int number = first; number <= last; ++number)
      xml += document(number, subject + ' ' + QByteArray::number(number),
                      number % 7 ? QByteArray() : attachment(QByteArray(5000, char('a' + number % 26))));
    return xml;
  }
  static QByteArray database(const QByteArray& content, const QByteArray& attributes = {}) {
    return "<database xmlns='http://www.lotus.com/dxl' " + attributes + '>' + content + "</database>";
  }

  // As a large file, in turns of that length.
  ImportReport runLarge(const QByteArray& bytes, ImportProgress* progress = nullptr,
                        const ArrivalPace& pace = {0, 0}) {
    return importLarge(*database_, write(bytes), progress, pace);
  }
  static ImportReport importLarge(Database& target, const QString& path, ImportProgress* progress = nullptr,
                                  const ArrivalPace& pace = {0, 0}) {
    ImportReport report;
    DxlImporter importer(target);
    importer.setLarge({1, pace});
    importer.importFile(path, report, progress);
    return report;
  }

  // In another thread, which has a connection of its own.
  void elsewhere(const std::function<void(Database&)>& work) {
    std::thread([&] { work(*Database::open(database_->path())); }).join();
  }

  // Whatever somebody can see of the database, by every way to its notes.
  static QStringList shown(const Database& database) {
    QStringList lines;
    const NoteStore& notes = database.notes();
    const auto line = [&](const QString& text) { lines.append(text); };
    const DatabaseInfo info = database.info();
    line(u"info %1 %2 %3"_s.arg(info.title, info.replicaId, info.templateName));
    line(u"change %1"_s.arg(database.versions().changeSequence()));
    for (quint16 one = 1; one != 0; one = quint16(one << 1))
      line(u"class %1: %2 notes, single %3"_s.arg(one, 0, 16)
               .arg(notes.noteCount(one))
               .arg(notes.specialNote(one).value()));
    for (const NoteSummary& note : notes.list(0x7FFF))
      line(u"listed %1 %2"_s.arg(note.id.hexText(), note.unid.text()));
    notes.scan(0x7FFF, [&](const Note& note) {
      line(u"scanned %1 %2"_s.arg(note.header.id.hexText(), note.text(u"Subject")));
      return true;
    });
    notes.scanPacked(0x7FFF, [&](const PackedNote&) {
      line(u"packed"_s);
      return true;
    });
    for (const NoteChange& change : database.versions().changesSince(0))
      line(u"change %1 %2"_s.arg(change.change).arg(change.id.hexText()));
    for (const NoteVersion& version : database.versions().versionsAfter({}, 100000))
      line(u"version %1 %2 %3"_s.arg(version.unid.text()).arg(version.live).arg(version.sequence));
    for (quint32 id = 0x8FA; id < 0x8FA + 4 * 400; id += 4) {
      Note note;
      Item item;
      const bool read = notes.read(NoteId(id), note), hasItem = notes.readItem(NoteId(id), u"Subject", item);
      if (read || hasItem || notes.state(NoteId(id)) < NoteState::Gone) line(u"there %1"_s.arg(id));
    }
    for (int number = 0; number < 400; ++number) {
      Note note;
      NoteVersion version;
      const Unid unid = Unid::fromText(QString::fromLatin1(unidOf(number)));
      if (notes.read(unid, note) || database.versions().findVersion(unid, version))
        line(u"known %1 %2"_s.arg(number).arg(note.text(u"Subject")));
    }
    return lines;
  }

  // What is in it, apart from numbers that are given out; one line for each note.
  static QStringList content(const Database& database) {
    const DatabaseInfo info = database.info();
    QStringList lines{QStringList{info.title, info.templateName, info.inheritsFrom, info.categories,
                                  info.publicAddressBook ? u"book"_s : u""_s}
                          .join(u'|')};
    database.notes().scan(0x7FFF, [&](const Note& note) {
      const NoteHeader& header = note.header;
      QString line =
          u"%1 %2 %3"_s.arg(header.noteClass, 0, 16).arg(header.sequence).arg(header.parent.text());
      if (header.unid.text().startsWith(u"AB00"_s)) line += header.unid.text();
      for (const TimeDate& time : {header.created, header.modified, header.sequenceTime})
        if (header.unid.text().startsWith(u"AB00"_s)) line += u' ' + timeDateHex(time);
      for (const Item& item : note.items) {
        const bool object = mayReferToObject(item);
        QByteArray value = object ? database.objects().digest(objectIdOf(item.data())) : item.value;
        if (value.size() > 1000) value = QCryptographicHash::hash(value, QCryptographicHash::Sha1);
        line += u" %1:%2:%3"_s.arg(item.name).arg(item.flags).arg(QString::fromLatin1(value.toHex()));
      }
      lines.append(line);
      return true;
    });
    for (const NoteVersion& version : database.versions().versionsAfter({}, 100000))
      if (!version.live) lines.append(u"stub "_s + version.unid.text());
    std::sort(lines.begin(), lines.end());
    return lines;
  }

  // Nothing of an import is left that did not come to its end.
  void expectNothingLeft(const QStringList& before) {
    EXPECT_EQ(shown(*database_), before);
    EXPECT_EQ(firstNumber(*database_, "SELECT count(*) FROM info WHERE key LIKE 'arriving%'"), 0);
    EXPECT_EQ(firstNumber(*database_, "PRAGMA user_version"), 4);
    EXPECT_EQ(firstNumber(*database_, "SELECT count(*) FROM note"), notesBefore_);
    EXPECT_EQ(firstNumber(*database_, "SELECT count(*) FROM lineage"), vectorsBefore_);
    EXPECT_EQ(firstNumber(*database_, "SELECT count(*) FROM object"), objectsBefore_);
    EXPECT_EQ(firstNumber(*database_, "SELECT count(*) FROM object_chunk"), objectsBefore_);
    EXPECT_FALSE(QFile::exists(database_->path() + u".import.lock"_s));
  }
  // Some notes that are there already, attachments and a stub among them.
  void fillDatabase() {
    ASSERT_TRUE(run(database(documents(0, 20, "old") + "<note class='icon'><item name='$TITLE'><text>Old"
                                                       "</text></item></note><acl><aclentry name='A'/></acl>",
                             "title='Old'"))
                    .failed.isEmpty());
    for (const int number : {3, 4}) {
      Note note;
      ASSERT_TRUE(database_->notes().read(Unid::fromText(QString::fromLatin1(unidOf(number))), note));
      database_->notes().remove(note.header.id);
    }
    countRows();
  }
  void countRows() {
    notesBefore_ = firstNumber(*database_, "SELECT count(*) FROM note");
    vectorsBefore_ = firstNumber(*database_, "SELECT count(*) FROM lineage");
    objectsBefore_ = firstNumber(*database_, "SELECT count(*) FROM object");
  }

  qint64 notesBefore_ = 0, vectorsBefore_ = 0, objectsBefore_ = 0;
};

}  // namespace lens

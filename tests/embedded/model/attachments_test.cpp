// Files that are attached to rich text, before and after the document is saved.
#include "embedded/model/attaching.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QBuffer>

#include "embedded/model/support/test_documents.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Attaching : Documents {
  Attaching() {
    id = t.add({{u"Body"_s, richValue(u"see"_s), 0}, {u"Other"_s, richValue(u"x"_s), 0}});
    open();
  }
  void open() {
    document = t.document(id);
    body = itemOf(document, u"Body"_s);
  }
  Object embed(const QString& path) { return body.call(u"EmbedObject"_s, 1454, u""_s, path).object(); }
  QByteArray extracted(const Object& file) {
    const QString path = t.file(u"extracted.bin"_s);
    file.call(u"ExtractFile"_s, path);
    return content(path);
  }
  QStringList names(const Value& objects) {
    QStringList names;
    if (objects.isArray())
      for (const Value& object : objects.values()) names.append(object.object().get(u"Name"_s).text());
    return names;
  }
  // Asked by another process, which is the one that locks are for.
  bool isLocked() {
    const pid_t child = fork();
    if (child == 0) {
      const int file = ::open(QFile::encodeName(t.store->path()).constData(), O_RDONLY);
      struct flock lock = {};
      lock.l_type = F_WRLCK;
      lock.l_whence = SEEK_SET;
      _exit(::fcntl(file, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WEXITSTATUS(status) == 1;
  }
  qint64 objects() { return number("SELECT count(*) FROM object"); }
  NoteId id;
  Object document, body;
};

}  // namespace

TEST_F(Attaching, AFileIsThereBeforeAndAfterSaving) {
  const QByteArray bytes = QByteArray(300'000, 'a') + "end";
  const Object file = embed(write(u"Größe 1.bin"_s, bytes));
  EXPECT_EQ(file.get(u"NAME"_s).text(), u"Größe 1.bin"_s);
  EXPECT_EQ(file.get(u"Type"_s).number(), 1454);
  EXPECT_EQ(file.get(u"fileSIZE"_s).number(), 300'003);
  EXPECT_EQ(extracted(file), bytes);
  EXPECT_EQ(names(body.get(u"EmbeddedObjects"_s)), QStringList(u"Größe 1.bin"_s));
  EXPECT_TRUE(document.get(u"HASEMBEDDED"_s).boolean());
  EXPECT_FALSE(t.document(id).get(u"HASEMBEDDED"_s).boolean());
  document.call(u"SAVE"_s, true, false, true);
  open();
  EXPECT_EQ(names(body.get(u"EMBEDDEDOBJECTS"_s)), QStringList(u"Größe 1.bin"_s));
  EXPECT_TRUE(itemOf(document, u"Other"_s).get(u"EMBEDDEDOBJECTS"_s).isEmpty());
  const Object again = document.call(u"GETATTACHMENT"_s, u"GRÖSSE 1.bin"_s).object();
  EXPECT_TRUE(again.isNothing());
  EXPECT_EQ(extracted(document.call(u"GETATTACHMENT"_s, u"grÖße 1.BIN"_s).object()), bytes);
  const Item item = *stored(id).find(u"$FILE");
  EXPECT_EQ(objectModelType(item), 1084);
  FileObject told;
  ASSERT_TRUE(readFileObject(item.data(), told));
  EXPECT_EQ(told.size, 300'003u);
  EXPECT_EQ(localOf(told.modified).date, QDate::currentDate());
  EXPECT_EQ(namesOf(stored(id)), QStringList({u"Body"_s, u"Other"_s, u"$FILE"_s}));
}

// Reading the file beside SQLite would end the locks by which others learn that it is open.
TEST_F(Attaching, ADatabaseThatIsOpenIsAttachedWholeAndStaysLocked) {
  EXPECT_TRUE(isLocked());
  embed(t.store->path());
  EXPECT_TRUE(isLocked()) << "it counts as open for others";
  saveForced(document);
  open();
  const QString copy = t.file(u"copy.nsf"_s);
  body.get(u"EMBEDDEDOBJECTS"_s).values().first().object().call(u"ExtractFile"_s, copy);
  const auto attached = Database::open(copy);
  EXPECT_EQ(attached->notes().noteCount(0xFFFF), t.store->notes().noteCount(0xFFFF));
  Note note;
  ASSERT_TRUE(attached->notes().read(id, note));
  EXPECT_FALSE(note.has(u"$FILE")) << "as it was when it was attached";
}

TEST_F(Attaching, TheJournalsOfAnOpenDatabaseAreNot) {
  for (const QString& suffix : {u"-wal"_s, u"-shm"_s})
    EXPECT_EQ(raised([&] { embed(t.store->path() + suffix); }), err::PermissionDenied)
        << suffix.toStdString();
}

TEST_F(Attaching, WithoutAttachmentsThereAreNoObjects) {
  EXPECT_EQ(body.get(u"EMBEDDEDOBJECTS"_s).typeName(), u"Empty"_s);
}

TEST_F(Attaching, ASecondFileOfANameGetsANameOfItsOwn) {
  QDir(t.file(u""_s)).mkdir(u"b"_s);
  embed(write(u"plan.pdf"_s, "one"));
  embed(write(u"b/PLAN.pdf"_s, "two"));
  saveForced(document);
  open();
  embed(t.file(u"plan.pdf"_s));
  EXPECT_EQ(names(body.get(u"EMBEDDEDOBJECTS"_s)),
            QStringList({u"plan.pdf"_s, u"ATT00001.pdf"_s, u"ATT00002.pdf"_s}));
  saveForced(document);
  open();
  const QVector<Value> files = body.get(u"EMBEDDEDOBJECTS"_s).values();
  ASSERT_EQ(files.size(), 3);
  EXPECT_EQ(extracted(files[0].object()), "one");
  EXPECT_EQ(extracted(files[1].object()), "two");
  EXPECT_EQ(extracted(files[2].object()), "one");
  // The text shows each under the name that it came with.
  QStringList captions;
  const RichText text = RichText::fromBytes(stored(id).find(u"Body")->data());
  for (const RichElement& element : text.elements())
    if (element.kind == RichElement::Kind::Attachment) captions.append(element.caption);
  EXPECT_EQ(captions, QStringList({u"plan.pdf"_s, u"PLAN.pdf"_s, u"plan.pdf"_s}));
}

TEST_F(Attaching, WhatIsNoFileIsRefusedAndNothingChanges) {
  QDir(t.file(u""_s)).mkdir(u"folder"_s);
  const struct {
    QString path;
    int number;
  } table[] = {{u""_s, err::FileNotFound},
               {t.file(u"missing.txt"_s), err::FileNotFound},
               {t.file(u"no/such.txt"_s), err::FileNotFound},
               {t.file(u"folder"_s), err::PathFileAccess}};
  for (const auto& row : table) {
    EXPECT_EQ(raised([&] { embed(row.path); }), row.number) << row.path.toStdString();
    EXPECT_TRUE(reasonOf([&] { embed(row.path); }).contains(row.path));
  }
  EXPECT_TRUE(reasonOf([&] { embed(QString()); }).startsWith(u"mail.nsf: "_s));
  const QString file = write(u"a.txt"_s, "x");
  for (const int kind : {1452, 1453, 0})
    EXPECT_EQ(raised([&] { body.call(u"EMBEDOBJECT"_s, kind, u""_s, file); }), err::InvalidCall);
  EXPECT_EQ(body.get(u"Text"_s).text(), u"see"_s);
  EXPECT_TRUE(body.get(u"EMBEDDEDOBJECTS"_s).isEmpty());
  EXPECT_EQ(document.get(u"ITEMS"_s).upperBound(), 1);
  EXPECT_EQ(objects(), 0);
}

TEST_F(Attaching, AFileThatIsNeverSavedLeavesTheDatabase) {
  Object file = embed(write(u"a.txt"_s, "x"));
  EXPECT_EQ(objects(), 1);
  document.release();
  body.release();
  EXPECT_EQ(extracted(file), "x");
  file.release();
  EXPECT_EQ(objects(), 0);
  EXPECT_EQ(number("SELECT count(*) FROM object_chunk"), 0);
}

TEST_F(Attaching, AFileWhoseItemWasRemovedBeforeSavingLeavesToo) {
  embed(write(u"a.txt"_s, "x"));
  embed(write(u"b.txt"_s, "y"));
  document.call(u"RemoveItem"_s, u"$FILE"_s);
  saveForced(document);
  document.release();
  body.release();
  EXPECT_EQ(objects(), 1);
  EXPECT_EQ(extracted(t.document(id).call(u"GETATTACHMENT"_s, u"b.txt"_s).object()), "y");
}

TEST_F(Attaching, AnAttachmentThatACompactionTookIsNotSavedAsAHole) {
  embed(write(u"a.txt"_s, "x"));
  sql("DELETE FROM object_chunk; DELETE FROM object");
  EXPECT_TRUE(reasonOf([&] { saveForced(document); }).contains(u"mail.nsf"_s));
  EXPECT_FALSE(stored(id).has(u"$FILE"));
}

TEST_F(Attaching, ACopyOfAnUnsavedDocumentHasTheFileToo) {
  embed(write(u"a.txt"_s, "bytes"));
  t.workspace->createDatabase({}, u"target.nsf"_s, {});
  const Object target = t.session().call(u"GETDATABASE"_s, u""_s, u"target.nsf"_s).object();
  const QString noteId = document.call(u"COPYTODATABASE"_s, target).object().get(u"NOTEID"_s).text();
  document.release();
  body.release();
  const Object copy = target.call(u"GETDOCUMENTBYID"_s, noteId).object();
  EXPECT_EQ(extracted(copy.call(u"GETATTACHMENT"_s, u"a.txt"_s).object()), "bytes");
  EXPECT_EQ(names(itemOf(copy, u"Body"_s).get(u"EMBEDDEDOBJECTS"_s)), QStringList(u"a.txt"_s));
  EXPECT_EQ(objects(), 0);
}

TEST_F(Attaching, AFullDatabaseRefusesTheFileAndStaysAsItWas) {
  const QString file = write(u"large.bin"_s, QByteArray(4'000'000, 'x'));
  const QByteArray before = stored(id).find(u"Body")->value;
  sql("PRAGMA max_page_count = " + QByteArray::number(number("PRAGMA page_count") + 40));
  const auto attach = [&] { embed(file); };
  EXPECT_EQ(raised(attach), enginefault::NotSaved);
  EXPECT_TRUE(reasonOf(attach).contains(u"mail.nsf"_s));
  EXPECT_EQ(objects(), 0);
  EXPECT_EQ(document.get(u"ITEMS"_s).upperBound(), 1);
  embed(write(u"small.bin"_s, "x"));
  saveForced(document);
  EXPECT_TRUE(stored(id).has(u"$FILE"));
  EXPECT_NE(stored(id).find(u"Body")->value, before);
}

TEST_F(Attaching, LargeFilesGoInPieces) {
  constexpr qint64 kSize = 40 * 1024 * 1024 + 17;
  const QString path = t.file(u"large.bin"_s);
  QFile source(path);
  ASSERT_TRUE(source.open(QIODevice::WriteOnly));
  QByteArray block(1 << 20, '\0');
  for (qint64 at = 0; at < kSize; at += block.size()) {
    block.fill(char('a' + at / block.size() % 26));
    source.write(block.constData(), qMin<qint64>(block.size(), kSize - at));
  }
  source.close();
  const Object file = embed(path);
  saveForced(document);
  EXPECT_EQ(file.get(u"FILESIZE"_s).number(), double(kSize));
  EXPECT_LE(number("SELECT max(length(bytes)) FROM object_chunk"), 1 << 20);
  EXPECT_GE(number("SELECT count(*) FROM object_chunk"), 40);
  const QString out = t.file(u"out.bin"_s);
  file.call(u"EXTRACTFILE"_s, out);
  QFile left(path), right(out);
  ASSERT_TRUE(left.open(QIODevice::ReadOnly) && right.open(QIODevice::ReadOnly));
  ASSERT_EQ(right.size(), kSize);
  while (!left.atEnd()) ASSERT_EQ(left.read(1 << 20), right.read(1 << 20));
}

TEST_F(Attaching, ADamagedOneIsToldAndTheFileThatWasThereStays) {
  for (const QString& name : {u"1.bin"_s, u"2.bin"_s, u"3.bin"_s})
    embed(write(name, name.toUtf8() + "content"));
  saveForced(document);
  sql("UPDATE object_chunk SET bytes = CAST('X' || substr(bytes, 2) AS BLOB)"
      " WHERE object = (SELECT id FROM object ORDER BY id LIMIT 1 OFFSET 1)");
  open();
  const QString target = write(u"target.bin"_s, "former content");
  int damaged = 0;
  for (const QString& name : {u"1.bin"_s, u"2.bin"_s, u"3.bin"_s}) {
    const Object file = document.call(u"GETATTACHMENT"_s, name).object();
    const QString path = name == u"2.bin"_s ? target : t.file(u"out "_s + name);
    const int failure = raised([&] { file.call(u"EXTRACTFILE"_s, path); });
    EXPECT_EQ(failure, name == u"2.bin"_s ? enginefault::Damaged : 0);
    damaged += failure != 0;
  }
  EXPECT_EQ(damaged, 1);
  EXPECT_EQ(content(target), "former content");
  EXPECT_EQ(content(t.file(u"out 3.bin"_s)), "3.bincontent");
  const Object file = document.call(u"GETATTACHMENT"_s, u"2.bin"_s).object();
  EXPECT_TRUE(reasonOf([&] { file.call(u"EXTRACTFILE"_s, target); }).contains(u"mail.nsf"_s));
  // Nothing is left beside the target.
  EXPECT_EQ(QDir(t.file(u""_s)).entryList({u"target*"_s}).size(), 1);
}

TEST_F(Attaching, ExtractingMakesNoDirectoryAndOverwritesFiles) {
  embed(write(u"a.txt"_s, "x"));
  const Object file = document.call(u"GETATTACHMENT"_s, u"a.txt"_s).object();
  EXPECT_EQ(raised([&] { file.call(u"EXTRACTFILE"_s, t.file(u"new/a.txt"_s)); }), err::PathNotFound);
  EXPECT_FALSE(QDir(t.file(u"new"_s)).exists());
  EXPECT_EQ(raised([&] { file.call(u"EXTRACTFILE"_s, u""_s); }), err::PathFileAccess);
  const QString target = write(u"there.txt"_s, "longer content");
  file.call(u"EXTRACTFILE"_s, target);
  EXPECT_EQ(content(target), "x");
}

// The disk's rules are for whoever writes a file; the document keeps what it was given.
TEST_F(Attaching, NamesAreKeptAsTheyWereGiven) {
  for (const QString& name : {u"../x"_s, u"/etc/passwd"_s, u"dcimages/x"_s, u"Report: Q1.doc"_s, u"aux.c"_s,
                              u".."_s, u"a\tb\nc"_s, u"C:\\dir\\b.bin"_s, u" "_s}) {
    const Object odd = t.document(t.addFile(name, "bytes"));
    EXPECT_EQ(valueOf(odd, u"$FILE"_s), listOf({name})) << name.toStdString();
    const Object file = odd.call(u"GETATTACHMENT"_s, name).object();
    ASSERT_FALSE(file.isNothing()) << name.toStdString();
    EXPECT_EQ(file.get(u"Name"_s).text(), name);
    file.call(u"EXTRACTFILE"_s, t.file(u"out"_s));
    EXPECT_EQ(content(t.file(u"out"_s)), "bytes");
  }
}

TEST_F(Attaching, ObjectsOfOtherProgramsAreNoAttachments) {
  Note note = stored(t.addFile(u"sheet"_s, "x"));
  FileObject file;
  ASSERT_TRUE(readFileObject(note.items[0].data(), file));
  file.hostType = 0x0100;
  note.items[0].value = fileObjectValue(file);
  QByteArray runData;
  appendU16(runData, 8);
  appendU32(runData, 1);
  note.add(u"$AssistRunInfo"_s, 0, rawValue(itemtype::Object, runData));
  t.store->notes().save(note);
  const Object document = t.document(note.header.id);
  EXPECT_EQ(document.call(u"GETATTACHMENT"_s, u"sheet"_s).object().get(u"Type"_s).number(), 1453);
  document.call(u"RemoveItem"_s, u"$FILE"_s);
  EXPECT_FALSE(document.get(u"HASEMBEDDED"_s).boolean());
}

TEST_F(Attaching, ATextShowsEachFileInItsOwnOrderAndOnce) {
  Note note;
  const auto addFile = [&](const QString& name, quint32 object) {
    FileObject file;
    file.name = name;
    file.objectId = object;
    note.add(u"$FILE"_s, itemflag::Summary, fileObjectValue(file));
  };
  constexpr quint32 kFiles = 3000;
  for (quint32 i = 1; i <= kFiles; ++i) addFile(u"file%1.txt"_s.arg(i), i);
  addFile(u"FILE1.txt"_s, kFiles + 1);
  addFile(u"\u00DF.txt"_s, kFiles + 2);
  addFile(u"ss.txt"_s, kFiles + 3);
  RichText text;
  for (quint32 i = kFiles; i > 0; --i) text.appendAttachment(u"File%1.TXT"_s.arg(i), {});
  for (const QString& name : {u"file1.txt"_s, u"SS.txt"_s, u"none.txt"_s}) text.appendAttachment(name, {});
  note.add(u"Body"_s, 0, rawValue(itemtype::RichText, text.toBytes()));
  t.store->notes().save(note);
  const Object shown = t.document(note.header.id);
  const Value all = itemOf(shown, u"Body"_s).get(u"EmbeddedObjects"_s);
  ASSERT_EQ(all.upperBound(), int(kFiles) + 1);
  EXPECT_EQ(all.at(0).object().get(u"NAME"_s).text(), u"file3000.txt"_s);
  EXPECT_EQ(all.at(kFiles - 1).object().get(u"NAME"_s).text(), u"file1.txt"_s) << "the first of two";
  EXPECT_EQ(all.at(kFiles).object().get(u"NAME"_s).text(), u"FILE1.txt"_s) << "the second of two";
  EXPECT_EQ(all.at(kFiles + 1).object().get(u"NAME"_s).text(), u"ss.txt"_s);
  const Object sharp = shown.call(u"GetAttachment"_s, u"\u00DF.TXT"_s).object();
  EXPECT_EQ(sharp.get(u"Name"_s).text(), u"\u00DF.txt"_s);
  EXPECT_TRUE(shown.call(u"GETATTACHMENT"_s, u"none"_s).object().isNothing());
}

// Each way in which up to three files of one name can stand in up to three texts.
TEST_F(Attaching, EachOfSeveralFilesOfANameIsReachedOnce) {
  for (int files = 1; files <= 3; ++files) {
    for (int ways = 1; ways < 27; ++ways) {
      SCOPED_TRACE(ways + 100 * files);
      Note note;
      QVector<quint32> objects;
      for (int i = 0; i < files; ++i) {
        QBuffer bytes;
        bytes.setData(QByteArray::number(i));
        bytes.open(QIODevice::ReadOnly);
        FileObject file;
        file.name = i == 1 ? u"A.txt"_s : u"a.txt"_s;
        file.objectId = t.store->objects().add(bytes).id;
        file.size = 1;
        note.add(u"$FILE"_s, itemflag::Summary, fileObjectValue(file));
      }
      for (const int places : {ways % 3, ways / 3 % 3, ways / 9}) {
        RichText text;
        text.appendText(u"text"_s);
        for (int i = 0; i < places; ++i) text.appendAttachment(u"a.TXT"_s, u"caption"_s);
        note.add(u"Body"_s, 0, rawValue(itemtype::RichText, text.toBytes()));
      }
      t.store->notes().save(note);
      const Object shown = t.document(note.header.id);
      QByteArrayList reached;
      const Value items = shown.get(u"ITEMS"_s);
      for (const Value& item : items.values()) {
        if (item.object().get(u"Type"_s).number() != 1) continue;
        const Value all = item.object().get(u"EMBEDDEDOBJECTS"_s);
        if (!all.isArray()) continue;
        for (const Value& file : all.values()) {
          file.object().call(u"EXTRACTFILE"_s, t.file(u"out"_s));
          reached.append(content(t.file(u"out"_s)));
        }
      }
      EXPECT_EQ(reached, QByteArrayList({"0", "1", "2"}).first(files));
    }
  }
}

TEST_F(Attaching, WhatATextShowsFollowsItsChanges) {
  const Object document = t.document(t.add({{u"Body"_s, richValue(u"text"_s), 0}}));
  const Object body = itemOf(document, u"Body"_s);
  EXPECT_FALSE(body.get(u"EMBEDDEDOBJECTS"_s).isArray());
  for (int count = 1; count <= 3; ++count) {
    body.call(u"EMBEDOBJECT"_s, 1454, u""_s, write(u"plan.txt"_s, "x"));
    EXPECT_EQ(body.get(u"EMBEDDEDOBJECTS"_s).upperBound(), count - 1);
  }
  document.call(u"RemoveItem"_s, u"$FILE"_s);
  EXPECT_EQ(body.get(u"EMBEDDEDOBJECTS"_s).upperBound(), 1);
  document.call(u"RemoveItem"_s, u"Body"_s);
  EXPECT_GT(raised([&] { body.get(u"EMBEDDEDOBJECTS"_s); }), 0);
}

TEST_F(Attaching, FreeNamesPassOverThoseThatAreTaken) {
  Note note;
  const auto take = [&](const QString& name) {
    FileObject file;
    file.name = name;
    note.add(u"$FILE"_s, 0, fileObjectValue(file));
  };
  EXPECT_EQ(freeAttachmentName(note, u"a.txt"_s), u"a.txt"_s);
  take(u"A.TXT"_s);
  EXPECT_EQ(freeAttachmentName(note, u"a.txt"_s), u"ATT00001.txt"_s);
  take(u"att00001.txt"_s);
  EXPECT_EQ(freeAttachmentName(note, u"a.txt"_s), u"ATT00002.txt"_s);
  take(u"README"_s);
  EXPECT_EQ(freeAttachmentName(note, u"readme"_s), u"ATT00001"_s);
  EXPECT_EQ(freeAttachmentName(note, u"dir\\b.txt"_s), u"dir\\b.txt"_s);
}

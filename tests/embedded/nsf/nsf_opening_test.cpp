// Real databases in a workspace: opened from a copy that nobody can change, with all that the file has.
#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

#include "embedded/capi/embedded_capi.h"
#include "embedded/capi/status.h"
#include "embedded/checks/database_comparison.h"
#include "embedded/dxl/dxl_exporter.h"
#include "embedded/dxl/dxl_importer.h"
#include "embedded/model/embedded_gateway.h"
#include "embedded/nsf/nsf_acl_items.h"
#include "embedded/nsf/real_databases_fixture.h"
#include "embedded/search/full_text.h"
#include "embedded/views/folder_documents.h"

namespace lens {
namespace {

class RealDatabases : public RealDatabasesTest {};

TEST_F(RealDatabases, HaveTheNotesOfTheFileWithAllTheirNumbers) {
  const auto copy = open();
  const auto real = source();
  int seen = 0;
  real->forEachNote([&](NsfNote& note) {
    Note here;
    if (!copy->notes().read(note.header.id, here)) {
      EXPECT_TRUE(note.isGhost() || note.isSoftDeleted()) << note.header.id.value();
      return true;
    }
    ++seen;
    EXPECT_EQ(here.header.unid, note.header.unid);
    EXPECT_EQ(here.header.noteClass, note.header.noteClass);
    EXPECT_EQ(here.header.sequence, note.header.sequence);
    EXPECT_TRUE(sameTimeDate(here.header.sequenceTime, note.header.sequenceTime));
    EXPECT_TRUE(sameTimeDate(here.header.created, note.header.created));
    EXPECT_TRUE(sameTimeDate(here.header.modified, note.header.modified));
    EXPECT_TRUE(sameTimeDate(here.header.added, note.header.added));
    EXPECT_TRUE(sameTimeDate(here.header.accessed, note.header.accessed));
    Note wanted = note.toNote();
    if (note.header.id == NoteId(ids.acl)) addAclItems(*real->acl(), wanted);
    EXPECT_EQ(here.items.size(), wanted.items.size());
    for (qsizetype i = 0; i < qMin(here.items.size(), wanted.items.size()); ++i) {
      EXPECT_EQ(here.items[i].name, wanted.items[i].name);
      EXPECT_EQ(here.items[i].flags, wanted.items[i].flags);
      EXPECT_EQ(here.items[i].value, wanted.items[i].value);
    }
    Note byUnid;
    EXPECT_TRUE(copy->notes().read(note.header.unid, byUnid));
    EXPECT_EQ(byUnid.header.id, note.header.id);
    return true;
  });
  EXPECT_GT(seen, 8);
  EXPECT_EQ(seen, copy->notes().noteCount(0x7FFF) + 1);  // one has no class and is in no list
  EXPECT_EQ(copy->notes().specialNote(noteclass::Icon), NoteId(ids.icon));
  EXPECT_EQ(copy->info().title, real->properties().title);
  EXPECT_EQ(copy->info().replicaId, timeDateHex(real->properties().replicaId));
}

TEST_F(RealDatabases, KnowDeletedNotesResponsesAndFolders) {
  const auto copy = open();
  EXPECT_EQ(copy->notes().state(NoteId(ids.stub)), NoteState::Stub);
  EXPECT_NE(copy->notes().state(NoteId(ids.softDeleted)), NoteState::Live);
  EXPECT_NE(copy->notes().state(NoteId(ids.ghost)), NoteState::Live);
  EXPECT_EQ(copy->notes().state(NoteId(ids.profile)), NoteState::Live);
  Note parent, response, folder;
  ASSERT_TRUE(copy->notes().read(NoteId(ids.parent), parent));
  ASSERT_TRUE(copy->notes().read(NoteId(ids.response), response));
  EXPECT_EQ(response.header.parent, parent.header.unid);
  ASSERT_TRUE(copy->notes().read(NoteId(ids.folder), folder));
  NsfNote real;
  const auto file = source();
  ASSERT_TRUE(file->readNote(NoteId(ids.folder), real));
  const QVector<NoteId> documents = file->folderDocuments(real);
  EXPECT_FALSE(documents.isEmpty());
  EXPECT_EQ(folderDocuments(*copy, folder.header.unid), documents);
}

TEST_F(RealDatabases, LeaveTheFileAsItIs) {
  const QByteArray bytes = contentOf(path);
  ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadUser));
  const QDateTime time = QFileInfo(path).lastModified();
  const QStringList beside = QDir(workspace->dataDirectory()).entryList(QDir::AllEntries | QDir::Hidden);
  {
    const auto copy = open();
    Note note;
    ASSERT_TRUE(copy->notes().read(NoteId(ids.attached), note));
    for (const Item& item : std::as_const(note.items))
      if (item.type() == itemtype::Object)
        copy->objects().extract(objectIdOf(item.data()), directory.filePath(u"out"_s));
  }
  EXPECT_EQ(contentOf(path), bytes);
  EXPECT_EQ(QFileInfo(path).lastModified(), time);
  EXPECT_EQ(QDir(workspace->dataDirectory()).entryList(QDir::AllEntries | QDir::Hidden), beside);
}

TEST_F(RealDatabases, ReadAttachmentsFromTheFile) {
  const auto copy = open();
  Note note;
  ASSERT_TRUE(copy->notes().read(NoteId(ids.attached), note));
  int files = 0;
  for (const Item& item : std::as_const(note.items)) {
    FileObject file;
    if (!readFileValue(item.value, file)) continue;
    ++files;
    EXPECT_EQ(copy->objects().size(file.objectId), made::sampleContent().size());
    const QString out = directory.filePath(u"out"_s);
    copy->objects().extract(file.objectId, out);
    EXPECT_EQ(contentOf(out), made::sampleContent()) << file.name.toStdString();
    // A replica of ours knows it again.
    QFile content(out);
    ASSERT_TRUE(content.open(QIODevice::ReadOnly));
    const auto ours = workspace->createDatabase({}, u"ours%1.nsf"_s.arg(files), {});
    EXPECT_EQ(copy->objects().digest(file.objectId), ours->objects().digest(ours->objects().add(content).id));
  }
  EXPECT_EQ(files, 5);
  EXPECT_EQ(copy->objects().size(0x7FFFFFF2), -1);
}

TEST_F(RealDatabases, AreCopiedWithTheirAttachments) {
  open();
  workspace->copyDatabase({QString(), u"real.nsf"_s}, {QString(), u"mine.nsf"_s});
  QFile::remove(path);
  const auto mine = workspace->database({}, u"mine.nsf"_s);
  EXPECT_TRUE(mine->isWritable());
  Note note, wanted;
  ASSERT_TRUE(open()->notes().read(NoteId(ids.attached), wanted));
  ASSERT_TRUE(mine->notes().read(wanted.header.unid, note));
  int files = 0;
  for (const Item& item : std::as_const(note.items)) {
    FileObject file;
    if (!readFileValue(item.value, file)) continue;
    ++files;
    const QString out = directory.filePath(u"out"_s);
    mine->objects().extract(file.objectId, out);
    EXPECT_EQ(contentOf(out), made::sampleContent());
  }
  EXPECT_EQ(files, 5);
}

// What finds and reads notes of ours finds and reads these.
TEST_F(RealDatabases, AreReadBehindTheObjectModelAsOurs) {
  ASSERT_TRUE(lens::RealDatabases::indexCopy(open()->path(), [](qint64, qint64) { return true; }));
  EmbeddedGateway gateway(workspace);
  const Object session = gateway.create(u"Notes.NotesSession"_s);
  const Object database = session.call(u"GETDATABASE"_s, u""_s, u"real.nsf"_s).object();
  const auto noteId = [](const Object& document) { return document.get(u"NOTEID"_s).text(); };
  const QString unid = made::unidText(described.note(ids.parent).unid);
  const Object byUnid = database.call(u"GETDOCUMENTBYUNID"_s, unid).object();
  EXPECT_EQ(noteId(byUnid), NoteId(ids.parent).hexText());
  EXPECT_EQ(byUnid.call(u"GETITEMVALUE"_s, u"Subject"_s).at(0).text(), u"question"_s);
  const Object byId = database.call(u"GETDOCUMENTBYID"_s, NoteId(ids.plain).hexText()).object();
  EXPECT_EQ(byId.get(u"UNIVERSALID"_s).text(), made::unidText(described.note(ids.plain).unid));
  EXPECT_TRUE(byId.call(u"GETFIRSTITEM"_s, u"Authors"_s).object().get(u"ISAUTHORS"_s).boolean());
  const auto only = [&](const Object& found) {
    EXPECT_EQ(found.get(u"COUNT"_s).number(), 1);
    return noteId(found.call(u"GETFIRSTDOCUMENT"_s).object());
  };
  EXPECT_EQ(only(database.call(u"SEARCH"_s, u"Subject = \"answer\""_s, Object(), 0).object()),
            NoteId(ids.response).hexText());
  EXPECT_EQ(only(database.call(u"FTSEARCH"_s, u"answer"_s, 0).object()), NoteId(ids.response).hexText());
  EXPECT_EQ(only(database.call(u"GETPROFILEDOCCOLLECTION"_s, u"CalendarProfile"_s).object()),
            NoteId(ids.profile).hexText());
  const std::pair<const char16_t*, quint32> kinds[] = {{u"SELECTACL", ids.acl},
                                                       {u"SELECTFORMS", ids.form},
                                                       {u"SELECTVIEWS", ids.view},
                                                       {u"SELECTFOLDERS", ids.folder},
                                                       {u"SELECTICON", ids.icon}};
  for (const auto& [kind, id] : kinds) {
    const Object notes = database.call(u"CREATENOTECOLLECTION"_s, false).object();
    notes.set(QString::fromUtf16(kind), true);
    notes.call(u"BUILDCOLLECTION"_s);
    EXPECT_EQ(notes.call(u"GETFIRSTNOTEID"_s).text(), NoteId(id).hexText());
    EXPECT_EQ(notes.get(u"COUNT"_s).number(), 1);
  }
}

TEST_F(RealDatabases, AreReadBehindTheFunctionsAsOurs) {
  EmbeddedCApi api(workspace);
  DbHandle handle = 0;
  ASSERT_EQ(api.NSFDbOpen("real.nsf", handle), 0);
  qint32 form = 0;
  EXPECT_EQ(api.NIFFindDesignNote(handle, "Memo", noteclass::Form, form), 0);
  EXPECT_EQ(quint32(form), ids.form);
  NoteHandle icon = 0;
  ASSERT_EQ(api.NSFNoteOpen(handle, qint32(0xFFFF0010), 0, icon), 0);
  BlockId item, value;
  quint16 type = 0;
  quint32 length = 0;
  ASSERT_EQ(api.NSFItemInfo(icon, "$TITLE", 6, item, type, value, length), 0);
  EXPECT_EQ(type, itemtype::Text);
  const char* const bytes = api.OSLockObject(value.pool) + value.block;
  EXPECT_EQ(QByteArray(bytes + 2, qsizetype(length) - 2), "Papers\n#1pumps");
  api.OSUnlockObject(value.pool);
  NoteHandle stub = 0;
  EXPECT_NE(api.NSFNoteOpen(handle, qint32(ids.stub), 0, stub), 0);
  api.NSFNoteClose(icon);
  api.NSFDbClose(handle);
}

// Every member that writes raises, and not a byte changes: neither of the file nor of its copy.
TEST_F(RealDatabases, RefuseEveryChangeBehindTheObjectModel) {
  EmbeddedGateway gateway(workspace);
  const Object session = gateway.create(u"Notes.NotesSession"_s);
  const Object database = session.call(u"GETDATABASE"_s, u""_s, u"real.nsf"_s).object();
  const auto document = [&] {
    return database.call(u"GETDOCUMENTBYID"_s, NoteId(ids.plain).hexText()).object();
  };
  const auto changed = [&](const std::function<void(const Object& document)>& change) {
    const Object open = document();
    change(open);
    open.call(u"SAVE"_s, true, false);
  };
  const auto found = [&] { return database.call(u"SEARCH"_s, u"1"_s, Object(), 0).object(); };
  const std::pair<const char*, std::function<void()>> members[] = {
      {"SAVE of a value",
       [&] {
         changed([](const Object& open) { open.call(u"REPLACEITEMVALUE"_s, u"Subject"_s, u"new"_s); });
       }},
      {"SAVE of an item less",
       [&] { changed([](const Object& open) { open.call(u"RemoveItem"_s, u"Subject"_s); }); }},
      {"SAVE of rich text",
       [&] {
         changed([](const Object& open) {
           open.call(u"CREATERICHTEXTITEM"_s, u"More"_s).object().call(u"APPENDTEXT"_s, u"more"_s);
         });
       }},
      {"SAVE of flags",
       [&] {
         changed([](const Object& open) {
           open.call(u"GETFIRSTITEM"_s, u"Subject"_s).object().set(u"ISPROTECTED"_s, true);
         });
       }},
      {"Remove", [&] { document().call(u"Remove"_s, true); }},
      {"REMOVEPERMANENTLY", [&] { document().call(u"REMOVEPERMANENTLY"_s, true); }},
      {"COPYTODATABASE", [&] { document().call(u"COPYTODATABASE"_s, database); }},
      {"REMOVEALL", [&] { found().call(u"REMOVEALL"_s, true); }},
      {"Remove of the database", [&] { database.call(u"Remove"_s); }},
  };
  const auto copy = open();
  const QByteArray source = contentOf(path), bytes = contentOf(copy->path());
  for (const auto& [name, write] : members) {
    QString reason;
    const int number = errorNumber(write, &reason);
    const bool isRemoval = QByteArrayView(name) == "Remove of the database";
    EXPECT_EQ(number, isRemoval ? int(err::PermissionDenied) : int(enginefault::NotSaved))
        << name << ": " << reason.toStdString();
    EXPECT_TRUE(contentOf(path) == source) << name;
  }
  Note note;
  ASSERT_TRUE(copy->notes().read(NoteId(ids.plain), note));
  EXPECT_NE(note.text(u"Subject"), u"new"_s);
  EXPECT_EQ(copy->notes().noteCount(0x7FFF), open()->notes().noteCount(0x7FFF));
  const QString copied = copy->path();
  EXPECT_TRUE(contentOf(copied) == bytes);
}

TEST_F(RealDatabases, RefuseEveryChangeBehindTheFunctions) {
  const QByteArray bytes = contentOf(path);
  EmbeddedCApi api(workspace);
  DbHandle handle = 0;
  ASSERT_EQ(api.NSFDbOpen("real.nsf", handle), 0);
  EXPECT_EQ(api.NSFNoteDelete(handle, qint32(ids.plain), 0x201), status::CannotAccess);
  EXPECT_NE(api.NSFDbCreate("real.nsf", 0xFF01, 1), status::Ok);
  NoteHandle note = 0;
  EXPECT_EQ(api.NSFNoteOpen(handle, qint32(ids.plain), 0, note), 0);
  api.NSFNoteClose(note);
  api.NSFDbClose(handle);
  EXPECT_NE(api.NSFDbCreate("real.nsf", 0xFF01, 1), status::Ok) << "it is closed";
  EXPECT_EQ(contentOf(path), bytes);
}

TEST_F(RealDatabases, AreNeverRemovedOrReplaced) {
  const QByteArray bytes = contentOf(path);
  QString reason;
  EXPECT_EQ(errorNumber(
                [&] {
                  workspace->removeDatabase({QString(), u"real.nsf"_s});
                },
                &reason),
            err::PermissionDenied);
  EXPECT_TRUE(reason.contains(path)) << reason.toStdString();
  EXPECT_GT(errorNumber([&] { workspace->createDatabase({}, u"real.nsf"_s, {}, true); }), 0);
  EXPECT_EQ(contentOf(path), bytes);
}

TEST_F(RealDatabases, AreReadOnceAndAnewWhenTheFileChanges) {
  const QString first = open()->path();
  EXPECT_EQ(open()->path(), first);
  EXPECT_EQ(copies().size(), 1);
  made::MadeNote another = made::document(77, "another");
  const quint32 id = described.add(another);
  write(path, described);
  const auto copy = open();
  EXPECT_NE(copy->path(), first);
  EXPECT_EQ(copy->notes().state(NoteId(id)), NoteState::Live);
  EXPECT_EQ(copies().size(), 1);  // nobody has the old one open
}

TEST_F(RealDatabases, KeepAllButTheAttachmentsWhenTheFileHasGone) {
  const auto copy = open();
  ASSERT_TRUE(QFile::remove(path));
  EXPECT_EQ(open().get(), copy.get());
  Note note;
  ASSERT_TRUE(copy->notes().read(NoteId(ids.attached), note));
  QString reason;
  const QString out = directory.filePath(u"out"_s);
  for (const Item& item : std::as_const(note.items)) {
    if (item.type() != itemtype::Object) continue;
    const auto extract = [&] { copy->objects().extract(objectIdOf(item.data()), out); };
    EXPECT_EQ(errorNumber(extract, &reason), enginefault::CannotOpen);
  }
  EXPECT_TRUE(reason.contains(path)) << reason.toStdString();
  EXPECT_FALSE(QFileInfo::exists(out));
}

TEST_F(RealDatabases, AttachmentsOfAnotherStateAreNotShown) {
  const auto copy = open();
  Note note;
  ASSERT_TRUE(copy->notes().read(NoteId(ids.attached), note));
  described.information = "Another title";
  write(path, described);
  int objects = 0;
  for (const Item& item : std::as_const(note.items)) {
    if (item.type() != itemtype::Object) continue;
    ++objects;
    const auto size = [&] { copy->objects().size(objectIdOf(item.data())); };
    EXPECT_EQ(errorNumber(size), enginefault::CannotOpen);
  }
  EXPECT_GT(objects, 0);
}

TEST_F(RealDatabases, OpenFromAnywhereOnThisMachine) {
  const QString elsewhere = directory.filePath(u"far away.NSF"_s);
  write(elsewhere, described);
  const DatabasePlace place = workspace->place({}, elsewhere);
  EXPECT_EQ(place.path, QDir::toNativeSeparators(elsewhere));
  EXPECT_EQ(workspace->absolutePath(place), elsewhere);
  const auto copy = workspace->database(place.server, place.path);
  EXPECT_EQ(copy->notes().state(NoteId(ids.plain)), NoteState::Live);
  EXPECT_EQ(workspace->realDatabase(*copy)->source, QFileInfo(elsewhere).canonicalFilePath());
  // One of ours does not, and nothing else does.
  EXPECT_GT(errorNumber([&] { workspace->place({}, directory.filePath(u"none.nsf"_s)); }), 0);
  Database::create(directory.filePath(u"ours.nsf"_s), {});
  EXPECT_GT(errorNumber([&] { workspace->place({}, directory.filePath(u"ours.nsf"_s)); }), 0);
}

TEST_F(RealDatabases, AreListedWithTheirTitleAndTellHowTheyWereRead) {
  EXPECT_EQ(workspace->databases({}), QStringList{u"real.nsf"_s});
  EXPECT_EQ(workspace->infoOf({QString(), u"real.nsf"_s}).title, source()->properties().title);
  const auto copy = open();
  const auto real = workspace->realDatabase(*copy);
  ASSERT_TRUE(real);
  const NsfReport& report = source()->report();
  EXPECT_EQ(real->notesFound, report.notesFound);
  EXPECT_EQ(real->notesRead, report.notesProven);
  EXPECT_EQ(real->line(), u"read-only copy of real.nsf, %1 of %1 notes read"_s.arg(report.notesProven));
  EXPECT_TRUE(real->reportText.contains(u"Notes: "_s));
  const QByteArray saved =
      contentOf(workspace->directory() + u"/cache/nsf/"_s + copies().value(0) + u"/report.json"_s);
  EXPECT_EQ(QJsonDocument::fromJson(saved)[u"notesProven"_s].toInt(), report.notesProven);
  const auto ours = workspace->createDatabase({}, u"ours.nsf"_s, {});
  EXPECT_FALSE(workspace->realDatabase(*ours));
}

TEST_F(RealDatabases, ARefusalNamesTheFileAndTheReason) {
  const auto reasonOf = [&](const QByteArray& bytes, int number) {
    writeFile(path, bytes);
    QString reason;
    EXPECT_EQ(errorNumber([&] { open(); }, &reason), number);
    EXPECT_TRUE(reason.contains(u"real.nsf"_s)) << reason.toStdString();
    EXPECT_TRUE(copies().isEmpty());
    return reason;
  };
  made::MadeDatabase old = described;
  old.ods = 41;
  EXPECT_TRUE(reasonOf(made::makeFile(old).bytes, enginefault::CannotOpen).contains(u"older release"_s));
  QByteArray encrypted = made::makeFile(described).bytes;
  for (qsizetype at = 1024; at < encrypted.size(); ++at) encrypted[at] = char(encrypted[at] ^ 0x5C);
  EXPECT_TRUE(reasonOf(encrypted, enginefault::CannotOpen).contains(u"encrypted"_s));
  reasonOf(made::makeFile(described).bytes.first(1023), enginefault::NotADatabase);
}

TEST_F(RealDatabases, GetAFullTextIndexInAnotherCopy) {
  const auto plain = open();
  EXPECT_FALSE(hasFullTextIndex(*plain));
  EXPECT_FALSE(lens::RealDatabases::indexCopy(plain->path(), [](qint64, qint64) { return false; }));
  EXPECT_EQ(open().get(), plain.get());
  ASSERT_TRUE(lens::RealDatabases::indexCopy(plain->path(), [](qint64, qint64) { return true; }));
  const auto indexed = open();
  EXPECT_NE(indexed->path(), plain->path());
  EXPECT_TRUE(hasFullTextIndex(*indexed));
  EXPECT_FALSE(indexed->isWritable());
  EXPECT_EQ(fullTextSearch(*indexed, u"answer", 0), QVector{NoteId(ids.response)});
  EXPECT_EQ(fullTextSearch(*indexed, u"question", 0), QVector{NoteId(ids.parent)});
  EXPECT_EQ(workspace->realDatabase(*indexed)->line(), workspace->realDatabase(*plain)->line());
  EXPECT_EQ(indexed->notes().noteCount(0x7FFF), plain->notes().noteCount(0x7FFF));
}

TEST_F(RealDatabases, ADamagedCopyIsMadeAnew) {
  const QString copy = open()->path();
  ASSERT_TRUE(QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner));
  QFile file(copy);
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  ASSERT_TRUE(file.resize(8192));
  file.close();
  EXPECT_EQ(open()->notes().state(NoteId(ids.plain)), NoteState::Live);
}

// What an export has of the file is what the file has: another database made of it is the same.
TEST_F(RealDatabases, AreExportedAsDxlWithTheirAccessControlList) {
  const auto copy = open();
  const QString file = directory.filePath(u"real.dxl"_s);
  QFile target(file);
  ASSERT_TRUE(target.open(QIODevice::ReadWrite));
  ASSERT_TRUE(exportDatabase(*copy, target));
  target.seek(0);
  const QByteArray dxl = target.readAll();
  target.close();
  EXPECT_TRUE(dxl.contains("<aclentry name=\"CN=Ada/O=T\" level=\"manager\" type=\"person\""));
  EXPECT_TRUE(dxl.contains("<role>[Clerk]</role><role>[Boss]</role></aclentry>")) << dxl.toStdString();
  EXPECT_TRUE(dxl.contains("<logentry>second line</logentry>"));
  const auto again = workspace->createDatabase({}, u"again.nsf"_s, {});
  ImportReport report;
  DxlImporter(*again).importFile(file, report);
  EXPECT_EQ(report.failed.join(u'\n').toStdString(), "");
  QStringList differences;
  compareDatabases(*copy, *again, [&](const NoteDifference& note) {
    if (note.first.id == NoteId(ids.unclassed)) return;  // it is in no list, and in no export
    differences += note.first.id.hexText() + u' ' + note.second.id.hexText();
    for (const ItemDifference& item : note.items) differences.last() += u' ' + item.name;
  });
  EXPECT_EQ(differences, QStringList());
}

}  // namespace
}  // namespace lens

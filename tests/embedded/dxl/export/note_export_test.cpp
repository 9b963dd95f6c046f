#include <sqlite3.h>

#include "embedded/dxl/export/export_fixture.h"

namespace lens {
namespace {

class NoteExport : public DxlExport {
 protected:
  NoteId saveAsGiven(Note note) {
    source_->notes().saveAsGiven(note);
    return note.header.id;
  }
  static Note noteOf(quint16 noteClass) {
    Note note;
    note.header.noteClass = noteClass;
    note.header.unid = Unid::create();
    note.header.sequence = 7;
    return note;
  }
  void damage(NoteId id) {
    const QByteArray sql = "UPDATE note SET items = x'00' WHERE id = " + QByteArray::number(id.value());
    ASSERT_EQ(sqlite3_exec(source_->handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  }
};

TEST_F(NoteExport, EveryClassAndItsMarksComeBack) {
  for (const quint16 noteClass : {0x0001, 0x0002, 0x0004, 0x0008, 0x0010, 0x0020, 0x0040, 0x0080, 0x0100,
                                  0x0200, 0x0400, 0x0800, 0x8004, 0x9008, 0x1001, 0x9001, 0x2000})
    saveAsGiven(noteOf(noteClass));
  const QByteArray dxl = roundTrip();
  EXPECT_TRUE(dxl.contains("<note class=\"view\" default=\"true\" private=\"true\">")) << dxl.toStdString();
}

TEST_F(NoteExport, HeadersComeBackWhatTheirTimesAre) {
  Note note = noteOf(noteclass::Document);
  note.header.sequence = 0xFFFFFFFF;
  note.header.created = timeDateOf(QDateTime(QDate(2024, 1, 5), QTime(8, 0, 0, 10), Qt::UTC), {-300, true});
  note.header.modified = timeDateOfDate(QDate(2024, 1, 5));
  note.header.sequenceTime = {{9000000, 3}};
  note.header.added = {};
  note.header.accessed = {{kAllDay, kAnyDay}};
  const NoteId id = saveAsGiven(note);
  const QByteArray dxl = roundTrip();
  EXPECT_TRUE(dxl.contains("<noteinfo noteid=\"" + QByteArray::number(id.value(), 16) + "\" unid=\"" +
                           note.header.unid.text().toLatin1() + "\" sequence=\"4294967295\">"));
  EXPECT_TRUE(dxl.contains("<created><datetime dst=\"true\">20240105T040000,01-04</datetime></created>"))
      << dxl.toStdString();
  EXPECT_FALSE(dxl.contains("addedtofile"));
}

TEST_F(NoteExport, ResponsesNameTheirParent) {
  const Unid parent = Unid::create();
  Note note = noteOf(noteclass::Document);
  note.header.parent = parent;
  note.add(u"Form"_s, itemflag::Summary, textValue(u"Reply"));
  note.add(u"$REF"_s, itemflag::Summary, noteRefsValue({parent}));
  note.add(u"$Conflict"_s, itemflag::Summary, textValue(u""));
  saveAsGiven(note);
  EXPECT_TRUE(roundTrip().contains("<document form=\"Reply\" parent=\"" + parent.text().toLatin1() +
                                   "\" response=\"true\" conflict=\"true\">"));
}

TEST_F(NoteExport, ParentsThatNoItemTellsComeBack) {
  Note parentOnly = noteOf(noteclass::Document), referenceOnly = parentOnly, other = parentOnly;
  parentOnly.header.parent = Unid::create();
  referenceOnly.header.unid = Unid::create();
  referenceOnly.add(u"$REF"_s, 0, noteRefsValue({Unid::create()}));
  other.header.unid = Unid::create();
  other.header.parent = Unid::create();
  other.add(u"$REF"_s, 0, textValue(u"no reference"));
  for (const Note& note : {parentOnly, referenceOnly, other}) saveAsGiven(note);
  roundTrip();
}

TEST_F(NoteExport, ProfilesAreProfileDocuments) {
  Note profile = noteOf(noteclass::Document), odd = profile;
  profile.add(u"$Name"_s, itemflag::Summary, textValue(u"$profile_008settings_karin"));
  odd.header.unid = Unid::create();
  odd.add(u"$Name"_s, itemflag::Summary, textValue(u"$profile_999odd_"));
  saveAsGiven(profile);
  saveAsGiven(odd);
  const QByteArray dxl = roundTrip();
  EXPECT_TRUE(dxl.contains("<profiledocument name=\"settings\" username=\"karin\">")) << dxl.toStdString();
  EXPECT_EQ(dxl.count("<profiledocument"), 1);
}

TEST_F(NoteExport, PropertiesOfTheDatabaseComeBack) {
  DatabaseInfo info = source_->info();
  info.title = u"Karin's <files>\nsecond line\a"_s;
  info.templateName = u"Own"_s;
  info.inheritsFrom = u"StdR4PublicAddressBook"_s;
  info.categories = u"A, B"_s;
  info.publicAddressBook = true;
  for (const bool book : {true, false}) {
    info.publicAddressBook = book;
    source_->setInfo(info);
    roundTrip();
  }
  info.inheritsFrom.clear();
  info.publicAddressBook = true;
  source_->setInfo(info);
  roundTrip();
}

TEST_F(NoteExport, AnEmptyDatabaseIsAnEmptyDatabase) {
  EXPECT_TRUE(roundTrip().contains("numberofdocuments=\"0\""));
}

TEST_F(NoteExport, TwoExportsAreTheSame) {
  for (int i = 0; i < 20; ++i) saveAsGiven(noteOf(i % 2 ? noteclass::Document : noteclass::Form));
  EXPECT_EQ(exported(), exported());
}

TEST_F(NoteExport, NamedNotesGoInTheirOrderAndWithoutTheOthers) {
  QVector<NoteId> ids;
  for (int i = 0; i < 4; ++i) ids.push_back(saveAsGiven(noteOf(noteclass::Document)));
  const QByteArray dxl = exported({ids[2], ids[0]});
  EXPECT_EQ(dxl.count("<document"), 2);
  EXPECT_LT(dxl.indexOf("noteid=\"" + QByteArray::number(ids[2].value(), 16)),
            dxl.indexOf("noteid=\"" + QByteArray::number(ids[0].value(), 16)));
  EXPECT_EQ(imported(dxl)->notes().noteCount(noteclass::Document), 2);
}

TEST_F(NoteExport, ANamedNoteThatIsNotThereIsAFault) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  try {
    exportNotes(*source_, {NoteId(0x8FA)}, buffer);
    ADD_FAILURE() << "it was exported";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), enginefault::UnknownNote);
    EXPECT_TRUE(error.description().contains(u"8FA") && error.description().contains(source_->path()));
  }
}

TEST_F(NoteExport, DeletedNotesAreLeftOut) {
  const NoteId id = saveAsGiven(noteOf(noteclass::Document));
  saveAsGiven(noteOf(noteclass::Document));
  source_->notes().remove(id);
  EXPECT_EQ(roundTrip().count("<document"), 1);
}

TEST_F(NoteExport, ADamagedNoteIsNamedWithItsDatabase) {
  const NoteId id = saveAsGiven(noteOf(noteclass::Document));
  damage(id);
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  try {
    exportDatabase(*source_, buffer);
    ADD_FAILURE() << "it was exported";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), enginefault::Damaged);
    EXPECT_TRUE(error.description().contains(source_->path())) << error.description().toStdString();
    EXPECT_TRUE(error.description().contains(id.hexText()));
  }
}

// Takes so many bytes and no more.
class FullDevice : public QIODevice {
 public:
  explicit FullDevice(qint64 room) : room_(room) { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

 protected:
  qint64 readData(char*, qint64) override { return -1; }
  qint64 writeData(const char*, qint64 size) override {
    room_ -= size;
    if (room_ >= 0) return size;
    setErrorString(u"No space is left"_s);
    return -1;
  }

 private:
  qint64 room_;
};

TEST_F(NoteExport, ATargetThatRefusesIsAFaultWithItsText) {
  QBuffer bytes;
  bytes.setData(QByteArray(500'000, 'x'));
  bytes.open(QIODevice::ReadOnly);
  const StoredObject stored = source_->objects().add(bytes);
  FileObject file;
  file.objectId = stored.id;
  file.size = quint32(stored.size);
  file.name = u"a.bin"_s;
  Note note = noteOf(noteclass::Document);
  note.add(u"$FILE"_s, 0, fileObjectValue(file));
  saveAsGiven(note);
  const qint64 whole = exported().size();
  for (const qint64 room : {qint64(0), qint64(100), qint64(2000), whole / 2, whole - 1}) {
    FullDevice device(room);
    try {
      exportDatabase(*source_, device);
      ADD_FAILURE() << room;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 57);
      EXPECT_TRUE(error.description().contains(u"No space is left")) << error.description().toStdString();
    }
  }
  FullDevice device(whole);
  EXPECT_TRUE(exportDatabase(*source_, device));
}

TEST_F(NoteExport, EachStepCanBeTheLast) {
  QBuffer bytes;
  bytes.setData(QByteArray(700'000, 'x'));
  bytes.open(QIODevice::ReadOnly);
  FileObject file;
  file.objectId = source_->objects().add(bytes).id;
  file.size = 700'000;
  file.name = u"a.bin"_s;
  for (int i = 0; i < 3; ++i) {
    Note note = noteOf(noteclass::Document);
    if (i == 1) note.add(u"$FILE"_s, 0, fileObjectValue(file));
    saveAsGiven(note);
  }
  int calls = 0;
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  QVector<int> seen;
  EXPECT_TRUE(exportDatabase(*source_, buffer, [&](int done, int all) {
    EXPECT_EQ(all, 3);
    seen.push_back(done);
    return true;
  }));
  EXPECT_EQ(seen, (QVector<int>{0, 1, 1, 1, 1, 2, 3}));
  for (int last = 0; last < seen.size(); ++last) {
    calls = 0;
    EXPECT_FALSE(exportDatabase(*source_, buffer, [&](int, int) { return calls++ < last; }));
    EXPECT_EQ(calls, last + 1);
  }
}

// Other programs read the element; the note has the rest.
TEST_F(NoteExport, AnAccessListWhoseNoteHasMoreGoesOutAsElementAndAsNote) {
  Note note = noteOf(noteclass::Acl);
  note.add(u"$Digest"_s, itemflag::Sign, rawValue(0x000E, "sixteen bytes..."));
  note.add(u"$ACLEntries"_s, itemflag::Summary,
           textListValue({u"-Default-; default=true; level=reader"_s,
                          u"CN=Ada/O=T; level=manager; type=person; roles=[Clerk]"_s}));
  note.add(u"$ACLRoles"_s, itemflag::Summary, textListValue({u"[Clerk]"_s}));
  note.add(u"$ACLLog"_s, 0, textListValue({u"Ada added Ada"_s}));
  note.add(u"$ACLAttributes"_s, 0, textListValue({}));
  saveAsGiven(note);
  const QByteArray dxl = roundTrip();
  EXPECT_TRUE(
      dxl.contains("<aclentry name=\"CN=Ada/O=T\" level=\"manager\" type=\"person\">"
                   "<role>[Clerk]</role></aclentry>"))
      << dxl.toStdString();
  EXPECT_EQ(dxl.count("<note "), 1) << dxl.toStdString();
  note.items.removeFirst();
  source_ = create();
  saveAsGiven(note);
  EXPECT_EQ(roundTrip().count("<note "), 0) << "without more the element is enough";
}

}  // namespace
}  // namespace lens

// Damage at random: whatever a byte of the file says, reading comes to an end within bounds, and every note
// that was not touched is as it was written: in 800 damaged copies of some files, and in 20000 with
// LENS_SOAK.
#include <QFile>
#include <vector>

#include "embedded/nsf/made_damage.h"
#include "embedded/nsf/nsf_test.h"

namespace lens::made {
namespace {

const int kScale = qEnvironmentVariableIsSet("LENS_SOAK") ? 25 : 1;
const int kCopies = 800 * kScale, kRounds = 96 * kScale;

// Small ones, in which most bytes mean something.
struct DamagedBase {
  MadeDatabase described;
  MadeFile file;

  explicit DamagedBase(int number)
      : described(number % 3 == 0 ? sampleDatabase() : randomDatabase(quint32(number), 30)),
        file(makeFile(described)) {}
};

// Everything that can be asked of a database.
void driveAll(NsfDatabase& database) {
  const auto drop = [](QByteArrayView) { return true; };
  database.forEachNote([&](NsfNote& note) {
    note.toNote();
    database.folderDocuments(note);
    for (const NsfItem& item : note.items) {
      EXPECT_GE(item.item.value.size(), 2);
      FileObject file;
      if (item.item.type() == 0x0003 && readFileObject(item.item.data(), file))
        database.readAttachment(file, drop);
    }
    return true;
  });
  for (const quint32 id : database.objectIds()) database.readPayload(id, drop);
  database.stubs();
  database.acl();
  database.specialNote(noteclass::Icon);
  EXPECT_FALSE(database.report().text().isEmpty());
  EXPECT_FALSE(database.report().json().isEmpty());
  EXPECT_LE(database.report().problems.size(), NsfReport::kMaxProblems);
}

[[maybe_unused]] qint64 kilobytesOf(const char* line) {
  QFile file(u"/proc/self/status"_s);
  if (!file.open(QIODevice::ReadOnly)) return -1;
  const QByteArray status = file.readAll();
  const qsizetype at = status.indexOf(line);
  return at < 0 ? -1 : status.mid(at + qsizetype(qstrlen(line))).trimmed().split(' ').first().toLongLong();
}

// What the work took at most beyond what was there before, in bytes; 0 where nobody can tell.
template <class Work>
qint64 memoryOf(const Work& work) {
#if defined(__GLIBC__) && !defined(LENS_SANITIZED)
  QFile reset(u"/proc/self/clear_refs"_s);
  const bool isReset = reset.open(QIODevice::WriteOnly) && reset.write("5") == 1;
  reset.close();
  const qint64 before = kilobytesOf("VmRSS:");
  work();
  return isReset ? (kilobytesOf("VmHWM:") - before) * 1024 : 0;
#else
  work();
  return 0;
#endif
}

constexpr qint64 kMemory = 64 * 1024 * 1024;

TEST(NsfRandomDamage, NotesThatAreNotTouchedStayAsTheyWere) {
  std::mt19937 random(2024);
  int whole = 0, kept = 0, lost = 0, refused = 0;
  std::vector<DamagedBase> bases;
  for (int number = 0; number < 12 * kScale; ++number) bases.emplace_back(number);
  for (int round = 0; round < kCopies && !testing::Test::HasFailure(); ++round) {
    const auto& [described, file] = bases[size_t(round) % bases.size()];
    const Damaged damaged = damage(file, random);
    SCOPED_TRACE(testing::Message() << "round " << round << ": " << damaged.what.toStdString());
    const QSet<quint32> affected = affectedNotes(file, damaged);
    const qint64 memory = memoryOf([&] {
      const auto read = readBytes(damaged.bytes);
      driveAll(*read);
      if (affected.size() < file.notes.size()) {
        EXPECT_EQ(difference(*read, described, affected).toStdString(), "");
        ++whole;
        kept += int(file.notes.size() - affected.size());
        lost += int(affected.size());
      }
      refused += !read->isOpen();
      if (round % 4 == 0) driveAll(*readBytes(damaged.bytes, NsfReading::Salvage));
    });
    EXPECT_LE(memory, file.bytes.size() + kMemory);
  }
  // Damage that hits all or nothing would show little.
  EXPECT_GT(whole, kCopies / 3);
  EXPECT_GT(kept, kCopies * 10);
  EXPECT_GT(lost, kCopies / 4);
  EXPECT_GT(refused, 0);
}

// Checksums and marks agree with what is wrong: only the structures themselves can tell.
TEST(NsfRandomDamage, DamageThatChecksIsBoundedToo) {
  constexpr MadePart kParts[] = {MadePart::Header,         MadePart::SuperblockHeader,
                                 MadePart::SuperblockBody, MadePart::DescriptorHeader,
                                 MadePart::DescriptorBody, MadePart::RrvBucket,
                                 MadePart::Bucket,         MadePart::Record,
                                 MadePart::Record,         MadePart::Record,
                                 MadePart::Body,           MadePart::Object};
  for (int round = 0; round < kRounds && !testing::Test::HasFailure(); ++round) {
    MadeDatabase described = round % 2 ? sampleDatabase() : randomDatabase(quint32(round + 5000), 30);
    const MadePart wanted = kParts[round % 12];
    std::mt19937 pick{quint32(round)};
    const quint32 victim = described.notes[qsizetype(pick() % size_t(described.notes.size()))].id;
    described.change = [&](MadePart part, quint32 number, QByteArray& bytes) {
      if (part != wanted || bytes.size() < 8) return;
      if (part == MadePart::Record && number != victim) return;
      // The same each time: a file may be made in several attempts.
      std::mt19937 random(quint32(round) * 31 + number);
      const qsizetype range = random() % 2 ? bytes.size() : std::min<qsizetype>(bytes.size(), 120);
      for (quint32 i = 1 + random() % 3; i > 0; --i) {
        const qsizetype at = std::min<qsizetype>(qsizetype(random() % size_t(range)), bytes.size() - 4);
        const quint32 numbers[] = {0, 0xFFFFFFFF, 0x7FFFFFFF, 0x80000000, 0xFFFF, quint32(random())};
        put32(bytes, at, numbers[random() % 6]);
      }
    };
    SCOPED_TRACE(testing::Message() << "round " << round);
    const MadeFile file = makeFile(described);
    const qint64 memory = memoryOf([&] {
      const auto read = readBytes(file.bytes);
      driveAll(*read);
      QSet<quint32> affected;
      if (wanted == MadePart::Record) affected.insert(victim);
      if (wanted == MadePart::Body)
        for (const MadeNote& note : described.notes)
          if (file.notes[note.id].body.size > 0) affected.insert(note.id);
      if (wanted == MadePart::Record || wanted == MadePart::Body || wanted == MadePart::Object) {
        EXPECT_EQ(difference(*read, described, affected).toStdString(), "");
      }
      if (round % 4 == 0) driveAll(*readBytes(file.bytes, NsfReading::Salvage));
    });
    EXPECT_LE(memory, file.bytes.size() + kMemory);
  }
}

// Many notes in one bucket whose slots all lead to one place, names of the greatest length, a record full of
// items: nothing that a small file says makes much work.
TEST(NsfRandomDamage, SmallFilesMakeLittleWork) {
  MadeDatabase described;
  described.bucketSize = 63488;
  for (quint32 i = 0; i < 400; ++i) described.add(document(i));
  described.change = [](MadePart part, quint32, QByteArray& bytes) {
    if (part == MadePart::Record) put16(bytes, 50, 0xFFFF);
  };
  const MadeFile file = makeFile(described);
  const qint64 memory = memoryOf([&] { driveAll(*readBytes(file.bytes)); });
  EXPECT_LE(memory, file.bytes.size() + kMemory);
}

}  // namespace
}  // namespace lens::made

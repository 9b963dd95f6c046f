// Real databases from elsewhere: made files with the fuzzer's changes. The first byte says which file, and
// whether the bytes of the file are changed or what is in it before checksums and marks are put in place.
// Whatever they say, reading comes to an end, shows nothing under an ID that nobody wrote, and notes that
// were not touched are as they were.
#include "check.h"
#include "embedded/nsf/made_damage.h"
#include "embedded/nsf/made_samples.h"
#include "embedded/nsf/maker/made_bytes.h"
#include "embedded/nsf/nsf_compare.h"

namespace lens::made {
namespace {

// Small ones, in which most bytes mean something.
MadeDatabase describedFile(int number) {
  if (number == 0) return sampleDatabase();
  if (number == 3) {
    MadeDatabase described = sampleDatabase();
    described.severalPages = true;
    described.formerBuckets = true;
    described.ods = 55;
    return described;
  }
  if (number == 2) {
    SampleIds ids;
    MadeDatabase described = sampleDatabase(&ids);
    described.bodyBuckets = MadeDatabase::BodyBuckets::Marked;
    described.note(ids.plain).bodyInBucket = true;
    return described;
  }
  return randomDatabase(quint32(number), 12);
}

struct Base {
  MadeDatabase described;
  MadeFile file;
};

const Base& baseOf(int number) {
  static const std::array<Base, 4> bases = [] {
    std::array<Base, 4> made;
    for (int i = 0; i < 4; ++i) {
      made[size_t(i)].described = describedFile(i);
      made[size_t(i)].file = makeFile(made[size_t(i)].described);
    }
    return made;
  }();
  return bases[size_t(number)];
}

void readEverything(NsfDatabase& database) {
  const auto drop = [](QByteArrayView) { return true; };
  database.forEachNote([&](NsfNote& note) {
    note.toNote();
    database.folderDocuments(note);
    for (const NsfItem& item : note.items) {
      check(item.item.value.size() >= 2, "A value without a type.", item.item.name);
      FileObject file;
      if (item.item.type() == 0x0003 && readFileObject(item.item.data(), file))
        database.readAttachment(file, drop);
    }
    return true;
  });
  for (const quint32 id : database.objectIds()) database.readPayload(id, drop);
  database.stubs();
  database.acl();
  check(!database.report().text().isEmpty(), "A report that says nothing.");
  database.report().json();
}

// Three bytes of a change say where, the fourth which bits.
void changeFile(const Base& base, QByteArrayView input) {
  Damaged damaged{base.file.bytes, {}, {}};
  for (qsizetype i = 0; i + 4 <= input.size(); i += 4) {
    const auto at = [&](qsizetype place) { return quint32(quint8(input[place])); };
    const qsizetype where =
        qsizetype((at(i) | at(i + 1) << 8 | at(i + 2) << 16) % quint32(damaged.bytes.size()));
    damaged.bytes[where] = char(damaged.bytes[where] ^ input[i + 3]);
    damaged.touched.push_back({where, 1});
  }
  const auto read = readBytes(damaged.bytes);
  readEverything(*read);
  const QSet<quint32> affected = affectedNotes(base.file, damaged);
  if (affected.size() == base.file.notes.size()) return;
  const QString wrong = difference(*read, base.described, affected);
  check(wrong.isEmpty(), "A note that was not touched is another one.", wrong);
}

// One byte says which kind of piece, one which of them, two where, one which bits.
void changePieces(const Base& base, QByteArrayView input) {
  constexpr int kParts = int(MadePart::Object) + 1;
  MadeDatabase described = base.described;
  described.change = [&](MadePart part, quint32 number, QByteArray& bytes) {
    for (qsizetype i = 0; i + 5 <= input.size(); i += 5) {
      if (quint8(input[i]) % kParts != int(part) || quint8(input[i + 1]) % 16 != number / 4 % 16 ||
          bytes.isEmpty())
        continue;
      const qsizetype where = (quint8(input[i + 2]) | quint8(input[i + 3]) << 8) % bytes.size();
      bytes[where] = char(bytes[where] ^ input[i + 4]);
    }
  };
  const QByteArray bytes = makeFile(described).bytes;
  readEverything(*readBytes(bytes));
  if (input.size() % 2) readEverything(*readBytes(bytes, NsfReading::Salvage));
}

void tryChanges(QByteArrayView input) {
  if (input.isEmpty()) return;
  const Base& base = baseOf(input[0] & 3);
  if (input[0] & 4)
    changePieces(base, input.sliced(1));
  else
    changeFile(base, input.sliced(1));
}

}  // namespace
}  // namespace lens::made

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  lens::made::tryChanges(QByteArrayView(data, qsizetype(size)));
  return 0;
}

#include "embedded/nsf/made_damage.h"

#include "embedded/nsf/maker/made_bytes.h"
#include "notes/literals.h"

namespace lens::made {
namespace {

class Damaging {
 public:
  Damaging(const MadeFile& file, std::mt19937& random) : file_(file), random_(random) {
    result_.bytes = file.bytes;
  }

  Damaged make() {
    for (qint64 i = 1 + below(3); i > 0; --i) once();
    return std::move(result_);
  }

 private:
  qint64 below(qint64 end) { return end <= 0 ? 0 : qint64(random_() % quint64(end)); }
  void touch(qint64 at, qint64 size, const QString& what) {
    result_.touched.push_back({at, size});
    result_.what += u"%1 at %2, %3 bytes; "_s.arg(what).arg(at).arg(size);
  }

  // Anywhere, or where the numbers are that everything hangs on.
  qint64 somewhere() {
    switch (below(8)) {
      case 0:
        return below(file_.header.size);
      case 1:
        return file_.superblocks[below(2)].at + below(120);
      case 2:
        return file_.descriptorBlocks[below(2)].at + below(80);
      case 3:
        return file_.rrvBuckets[below(file_.rrvBuckets.size())].at + below(400);
      case 4:
        return headOfBucket();
      case 5:
      case 6:
        return headOfNote();
      default:
        return below(result_.bytes.size());
    }
  }
  qint64 headOfBucket() {
    const MadePlace bucket = file_.buckets[below(file_.buckets.size())];
    return below(2) ? bucket.at + below(90) : bucket.end() - 1 - below(90);
  }
  qint64 headOfNote() {
    const auto note = std::next(file_.notes.cbegin(), below(file_.notes.size()));
    return note->body.size > 0 && below(2) ? note->body.at + below(90) : note->record.at + below(180);
  }

  void once() {
    const qint64 size = result_.bytes.size();
    if (size < 2048) return;
    const qint64 at = std::min(somewhere(), size - 8);
    switch (below(9)) {
      case 0:
      case 1:
        for (qint64 i = 0; i < 4; ++i)
          put8(result_.bytes, at + i, get8(result_.bytes, at + i) ^ quint8(below(i ? 3 : 256)));
        return touch(at, 4, u"bits"_s);
      case 2:
        return fill(at, std::min(1 + below(600), size - at));
      case 3:
      case 4:
        return number(at);
      case 5:
        return exchange();
      case 6:
        return copyOver();
      case 7:
        return remove(at);
      default:
        return below(3) ? number(at) : cut(below(size));
    }
  }

  void fill(qint64 at, qint64 count) {
    constexpr quint8 kBytes[] = {0, 0xFF, 0xAA};
    putBytes(result_.bytes, at, QByteArray(count, char(kBytes[below(3)])));
    touch(at, count, u"filled"_s);
  }
  void number(qint64 at) {
    const quint32 numbers[] = {0,
                               1,
                               0xFFFFFFFF,
                               0x7FFFFFFF,
                               0x80000000,
                               0x0000FFFF,
                               quint32(result_.bytes.size()),
                               quint32(result_.bytes.size() / 256),
                               quint32(random_())};
    put32(result_.bytes, at, numbers[below(9)]);
    touch(at, 4, u"number"_s);
  }
  // Ranges of whole units, so that what is moved may look right where it comes to lie.
  qint64 unit(qint64 count) { return below((result_.bytes.size() - count) / 256 + 1) * 256; }
  qint64 someUnits() { return std::min<qint64>(256 * (1 + below(33)), result_.bytes.size() / 2 / 256 * 256); }
  void exchange() {
    const qint64 count = someUnits(), a = unit(count), b = unit(count);
    const QByteArray first = result_.bytes.sliced(a, count), second = result_.bytes.sliced(b, count);
    putBytes(result_.bytes, a, second);
    putBytes(result_.bytes, b, first);
    touch(a, count, u"exchanged"_s);
    touch(b, count, u"with"_s);
  }
  void copyOver() {
    const qint64 count = someUnits(), from = unit(count), to = unit(count);
    putBytes(result_.bytes, to, result_.bytes.sliced(from, count));
    touch(to, count, u"copied over from %1"_s.arg(from));
  }
  void remove(qint64 at) {
    const qint64 count = std::min(1 + below(700), result_.bytes.size() - at);
    result_.bytes.remove(at, count);
    touch(at, file_.bytes.size() - at, u"%1 removed"_s.arg(count));
  }
  void cut(qint64 at) {
    result_.bytes.truncate(at);
    touch(at, file_.bytes.size() - at, u"cut"_s);
  }

  const MadeFile& file_;
  std::mt19937& random_;
  Damaged result_;
};

class Affected {
 public:
  Affected(const MadeFile& file, const Damaged& damaged) : file_(file), damaged_(damaged) {
    for (const MadePlace& place : damaged_.touched)
      for (qint64 at = place.at / 256 * 256; at < place.end() && at + 8 <= damaged_.bytes.size(); at += 256)
        if (get16(damaged_.bytes, at) == 0x4202) doubles_.insert(int(get32(damaged_.bytes, at + 2)));
  }

  QSet<quint32> notes() const {
    QSet<quint32> ids;
    const bool all = headerIsHit() || superblocksAreHit() || descriptorsAreHit();
    for (auto note = file_.notes.cbegin(); note != file_.notes.cend(); ++note)
      if (all || isHit(note.key(), *note)) ids.insert(note.key());
    return ids;
  }

 private:
  bool isTouched(qint64 at, qint64 size) const {
    for (const MadePlace& place : damaged_.touched)
      if (size > 0 && at < place.end() && place.at < at + size) return true;
    return false;
  }
  bool isTouched(const MadePlace& place) const { return isTouched(place.at, place.size); }

  // What leads to the blocks; titles, dates and numbers of special notes lead to no note.
  bool headerIsHit() const {
    return isTouched(0, 10) || isTouched(20, 4) || isTouched(62, 30) || isTouched(560, 88);
  }
  // A sum of words does not see words that change places.
  bool isHitUnseen(const MadePlace& block, qint64 summedFrom) const {
    if (!isTouched(block)) return false;
    if (damaged_.bytes.size() < block.end()) return false;
    const qint64 from = block.at + summedFrom, count = block.size - summedFrom - 12;
    return file_.bytes.sliced(from, count) != damaged_.bytes.sliced(from, count) &&
           wordSum(file_.bytes.sliced(from, count + 12)) == wordSum(damaged_.bytes.sliced(from, count + 12));
  }
  // The head of a superblock is in no sum.
  bool superblocksAreHit() const {
    for (const MadePlace& block : file_.superblocks)
      if (isTouched(block.at, 104) || isHitUnseen(block, 100)) return true;
    return isTouched(file_.superblocks[0]) && isTouched(file_.superblocks[1]);
  }
  bool descriptorsAreHit() const {
    for (const MadePlace& block : file_.descriptorBlocks)
      if (isTouched(block.at, 70) || isHitUnseen(block, 66)) return true;
    return isTouched(file_.descriptorBlocks[0]) && isTouched(file_.descriptorBlocks[1]);
  }

  bool isHit(quint32 id, const MadeNotePlaces& places) const {
    if (isTouched(places.record) || isTouched(places.slot) || isTouched(places.body) ||
        isTouched(places.entry))
      return true;
    if (places.entry.size > 0 && isTouched(file_.rrvBuckets[tableOf(id)].at, 32)) return true;
    if (doubles_.contains(places.bucket)) return true;
    return places.bucket >= 0 && bucketIsHit(file_.buckets[places.bucket], places.record);
  }
  // The head of the bucket, and the halves of bytes that its sectors keep behind the slots for the record.
  bool bucketIsHit(const MadePlace& bucket, const MadePlace& record) const {
    // A bucket that is cut off is none.
    if (isTouched(bucket.at, 68) || bucket.end() > damaged_.bytes.size()) return true;
    for (qint64 sector = 0; sector < bucket.size / 512; ++sector) {
      const qint64 marked = bucket.at + 0x42 + 512 * sector;
      if (marked >= record.at && marked < record.end() && isTouched(bucket.end() - 1 - sector / 2, 1))
        return true;
    }
    return false;
  }

  const MadeFile& file_;
  const Damaged& damaged_;
  // Numbers of buckets that lie, as they say, where something was written: two of one number look alike.
  QSet<int> doubles_;
};

}  // namespace

Damaged damage(const MadeFile& file, std::mt19937& random) {
  return Damaging(file, random).make();
}

QSet<quint32> affectedNotes(const MadeFile& file, const Damaged& damaged) {
  return Affected(file, damaged).notes();
}

}  // namespace lens::made

#include "embedded/replication/note_transfer.h"

#include <QHash>
#include <QtEndian>
#include <exception>

namespace lens {
namespace {

constexpr qsizetype kIdOffset = 4;  // behind the item's type and the object's type

bool hasObject(const Item& item) {
  return item.value.size() >= kIdOffset + 4 && item.type() == itemtype::Object;
}

quint32 objectOf(const Item& item) {
  return qFromLittleEndian<quint32>(item.value.constData() + kIdOffset);
}

void setObject(QByteArray& value, quint32 id) {
  qToLittleEndian(id, value.data() + kIdOffset);
}

// Takes what is read of an object into another database. A failure waits until the reader is back, since
// nothing may be thrown through the device.
class ObjectWriter : public QIODevice {
 public:
  explicit ObjectWriter(Database& target) : target_(target), id_(target.beginObject()) {
    open(WriteOnly | Unbuffered);
  }
  quint32 finish() { return target_.finishObject(id_).id; }
  void raiseFailure() const {
    if (failure_) std::rethrow_exception(failure_);
  }

 protected:
  qint64 readData(char*, qint64) override { return -1; }
  qint64 writeData(const char* bytes, qint64 size) override {
    try {
      target_.appendObject(id_, QByteArrayView(bytes, size));
      return size;
    } catch (const RuntimeError&) {
      failure_ = std::current_exception();
      return -1;
    }
  }

 private:
  Database& target_;
  quint32 id_;
  std::exception_ptr failure_;
};

quint32 copyObject(quint32 id, const Database& from, Database& to) {
  ObjectWriter writer(to);
  try {
    from.readObject(id, writer);
  } catch (const RuntimeError&) {
    writer.raiseFailure();
    throw;
  }
  return writer.finish();
}

// What an item says, with its object's content in place of its number.
QByteArray saidBy(const Item& item, const Database& database) {
  if (!hasObject(item)) return item.value;
  QByteArray value = item.value;
  setObject(value, 0);
  return value + database.objectDigest(objectOf(item));
}

}  // namespace

void bringObjects(Note& note, const Database& from, Database& to, const Note* replaced) {
  if (&from == &to) return;
  QHash<QByteArray, quint32> there;
  if (replaced)
    for (const Item& item : replaced->items)
      if (hasObject(item)) there.insert(to.objectDigest(objectOf(item)), objectOf(item));
  for (Item& item : note.items) {
    if (!hasObject(item)) continue;
    const QByteArray digest = from.objectDigest(objectOf(item));
    quint32 id = 0;
    if (!digest.isEmpty()) {
      id = there.value(digest);
      if (id == 0) id = copyObject(objectOf(item), from, to);
      there.insert(digest, id);
    }
    setObject(item.value, id);
  }
}

bool sameContent(const Note& a, const Database& inA, const Note& b, const Database& inB) {
  if (a.header.noteClass != b.header.noteClass || a.header.parent != b.header.parent ||
      a.items.size() != b.items.size())
    return false;
  for (qsizetype i = 0; i < a.items.size(); ++i)
    if (a.items[i].name != b.items[i].name || a.items[i].flags != b.items[i].flags ||
        saidBy(a.items[i], inA) != saidBy(b.items[i], inB))
      return false;
  return true;
}

}  // namespace lens

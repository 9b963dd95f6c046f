#include "embedded/store/object_copy.h"

#include <exception>

namespace lens {
namespace {

constexpr qsizetype kShortest = 8;  // type, kind of object and number

// Takes what is read of an object into another database. A failure waits until the reader is back, since
// nothing may be thrown through the device.
class ObjectWriter : public QIODevice {
 public:
  explicit ObjectWriter(Database& target) : target_(target), object_(target.objects().begin()) {
    open(WriteOnly | Unbuffered);
  }
  quint32 finish() { return target_.objects().finish(object_).id; }
  void raiseFailure() const {
    if (failure_) std::rethrow_exception(failure_);
  }

 protected:
  qint64 readData(char*, qint64) override { return -1; }
  qint64 writeData(const char* bytes, qint64 size) override {
    try {
      target_.objects().append(object_, QByteArrayView(bytes, size));
      return size;
    } catch (const RuntimeError&) {
      failure_ = std::current_exception();
      return -1;
    }
  }

 private:
  Database& target_;
  quint32 object_;
  std::exception_ptr failure_;
};

}  // namespace

bool mayReferToObject(const Item& item) {
  return item.value.size() >= kShortest && item.type() == itemtype::Object;
}

quint32 copyObject(const Database& from, quint32 object, Database& to) {
  ObjectWriter writer(to);
  try {
    from.objects().read(object, writer);
  } catch (const RuntimeError&) {
    writer.raiseFailure();
    throw;
  }
  return writer.finish();
}

}  // namespace lens

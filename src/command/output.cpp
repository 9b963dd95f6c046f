#include "command/output.h"

#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

constexpr qsizetype kGathered = 64 * 1024;

}  // namespace

void Output::write(QByteArrayView bytes) {
  if (!take(bytes)) fail();
}

void Output::line(QByteArrayView bytes) {
  gathered_.append(bytes.data(), bytes.size());
  gathered_.append('\n');
  if ((eachLine_ || gathered_.size() >= kGathered) && !handOn()) fail();
}

void Output::flush() {
  if (!handOn()) fail();
}

void Output::requireWhole() const {
  if (failed_) fail();
}

bool Output::take(QByteArrayView bytes) {
  gathered_.append(bytes.data(), bytes.size());
  return gathered_.size() < kGathered || handOn();
}

// What a receiver did not take once is not offered again: its reason would be another one.
bool Output::handOn() {
  if (failed_) return false;
  if (before_ && !gathered_.isEmpty()) before_();
  qsizetype done = 0;
  while (done < gathered_.size()) {
    const qint64 taken = device_.write(gathered_.constData() + done, gathered_.size() - done);
    if (taken <= 0) break;
    done += taken;
  }
  failed_ = done < gathered_.size();
  gathered_.resize(0);
  return !failed_;
}

void Output::fail() const {
  throw RuntimeError(err::DeviceFault, u"%1: %2"_s.arg(name_, reason()));
}

qint64 OutputDevice::writeData(const char* bytes, qint64 size) {
  if (output_.take({bytes, qsizetype(size)})) return size;
  setErrorString(output_.reason());
  return -1;
}

}  // namespace lens

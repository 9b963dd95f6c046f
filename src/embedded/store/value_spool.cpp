#include "embedded/store/value_spool.h"

#include <QRandomGenerator>
#include <QtEndian>

#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {

namespace {

constexpr qint64 kMostHeld = 4 * 1024 * 1024;
constexpr qsizetype kSmall = 1024;
constexpr qsizetype kTypeBytes = 2, kMarkBytes = 32, kNumberBytes = 4;

[[noreturn]] void spoolFault(const QFileDevice& file) {
  throw RuntimeError(err::DeviceFault, u"%1: a large value cannot be put aside (%2)"_s.arg(
                                           file.fileName(), file.errorString()));
}

}  // namespace

void ValueSpool::take(Note& note) {
  for (; seen_ < note.items.size(); ++seen_) held_ += std::as_const(note).items[seen_].value.size();
  if (held_ <= kMostHeld) return;
  for (; done_ < note.items.size(); ++done_) {
    const Item& item = std::as_const(note).items[done_];
    if (item.value.size() > kSmall && item.type() != itemtype::Object) putAside(note.items[done_]);
  }
  held_ = 0;
}

void ValueSpool::clear() {
  file_.reset();
  values_.clear();
  seen_ = done_ = 0;
  held_ = 0;
}

void ValueSpool::putAside(Item& item) {
  if (!file_) {
    file_ = std::make_unique<QTemporaryFile>();
    if (!file_->open()) spoolFault(*file_);
    mark_.resize(kMarkBytes);
    for (qsizetype at = 0; at < kMarkBytes; at += kNumberBytes)
      qToLittleEndian(QRandomGenerator::system()->generate(), mark_.data() + at);
  }
  const Value value{file_->pos(), item.value.size()};
  if (file_->write(item.value) != item.value.size()) spoolFault(*file_);
  QByteArray placeholder = item.value.first(kTypeBytes) + mark_;
  appendU32(placeholder, quint32(values_.size()));
  values_.append(value);
  item.value = placeholder;
}

const ValueSpool::Value* ValueSpool::aside(const Item& item) const {
  if (values_.isEmpty() || item.value.size() != kTypeBytes + kMarkBytes + kNumberBytes) return nullptr;
  if (QByteArrayView(item.value).sliced(kTypeBytes, kMarkBytes) != mark_) return nullptr;
  return &values_[qFromLittleEndian<quint32>(item.value.constData() + kTypeBytes + kMarkBytes)];
}

qint64 ValueSpool::sizeOf(const Item& item) const {
  const Value* const value = aside(item);
  return value ? value->size : item.value.size();
}

void ValueSpool::read(const Item& item, const std::function<void(QByteArrayView)>& sink) const {
  constexpr qint64 kPiece = 256 * 1024;
  const Value* const value = aside(item);
  if (!value) return sink(item.value);
  if (!file_->seek(value->at)) spoolFault(*file_);
  for (qint64 left = value->size; left > 0;) {
    const QByteArray piece = file_->read(qMin(left, kPiece));
    if (piece.isEmpty()) spoolFault(*file_);
    sink(piece);
    left -= piece.size();
  }
}

}  // namespace lens

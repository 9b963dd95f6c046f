#include "embedded/dxl/dxl_source.h"

#include <algorithm>
#include <cstring>

namespace lens {

namespace {

constexpr qint64 kBlock = 64 * 1024;
constexpr qint64 kPiece = 64 * 1024;
constexpr char kDivider[] = "<!---->";
// The longest start that decides what a "<" begins, with some white space inside the tag.
constexpr qsizetype kLookAhead = 64;

}  // namespace

DxlSource::DxlSource(QIODevice& file, Progress progress) : file_(file), progress_(std::move(progress)) {
  open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 DxlSource::readData(char* data, qint64 maxSize) {
  while (readyAt_ == ready_.size()) {
    if (cancelled_ || !refill()) return cancelled_ || !fault_.isEmpty() ? -1 : 0;
  }
  const qint64 count = std::min<qint64>(maxSize, ready_.size() - readyAt_);
  std::memcpy(data, ready_.constData() + readyAt_, size_t(count));
  readyAt_ += count;
  return count;
}

bool DxlSource::refill() {
  ready_.resize(0);
  readyAt_ = 0;
  if (end_) return false;
  if (progress_ && !progress_(done_)) {
    cancelled_ = true;
    return false;
  }
  const qsizetype kept = raw_.size();
  raw_.resize(kept + kBlock);
  const qint64 count = file_.read(raw_.data() + kept, kBlock);
  raw_.resize(kept + std::max<qint64>(count, 0));
  if (count < 0) fault_ = file_.errorString();
  end_ = count <= 0;
  done_ += std::max<qint64>(count, 0);
  if (first_) {
    first_ = false;
    narrow_ = !QByteArrayView(raw_).first(std::min<qsizetype>(raw_.size(), 64)).contains('\0') &&
              !raw_.startsWith("\xFE\xFF") && !raw_.startsWith("\xFF\xFE");
  }
  if (narrow_) {
    splitLongNodes();
  } else {
    ready_.swap(raw_);
    raw_.resize(0);
  }
  return fault_.isEmpty() && (!end_ || !ready_.isEmpty());
}

void DxlSource::copyTo(qsizetype end) {
  ready_.append(raw_.constData() + copied_, end - copied_);
  copied_ = end;
}

// Each pass returns where the next begins, or the place where it needs more bytes to decide.
void DxlSource::splitLongNodes() {
  copied_ = 0;
  qsizetype at = 0;
  while (at < raw_.size()) {
    qsizetype next = at;
    switch (place_) {
      case Place::Markup:
        next = passMarkup(at);
        break;
      case Place::Comment:
        next = passUntil(at, "-->");
        break;
      case Place::CharacterData:
        next = passUntil(at, "]]>");
        break;
      case Place::FileData:
        next = passFileData(at);
        break;
    }
    if (next == at) break;
    at = next;
  }
  if (end_) at = raw_.size();
  copyTo(at);
  raw_.remove(0, at);
}

qsizetype DxlSource::passMarkup(qsizetype at) {
  const char* begin = raw_.constData();
  const char* found = static_cast<const char*>(std::memchr(begin + at, '<', size_t(raw_.size() - at)));
  if (!found) return raw_.size();
  const qsizetype open = found - begin;
  const QByteArrayView rest = QByteArrayView(raw_).sliced(open);
  // Attributes of "filedata" do not exist, so its tag is short; anything longer is ordinary markup.
  if (rest.size() < kLookAhead && !end_) return open;
  if (rest.startsWith("<!--")) {
    place_ = Place::Comment;
    return open + 4;
  }
  if (rest.startsWith("<![CDATA[")) {
    place_ = Place::CharacterData;
    return open + 9;
  }
  if (rest.startsWith("<filedata")) {
    qsizetype close = 9;
    while (close < rest.size() && close < kLookAhead && std::strchr(" \t\r\n", rest[close]) && rest[close])
      ++close;
    if (close < rest.size() && rest[close] == '>') {
      place_ = Place::FileData;
      sinceSplit_ = 0;
      return open + close + 1;
    }
  }
  return open + 1;
}

qsizetype DxlSource::passUntil(qsizetype at, QByteArrayView end) {
  const qsizetype found = raw_.indexOf(end, at);
  if (found >= 0) {
    place_ = Place::Markup;
    return found + end.size();
  }
  return std::max(at, raw_.size() - (end.size() - 1));
}

qsizetype DxlSource::passFileData(qsizetype at) {
  const QByteArrayView rest = QByteArrayView(raw_).sliced(at);
  const qsizetype close = rest.indexOf('<');
  const qsizetype stop = close >= 0 ? close : rest.size();
  if (close >= 0) {
    place_ = Place::Markup;
    return stop > 0 ? at + stop : passMarkup(at);
  }
  sinceSplit_ += stop;
  if (sinceSplit_ >= kPiece) {
    // At a line end where there is one: the columns that errors name stay right then.
    const qsizetype line = rest.lastIndexOf('\n');
    copyTo(line >= 0 ? at + line : raw_.size());
    ready_.append(kDivider);
    sinceSplit_ = 0;
  }
  return raw_.size();
}

}  // namespace lens

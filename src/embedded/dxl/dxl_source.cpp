#include "embedded/dxl/dxl_source.h"

#include <QRegularExpression>
#include <algorithm>
#include <cstring>

#include "notes/literals.h"

namespace lens {

namespace {

constexpr qint64 kBlock = 64 * 1024;
constexpr qint64 kPiece = 64 * 1024;
constexpr char kDivider[] = "<!---->";
// The longest start that decides what a "<" begins, with some white space inside the tag.
constexpr qsizetype kLookAhead = 64;
constexpr qsizetype kMostTagBytes = 4 * 1024 * 1024;
constexpr qsizetype kMostDocumentType = 64 * 1024;

// Where a document type ends that begins the text; -1 when more of it is needed.
qsizetype endOfDocumentType(QByteArrayView text) {
  bool inSubset = false;
  for (qsizetype at = 0; at < text.size(); ++at) {
    const char c = text[at];
    qsizetype closed = at;
    if (c == '"' || c == '\'') {
      closed = text.indexOf(c, at + 1);
    } else if (text.sliced(at).startsWith("<!--")) {
      closed = text.indexOf("-->", at + 4);
    } else if (text.sliced(at).startsWith("<?")) {
      closed = text.indexOf("?>", at + 2);
    } else if (c == '[' || c == ']') {
      inSubset = c == '[';
    } else if (c == '>' && !inSubset) {
      return at + 1;
    }
    if (closed < 0) return -1;
    at = closed;
  }
  return -1;
}

// The declaration tells the encoding of the file, not of what becomes of it.
void blankEncoding(QString& text) {
  static const QRegularExpression declared(u"^<\\?xml[^>]*?(\\sencoding\\s*=\\s*(\"[^\">]*\"|'[^'>]*'))"_s);
  const QRegularExpressionMatch match = declared.match(text);
  if (match.hasMatch())
    text.replace(match.capturedStart(1), match.capturedLength(1), QString(match.capturedLength(1), u' '));
}

}  // namespace

DxlSource::DxlSource(QIODevice& file, Progress progress) : file_(file), progress_(std::move(progress)) {
  open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

void DxlSource::declareEntities(const QXmlStreamEntityDeclarations& entities) {
  growth_.declare(entities);
  countReferences(QByteArrayView(ready_).sliced(readyAt_));
}

void DxlSource::countReferences(QByteArrayView bytes) {
  if (!growth_.counts()) return;
  growth_.count(bytes);
  if (growth_.characters() > mostGrowth())
    fault_ = u"its entities expand to more than %1 MB"_s.arg(mostGrowth() >> 20);
}

qint64 DxlSource::readData(char* data, qint64 maxSize) {
  if (!fault_.isEmpty()) return -1;
  while (readyAt_ == ready_.size()) {
    if (cancelled_ || !refill()) return cancelled_ || !fault_.isEmpty() ? -1 : 0;
  }
  const qsizetype end = readyAt_ < typeEnd_ ? typeEnd_ : ready_.size();
  const qint64 count = std::min<qint64>(maxSize, end - readyAt_);
  std::memcpy(data, ready_.constData() + readyAt_, size_t(count));
  readyAt_ += count;
  return count;
}

qint64 DxlSource::mostGrowth() const {
  constexpr qint64 kAlways = 64 * 1024 * 1024;
  return std::max(kAlways, 10 * file_.size());
}

bool DxlSource::goOn() {
  if (!cancelled_ && progress_ && !progress_(done_)) cancelled_ = true;
  return !cancelled_;
}

bool DxlSource::refill() {
  ready_.resize(0);
  readyAt_ = 0;
  typeEnd_ = 0;
  if (end_ || !fault_.isEmpty() || !goOn()) return false;
  end_ = !readBlock();
  splitLongNodes();
  countReferences(ready_);
  return fault_.isEmpty() && (!end_ || !ready_.isEmpty());
}

// Appends to what is there. False at the end of the file and after a fault.
bool DxlSource::readBlock() {
  const qsizetype kept = raw_.size();
  raw_.resize(kept + kBlock);
  const qint64 count = file_.read(raw_.data() + kept, kBlock);
  raw_.resize(kept + std::max<qint64>(count, 0));
  if (count < 0) fault_ = file_.errorString();
  if (count <= 0) return false;
  done_ += count;
  if (first_) {
    const auto encoding = QStringConverter::encodingForData(raw_, u'<');
    if (encoding && *encoding != QStringConverter::Utf8) wide_.emplace(*encoding);
  }
  if (wide_) decodeBlock(raw_.last(count));
  first_ = false;
  return true;
}

// Puts UTF-8 in the place of the block at the end of what is there.
void DxlSource::decodeBlock(QByteArrayView block) {
  QString text = wide_->decode(block);
  if (first_) blankEncoding(text);
  raw_.chop(block.size());
  raw_.append(QByteArray(narrow_.encode(text)));
  if (wide_->hasError() || narrow_.hasError()) fault_ = u"its characters are not encoded as its first ones"_s;
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
      case Place::Tag:
        next = passTag(at);
        break;
      case Place::Instruction:
        next = passUntil(at, "?>");
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
    if (next == at || !fault_.isEmpty()) break;
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
  const char second = rest.size() > 1 ? rest[1] : '\0';
  if (second == '/') return open + 1;
  if (second == '!') return passDeclaration(open);
  if (second == '?') {
    place_ = Place::Instruction;
    return open + 1;
  }
  if (second == 'f' && rest.startsWith("<filedata")) {
    qsizetype close = 9;
    while (close < rest.size() && close < kLookAhead && std::strchr(" \t\r\n", rest[close]) && rest[close])
      ++close;
    if (close < rest.size() && rest[close] == '>') {
      place_ = Place::FileData;
      sinceSplit_ = 0;
      return open + close + 1;
    }
  }
  place_ = Place::Tag;
  quote_ = 0;
  attributes_ = 0;
  tagBytes_ = 0;
  return open + 1;
}

// What begins with "<!".
qsizetype DxlSource::passDeclaration(qsizetype at) {
  const QByteArrayView rest = QByteArrayView(raw_).sliced(at);
  if (rest.startsWith("<!--")) {
    place_ = Place::Comment;
    return at + 4;
  }
  if (rest.startsWith("<![CDATA[")) {
    place_ = Place::CharacterData;
    return at + 9;
  }
  return rest.startsWith("<!DOCTYPE") ? passDocumentType(at) : at + 1;
}

// The document type as a whole, since it is short.
qsizetype DxlSource::passDocumentType(qsizetype at) {
  const QByteArrayView rest = QByteArrayView(raw_).sliced(at);
  const qsizetype end = endOfDocumentType(rest.first(std::min(rest.size(), kMostDocumentType)));
  if (end >= 0) {
    typeEnd_ = ready_.size() + at + end - copied_;
    return at + end;
  }
  if (rest.size() >= kMostDocumentType)
    fault_ = u"its document type is longer than %1 KB"_s.arg(kMostDocumentType >> 10);
  return at;
}

qsizetype DxlSource::passTag(qsizetype at) {
  const char* const begin = raw_.constData();
  const qsizetype end = raw_.size();
  const qsizetype start = at;
  while (at < end && place_ == Place::Tag) {
    if (quote_ != 0) {
      const void* const closed = std::memchr(begin + at, quote_, size_t(end - at));
      at = closed ? static_cast<const char*>(closed) - begin + 1 : end;
      if (closed) quote_ = 0;
      continue;
    }
    const char c = begin[at++];
    if (c == '>') {
      place_ = Place::Markup;
    } else if (c == '"' || c == '\'') {
      quote_ = c;
      ++attributes_;
    }
  }
  tagBytes_ += at - start;
  if (attributes_ > kMostAttributes)
    fault_ = u"an element has more than %1 attributes"_s.arg(kMostAttributes);
  else if (tagBytes_ > kMostTagBytes)
    fault_ = u"the attributes of an element are longer than %1 MB"_s.arg(kMostTagBytes >> 20);
  return at;
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

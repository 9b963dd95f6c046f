#include "embedded/format/lmbcs.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <memory>

#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

constexpr qsizetype kPiece = 4096;

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};

// A converter keeps state, so each thread has its own.
UConverter* converter() {
  thread_local const std::unique_ptr<UConverter, CloseConverter> instance = [] {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<UConverter, CloseConverter> opened(ucnv_open("LMBCS-1", &status));
    if (U_FAILURE(status)) throw RuntimeError(51, u"The LMBCS converter is not available"_s);
    return opened;
  }();
  return instance.get();
}

void encodeStretch(QStringView text, QByteArray& out) {
  UConverter* const lmbcs = converter();
  ucnv_resetFromUnicode(lmbcs);
  char buffer[kPiece];
  const UChar* source = text.utf16();
  const UChar* const end = source + text.size();
  do {
    const UChar* const limit = source + qMin<qsizetype>(end - source, kPiece);
    UErrorCode status = U_ZERO_ERROR;
    do {
      status = U_ZERO_ERROR;
      char* target = buffer;
      ucnv_fromUnicode(lmbcs, &target, buffer + kPiece, &source, limit, nullptr, limit == end, &status);
      out.append(buffer, target - buffer);
    } while (status == U_BUFFER_OVERFLOW_ERROR);
    if (U_FAILURE(status)) {
      out.append('?');
      ucnv_resetFromUnicode(lmbcs);
      source = limit;
    }
  } while (source < end);
}

void decodeStretch(QByteArrayView bytes, QString& out) {
  UConverter* const lmbcs = converter();
  ucnv_resetToUnicode(lmbcs);
  UChar buffer[kPiece];
  const char* source = bytes.data();
  const char* const end = source + bytes.size();
  do {
    const char* const limit = source + qMin<qsizetype>(end - source, kPiece);
    UErrorCode status = U_ZERO_ERROR;
    do {
      status = U_ZERO_ERROR;
      UChar* target = buffer;
      ucnv_toUnicode(lmbcs, &target, buffer + kPiece, &source, limit, nullptr, limit == end, &status);
      out.append(QStringView(buffer, target - buffer));
    } while (status == U_BUFFER_OVERFLOW_ERROR);
    if (U_FAILURE(status)) {
      out.append(QChar::ReplacementCharacter);
      ucnv_resetToUnicode(lmbcs);
      source = limit;
    }
  } while (source < end);
}

// Most text is ASCII with a few Western letters: both go through tables, the converter sees the rest.
struct Tables {
  std::array<char16_t, 256> decoded{};  // 0: not one byte for itself
  std::array<quint8, 256> encoded{};    // 0: not a single byte

  Tables() {
    for (int byte = 0x20; byte < 0x7F; ++byte) decoded[byte] = char16_t(byte);
    for (int byte : {0x09, 0x0A, 0x0D}) decoded[byte] = char16_t(byte);
    for (int byte = 0x80; byte < 0x100; ++byte) {
      const char single = char(byte);
      QString text;
      decodeStretch(QByteArrayView(&single, 1), text);
      if (text.size() == 1 && text[0] != QChar::ReplacementCharacter) decoded[byte] = text[0].unicode();
    }
    for (int byte = 1; byte < 0x100; ++byte)
      if (decoded[byte] && decoded[byte] < 0x100) encoded[decoded[byte]] = quint8(byte);
  }
};

const Tables& tables() {
  static const Tables instance;
  return instance;
}

// How many bytes the sequence at the place takes that no table holds.
qsizetype sequenceLength(quint8 lead) {
  if (lead >= 0x10 && lead <= 0x14) return 3;
  if (lead >= 0x01 && lead <= 0x0F) return 2;
  return 1;
}

}  // namespace

QByteArray toLmbcs(QStringView text) {
  const Tables& table = tables();
  QByteArray out;
  out.reserve(text.size() + text.size() / 16);
  qsizetype at = 0;
  const auto single = [&](qsizetype index) {
    const char16_t unit = text[index].unicode();
    return unit < 0x100 ? table.encoded[unit] : quint8(0);
  };
  while (at < text.size()) {
    // Nearly all of it is such stretches, which are written without asking for room again and again.
    const qsizetype first = at;
    while (at < text.size() && single(at)) ++at;
    const qsizetype written = out.size();
    out.resize(written + at - first);
    std::transform(text.begin() + first, text.begin() + at, out.data() + written,
                   [&](QChar letter) { return char(table.encoded[letter.unicode()]); });
    if (at == text.size()) break;
    const qsizetype begin = at;
    while (at < text.size() && !single(at)) ++at;
    encodeStretch(text.sliced(begin, at - begin), out);
  }
  return out;
}

QString fromLmbcs(QByteArrayView bytes) {
  const Tables& table = tables();
  QString out;
  out.reserve(bytes.size());
  qsizetype at = 0;
  while (at < bytes.size()) {
    // Nearly all of it is such stretches, which are written without asking for room again and again.
    const qsizetype first = at;
    while (at < bytes.size() && (table.decoded[quint8(bytes[at])] || bytes[at] == 0)) ++at;
    const qsizetype written = out.size();
    out.resize(written + at - first);
    std::transform(bytes.begin() + first, bytes.begin() + at,
                   reinterpret_cast<char16_t*>(out.data()) + written,
                   [&](char byte) { return table.decoded[quint8(byte)]; });
    if (at == bytes.size()) break;
    const qsizetype begin = at;
    while (at < bytes.size() && !table.decoded[quint8(bytes[at])] && bytes[at] != 0)
      at += sequenceLength(quint8(bytes[at]));
    at = qMin(at, bytes.size());
    decodeStretch(bytes.sliced(begin, at - begin), out);
  }
  return out;
}

bool isPlainLmbcs(QByteArrayView bytes) {
  bool plain = true;
  for (char byte : bytes) plain &= quint8(byte - 0x20) < 0x5F;
  return plain;
}

QString withLineFeeds(QString stored) {
  if (stored.contains(QChar(u'\0'))) stored.replace(QChar(u'\0'), QChar(u'\n'));
  return stored;
}

QString withStoredBreaks(QString text) {
  if (text.contains(u'\n')) text.replace(QChar(u'\n'), QChar(u'\0'));
  return text;
}

QString textFromStored(QByteArrayView bytes) {
  return withLineFeeds(fromLmbcs(bytes));
}

}  // namespace lens

#include "embedded/formula/compiled/layout.h"

#include <charconv>
#include <iterator>

namespace lens::formula {
namespace {

constexpr qint64 kMostDigits = 9;

bool isLayoutDigit(char c) {
  return c >= '0' && c <= '9';
}

void appendNumber(QByteArray& text, qsizetype number) {
  char digits[20];
  text.append(digits, std::to_chars(std::begin(digits), std::end(digits), number).ptr - digits);
}

char16_t blankOf(char letter) {
  return letter == 'R' ? u'\n' : letter == 'T' ? u'\t' : u' ';
}

}  // namespace

LayoutReader::LayoutReader(QByteArrayView text, qsizetype& budget) {
  if (text.isEmpty() || text[0] != kLayoutMark) return;
  text_ = text.sliced(1);
  qint64 total = 0, selects = 0, last = 0;
  while (next()) {
    if (word_ < last) return;
    last = word_;
    if (letter_ == 'L')
      ++selects;
    else
      total += count_;
    if (total > budget) return;
  }
  // Read to its end, so every sign of it was understood.
  if (at_ != text_.size() || selects > 1) return;
  known_ = true;
  hasSelect_ = selects == 1;
  budget -= total;
  at_ = 0;
  word_ = 0;
  letter_ = 0;
}

bool LayoutReader::next() {
  const auto number = [&](qint64& value) {
    const qsizetype from = at_;
    value = 0;
    while (at_ < text_.size() && isLayoutDigit(text_[at_]) && at_ - from < kMostDigits)
      value = value * 10 + (text_[at_++] - '0');
    return at_ > from;
  };
  const qsizetype from = at_;
  qint64 word = 0;
  if (number(word)) word_ = word;
  const char letter = at_ < text_.size() ? text_[at_] : '\0';
  if (letter != 'S' && letter != 'R' && letter != 'T' && letter != 'L') {
    at_ = from;
    return false;
  }
  ++at_;
  letter_ = letter;
  count_ = 1;
  // "12S3E" against "12S13R": only an E behind the digits makes them a count.
  const qsizetype behind = at_;
  qint64 count = 0;
  if (letter != 'L' && number(count) && at_ < text_.size() && text_[at_] == 'E') {
    ++at_;
    count_ = count;
  } else {
    at_ = behind;
  }
  return true;
}

void LayoutReader::before(int word, QString& source) {
  if (!known_) return;
  for (;;) {
    // A letter that was read ahead waits until its word comes.
    if (letter_ == 0 && !next()) return;
    if (word_ > word) return;
    if (word_ == word && letter_ != 'L')
      for (qint64 i = 0; i < count_; ++i) source += QChar(blankOf(letter_));
    letter_ = 0;
  }
}

void LayoutWriter::add(int word, QStringView blanks) {
  bool numbered = false;
  for (qsizetype i = 0; i < blanks.size();) {
    const char16_t c = blanks[i].unicode();
    const bool halfBreak = c == u'\r' && i + 1 < blanks.size() && blanks[i + 1] == u'\n';
    const bool isBreak = c == u'\r' || c == u'\n';
    if (halfBreak || (!isBreak && c != u' ' && c != u'\t')) {
      ++i;
      continue;
    }
    if (!numbered) appendNumber(text_, word);
    numbered = true;
    qsizetype count = 1;
    if (c == u' ')
      while (i + count < blanks.size() && blanks[i + count] == u' ') ++count;
    text_ += isBreak ? 'R' : c == u'\t' ? 'T' : 'S';
    if (count > 1) {
      appendNumber(text_, count);
      text_ += 'E';
    }
    i += count;
  }
}

}  // namespace lens::formula

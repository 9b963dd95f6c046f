// The white space that an author put between the words of a statement, as compiled formulas keep it.
//
// Behind its mark the text says before which words (counted from 0) something stands: "1S4RTT" is a blank
// before word 1, a line break and two tabs before word 4. S is a blank, R a line break, T a tab; "2S3E" is
// three blanks; "0S0E" stands for none at all. L says that the word SELECT was typed there; it counts as a
// word.
#pragma once

#include <QByteArray>
#include <QString>

namespace lens::formula {

inline constexpr char kLayoutMark = '\x09';

// Reads such a text once, in the order of the words.
class LayoutReader {
 public:
  // No layout: nothing is known of the white space.
  LayoutReader() = default;
  // A text that is no layout, or asks for more white space than the budget holds, is none. What it asks for
  // is taken off the budget.
  LayoutReader(QByteArrayView text, qsizetype& budget);

  bool isKnown() const { return known_; }
  bool hasSelect() const { return hasSelect_; }
  // Appends what stands before the word; words in ascending order.
  void before(int word, QString& source);

 private:
  bool next();  // the next letter with its count; false at the end
  QByteArrayView text_;
  qsizetype at_ = 0;
  bool known_ = false, hasSelect_ = false;
  qint64 word_ = 0;
  char letter_ = 0;
  qint64 count_ = 0;
};

// Puts such a text together.
class LayoutWriter {
 public:
  // White space before the word; other characters are passed over. CR LF is one line break.
  void add(int word, QStringView blanks);
  void addSelect() { text_ += 'L'; }
  bool isEmpty() const { return text_.isEmpty(); }
  // With the mark.
  QByteArray text() const { return kLayoutMark + (text_.isEmpty() ? QByteArray("0S0E") : text_); }

 private:
  QByteArray text_;
};

}  // namespace lens::formula

// Settings files as the profile functions of Windows know them: sections of "key=value" lines, on the bytes
// of a whole file.
//
// A line ends at CR LF, CR or LF. A header is a line whose first character behind blanks and tabs is "[": its
// name reaches to the last "]" of the line; without one the line is no header. Names match without regard to
// case, and of several sections of one name only the first is seen. What a function does not speak of stays
// byte for byte, line ends included; what it writes ends in CR LF.
//
// Texts are bytes of the code page. All of these functions take any bytes.
#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace lens {

// Reads one line after the other, as a program does that has opened a file for input.
class TextLines {
 public:
  explicit TextLines(QByteArrayView file) : rest_(file) {}

  // Whether everything was read. Behind the end of the last line there is no empty one.
  bool atEnd() const { return rest_.isEmpty(); }
  // The line without its end. Raises 62 at the end of the file.
  QByteArrayView next();

 private:
  QByteArrayView rest_;
};

// The value of a key as a buffer of so many bytes takes it, its NUL included: at most `size` - 1 bytes, up to
// the first NUL. Blanks around it go, then one pair of equal quotes. "" where there is no such key.
QByteArray profileValue(QByteArrayView file, QByteArrayView section, QByteArrayView key, qsizetype size);

// A known key is replaced where it stands, a new one goes behind the last line of its section that is not
// empty, a new section to the end of the file. A last line without an end gets one. The value becomes one
// line.
void setProfileValue(QByteArray& file, QByteArrayView section, QByteArrayView key, QByteArrayView value);

// Takes away the header and every line to the next header: keys, bare lines, comments and empty ones.
void deleteProfileSection(QByteArray& file, QByteArrayView section);

// The text as one line: a blank for each CR LF, CR, LF and NUL.
QByteArray asOneLine(QByteArrayView text);

}  // namespace lens

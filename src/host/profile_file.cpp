#include "host/profile_file.h"

#include <algorithm>

#include "notes/code_page.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

// A line as it lies in the file, with its end.
struct Line {
  qsizetype begin = 0;
  qsizetype end = 0;   // of the text
  qsizetype next = 0;  // behind the line's end
};

bool isLineEnd(char c) {
  return c == '\r' || c == '\n';
}

Line lineAt(QByteArrayView file, qsizetype at) {
  const char* const behind = file.data() + file.size();
  const char* place = std::find_if(file.data() + at, behind, isLineEnd);
  Line line{at, place - file.data(), 0};
  if (place != behind && *place == '\r') ++place;
  if (place != behind && *place == '\n') ++place;
  line.next = place - file.data();
  return line;
}

bool isBlank(char c) {
  return c == ' ' || c == '\t';
}

QByteArrayView withoutBlanks(QByteArrayView text) {
  while (!text.isEmpty() && isBlank(text.front())) text = text.sliced(1);
  while (!text.isEmpty() && isBlank(text.back())) text.chop(1);
  return text;
}

bool isSameName(QByteArrayView left, QByteArrayView right) {
  return left.size() == right.size() &&
         fromCodePage(left).compare(fromCodePage(right), Qt::CaseInsensitive) == 0;
}

bool readHeader(QByteArrayView line, QByteArrayView& name) {
  line = withoutBlanks(line);
  const qsizetype close = line.lastIndexOf(']');
  if (!line.startsWith('[') || close < 0) return false;
  name = line.sliced(1, close - 1);
  return true;
}

struct Section {
  qsizetype begin = -1;    // of its header; -1 when there is none
  qsizetype end = 0;       // where the next header begins
  qsizetype lastText = 0;  // behind its last line that is not empty, the header at least
  Line key;                // the line of the key that was looked for
  bool hasKey = false;
};

bool isKeyLine(QByteArrayView line, QByteArrayView key) {
  const qsizetype equals = line.indexOf('=');
  return equals >= 0 && isSameName(withoutBlanks(line.first(equals)), key);
}

// The first section of the name, and in it the first line of the key.
Section findSection(QByteArrayView file, QByteArrayView name, QByteArrayView key = {}) {
  Section found;
  found.end = file.size();
  for (Line line; line.next < file.size();) {
    line = lineAt(file, line.next);
    const QByteArrayView text = file.sliced(line.begin, line.end - line.begin);
    QByteArrayView header;
    if (readHeader(text, header)) {
      if (found.begin >= 0) {
        found.end = line.begin;
        return found;
      }
      if (isSameName(header, name)) found.begin = line.begin, found.lastText = line.next;
      continue;
    }
    if (found.begin < 0) continue;
    if (!withoutBlanks(text).isEmpty()) found.lastText = line.next;
    if (!found.hasKey && !key.isEmpty() && isKeyLine(text, key)) found.key = line, found.hasKey = true;
  }
  return found;
}

void endLastLine(QByteArray& file) {
  if (!file.isEmpty() && !isLineEnd(file.back())) file += "\r\n";
}

QByteArrayView withoutQuotes(QByteArrayView text) {
  const bool quoted = text.size() >= 2 && (text.front() == '"' || text.front() == '\'');
  return quoted && text.back() == text.front() ? text.sliced(1, text.size() - 2) : text;
}

}  // namespace

QByteArrayView TextLines::next() {
  if (atEnd()) throw RuntimeError(err::InputPastEnd);
  const Line line = lineAt(rest_, 0);
  const QByteArrayView text = rest_.first(line.end);
  rest_ = rest_.sliced(line.next);
  return text;
}

QByteArray profileValue(QByteArrayView file, QByteArrayView section, QByteArrayView key, qsizetype size) {
  const Section found = findSection(file, section, key);
  if (!found.hasKey) return {};
  const QByteArrayView line = file.sliced(found.key.begin, found.key.end - found.key.begin);
  QByteArrayView value = withoutQuotes(withoutBlanks(line.sliced(line.indexOf('=') + 1)));
  return upToNul(value.first(qMin(value.size(), qMax<qsizetype>(0, size - 1))).toByteArray());
}

void setProfileValue(QByteArray& file, QByteArrayView section, QByteArrayView key, QByteArrayView value) {
  const QByteArray line = key.toByteArray() + '=' + asOneLine(value) + "\r\n";
  endLastLine(file);
  const Section found = findSection(file, section, key);
  if (found.hasKey)
    file.replace(found.key.begin, found.key.next - found.key.begin, line);
  else if (found.begin >= 0)
    file.insert(found.lastText, line);
  else
    file += '[' + section.toByteArray() + "]\r\n" + line;
}

void deleteProfileSection(QByteArray& file, QByteArrayView section) {
  const Section found = findSection(file, section);
  if (found.begin >= 0) file.remove(found.begin, found.end - found.begin);
}

QByteArray asOneLine(QByteArrayView text) {
  QByteArray line;
  line.reserve(text.size());
  for (qsizetype at = 0; at < text.size(); ++at) {
    const bool endsPair = text[at] == '\n' && at > 0 && text[at - 1] == '\r';
    if (endsPair) continue;
    line += isLineEnd(text[at]) || text[at] == '\0' ? ' ' : text[at];
  }
  return line;
}

}  // namespace lens

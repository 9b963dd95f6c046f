#include "embedded/dxl/note_count.h"

#include <QFile>
#include <QVarLengthArray>

#include "embedded/dxl/dxl_source.h"
#include "embedded/dxl/note_elements.h"

namespace lens {
namespace {

constexpr qsizetype kCountedBlock = 64 * 1024;
constexpr qsizetype kLongestTagName = 64;  // with its prefix

// Whether the name that the text begins with is one of a note, whatever its prefix.
bool beginsWithNote(QByteArrayView text) {
  QVarLengthArray<char16_t, kLongestTagName> name;
  for (const char c : text) {
    if (c == ':')
      name.clear();
    else if (c == '>' || c == '/' || uchar(c) <= ' ' || name.size() == kLongestTagName)
      break;
    else
      name.append(char16_t(uchar(c)));
  }
  return isNoteElement(QStringView(name.constData(), name.size()));
}

}  // namespace

qint64 mostNotesIn(const QString& path, const std::function<bool()>& goOn) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return 0;
  DxlSource source(file, [&](qint64) { return goOn(); });
  qint64 count = 0;
  QByteArray text;
  for (bool more = true; more;) {
    const QByteArray block = source.read(kCountedBlock);
    more = !block.isEmpty();
    text.append(block);
    qsizetype at = text.indexOf('<');
    for (; at >= 0 && (!more || text.size() - at > kLongestTagName); at = text.indexOf('<', at + 1))
      if (beginsWithNote(QByteArrayView(text).sliced(at + 1))) ++count;
    text = at >= 0 ? text.sliced(at) : QByteArray();
  }
  return count;
}

}  // namespace lens

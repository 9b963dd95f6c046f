#include "embedded/console/command_line.h"

namespace lens {

QStringList commandWords(QStringView command) {
  QStringList words;
  QString word;
  bool begun = false, quoted = false;
  for (const QChar c : command) {
    const bool parts = !quoted && (c.isSpace() || c.unicode() < 0x20);
    if (c == u'"') {
      quoted = !quoted;
      begun = true;
    } else if (!parts) {
      word.append(c);
      begun = true;
    } else if (begun) {
      words.append(std::exchange(word, {}));
      begun = false;
    }
  }
  if (begun) words.append(word);
  return words;
}

}  // namespace lens

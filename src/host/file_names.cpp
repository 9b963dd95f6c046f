#include "host/file_names.h"

#include <QRegularExpression>

#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {

namespace {

// Disks take 255 bytes of UTF-8; a file that is being written has a longer name until it is whole.
constexpr qsizetype kMostBytes = 240;

// On Windows these are devices, in any case of letters and with any ending.
bool namesDevice(const QString& name) {
  static const QRegularExpression device(
      u"^(con|prn|aux|nul|conin\\$|conout\\$|(com|lpt)[0-9\u00B9\u00B2\u00B3])[ .]*(\\..*)?$"_s,
      QRegularExpression::CaseInsensitiveOption);
  return device.match(name).hasMatch();
}

// Behind the last separator. A colon is one behind the letter of a drive; elsewhere it belongs to the name.
QString lastPart(const QString& name) {
  const QString last = name.mid(qMax(name.lastIndexOf(u'/'), name.lastIndexOf(u'\\')) + 1);
  return last.size() > 1 && last[1] == u':' && last[0].isLetter() ? last.mid(2) : last;
}

bool diskTakes(QChar c) {
#ifdef Q_OS_WIN
  if (u"<>:\"|?*"_s.contains(c)) return false;
#endif
  return c >= u' ' && c != u'\u007F';
}

// Half a character of the upper planes has no bytes in a file name.
bool isHalf(const QString& name, qsizetype at) {
  if (name[at].isHighSurrogate()) return at + 1 == name.size() || !name[at + 1].isLowSurrogate();
  return name[at].isLowSurrogate() && (at == 0 || !name[at - 1].isHighSurrogate());
}

// Nothing but dots and blanks means a directory, or on Windows no name at all.
bool namesNothing(const QString& name) {
  for (const QChar c : name)
    if (c != u'.' && c != u' ') return false;
  return true;
}

// Where the ending begins, with its dot; a dot at the start begins none.
qsizetype endingAt(const QString& name) {
  constexpr qsizetype kLongestEnding = 32;
  const qsizetype dot = name.lastIndexOf(u'.');
  return dot > 0 && name.size() - dot <= kLongestEnding ? dot : name.size();
}

// The stem, cut where the name would be too long, the mark, and the ending.
QString marked(const QString& name, const QString& mark) {
  const qsizetype dot = endingAt(name);
  QString stem = name.first(dot);
  const QString ending = name.sliced(dot);
  const qsizetype spare = kMostBytes - mark.toUtf8().size() - ending.toUtf8().size();
  if (stem.size() > spare) stem.truncate(spare);
  while (stem.toUtf8().size() > spare) stem.chop(stem.back().isLowSurrogate() ? 2 : 1);
  return stem + mark + ending;
}

// For the user's eyes: what cannot be seen is shown as a mark.
QString visible(QString name) {
  for (QChar& c : name)
    if (c < u' ' || c == u'\u007F') c = QChar::ReplacementCharacter;
  constexpr qsizetype kMostShown = 80;
  return name.size() > kMostShown ? name.first(kMostShown) + u'\u2026' : name;
}

}  // namespace

QString safeFileName(const QString& name) {
  QString safe = lastPart(name);
  for (qsizetype at = 0; at < safe.size(); ++at)
    if (!diskTakes(safe[at]) || isHalf(safe, at)) safe[at] = u'_';
#ifdef Q_OS_WIN
  while (safe.endsWith(u'.') || safe.endsWith(u' ')) safe.chop(1);
#endif
  if (namesNothing(safe)) return u"attachment"_s;
  if (namesDevice(safe))
    throw RuntimeError(err::PathFileAccess, u"\"%1\" is no name that a file can have"_s.arg(name));
  return marked(safe, {});
}

QString DistinctFileNames::free(const QString& name) {
  const auto key = [](const QString& file) {
    return file.normalized(QString::NormalizationForm_C).toCaseFolded();
  };
  const QString wanted = key(name);
  if (!taken_.contains(wanted)) {
    taken_.insert(wanted);
    return name;
  }
  int& number = copies_[wanted];
  number = qMax(number, 1);
  for (;;) {
    QString numbered = marked(name, u" (%1)"_s.arg(++number));
    const QString folded = key(numbered);
    if (taken_.contains(folded)) continue;
    taken_.insert(folded);
    return numbered;
  }
}

QString DistinctFileNames::take(const QString& given) {
  QString name = free(safeFileName(given));
  if (name != given) changes_.append(u"\"%1\": \"%2\""_s.arg(visible(given), visible(name)));
  return name;
}

}  // namespace lens

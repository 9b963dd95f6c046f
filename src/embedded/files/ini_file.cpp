#include "embedded/files/ini_file.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include "embedded/files/file_lock.h"
#include "host/save_file.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

constexpr qint64 kLargest = 1 << 20;
constexpr int kLongestWaitMs = 5000;

[[noreturn]] void fail(const QString& path, const QString& reason) {
  throw RuntimeError(err::PathFileAccess, u"%1: %2"_s.arg(path, reason));
}

bool isHead(QStringView line, QStringView section) {
  const QStringView text = line.trimmed();
  return text.size() == section.size() + 2 && text.front() == u'[' && text.back() == u']' &&
         text.sliced(1, section.size()).compare(section, Qt::CaseInsensitive) == 0;
}

bool isAnyHead(QStringView line) {
  return line.trimmed().startsWith(u'[');
}

}  // namespace

IniFile::IniFile(const QString& path, const QString& section) : path_(path), section_(section) {
  QFile file(path);
  if (!file.exists()) return;
  if (!QFileInfo(path).isFile()) fail(path, u"is no plain file"_s);
  if (!file.open(QIODevice::ReadOnly)) fail(path, file.errorString());
  if (file.size() > kLargest) fail(path, u"larger than 1 MB, so it is no settings file"_s);
  QStringDecoder decoder(QStringDecoder::Utf8);
  const QString text = decoder(file.readAll());
  if (decoder.hasError()) fail(path, u"is no UTF-8 text"_s);
  lines_ = text.split(u'\n');
  for (QString& line : lines_)
    if (line.endsWith(u'\r')) line.chop(1);
  while (!lines_.isEmpty() && lines_.last().isEmpty()) lines_.removeLast();
}

qsizetype IniFile::find(QStringView name) const {
  bool inside = false;
  for (qsizetype i = 0; i < lines_.size(); ++i) {
    const QStringView line = lines_[i];
    if (isAnyHead(line)) {
      inside = isHead(line, section_);
      continue;
    }
    const qsizetype equals = line.indexOf(u'=');
    if (inside && equals > 0 && line.first(equals).trimmed().compare(name, Qt::CaseInsensitive) == 0)
      return i;
  }
  return -1;
}

QString IniFile::value(QStringView name) const {
  const qsizetype at = find(name);
  if (at < 0) return {};
  return lines_[at].mid(lines_[at].indexOf(u'=') + 1).trimmed();
}

// Where a new entry goes: behind the last line of the section, which is made when it lacks.
qsizetype IniFile::sectionEnd() {
  bool inside = false;
  qsizetype end = -1;
  for (qsizetype i = 0; i < lines_.size(); ++i) {
    if (isAnyHead(lines_[i])) {
      if (inside) break;
      inside = isHead(lines_[i], section_);
    }
    if (inside && !lines_[i].trimmed().isEmpty()) end = i + 1;
  }
  if (end >= 0) return end;
  lines_.append(u'[' + section_ + u']');
  return lines_.size();
}

void IniFile::setValue(const QString& name, const QString& value) {
  QString line = name + u'=' + value;
  for (QChar& c : line)
    if (c == u'\r' || c == u'\n') c = u' ';
  const qsizetype at = find(name);
  if (at >= 0)
    lines_[at] = line;
  else
    lines_.insert(sectionEnd(), line);
}

void IniFile::change(const std::function<void(IniFile&)>& changes) {
  const FileLock lock(path_, kLongestWaitMs);
  if (lock.state() == FileLock::State::Taken) fail(path_, u"another program is changing the file"_s);
  if (lock.state() == FileLock::State::Impossible)
    fail(path_, u"the file cannot be changed, for no lock can be made beside it"_s);
  IniFile now(path_, section_);
  changes(now);
  now.write();
  *this = now;
}

void IniFile::write() const {
  QSaveFile file(path_);
  if (!file.open(QIODevice::WriteOnly)) fail(path_, file.errorString());
  const QByteArray bytes = (lines_.join(u'\n') + u'\n').toUtf8();
  if (file.write(bytes) != bytes.size() || !commitWhole(file)) fail(path_, file.errorString());
}

}  // namespace lens

// A small text file of "name=value" lines under one "[Section]" head, such as notes.ini.
//
// Lines that are not understood, comments and other sections stay as they are when it is written.
// Names match without regard to case. It is read once; a change is made to what is in the file by then, so
// that several programs may change their entries of one file.
#pragma once

#include <QString>
#include <QStringList>
#include <functional>

namespace lens {

class IniFile {
 public:
  // Reads the file; a missing one is empty. Raises 75 when it is there and is no plain file, cannot be
  // read, is larger than 1 MB or is no UTF-8 text.
  IniFile(const QString& path, const QString& section);

  const QString& path() const { return path_; }
  // "" when there is no such entry.
  QString value(QStringView name) const;
  bool has(QStringView name) const { return find(name) >= 0; }

  // Reads the file again, lets the changes be made, and writes it aside and renames it, so that a failure
  // leaves the old file. Other programs wait meanwhile. Raises 75, and then nothing is changed here either.
  void change(const std::function<void(IniFile&)>& changes);
  // For change() only. Line ends inside the value become blanks.
  void setValue(const QString& name, const QString& value);

 private:
  void write() const;
  qsizetype find(QStringView name) const;
  qsizetype sectionEnd();

  QString path_;
  QString section_;
  QStringList lines_;
};

}  // namespace lens

// What an import did, for the user to read: nothing that was not understood goes unmentioned.
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace lens {

struct ImportReport {
  int notes = 0;        // notes written, replaced ones included
  int replaced = 0;     // of these, notes that the database already had
  QStringList keptRaw;  // "file: what (n times)": kept in the database in a form nobody interprets
  QStringList ignored;  // "file: what (n times)": not stored, by design
  QStringList failed;   // "file, line L, column C: reason": nothing of that file was imported
  bool cancelled = false;

  QString text() const;
};

// Counts the findings of one file; they reach the report only when the file was imported.
class FileFindings {
 public:
  void keptRaw(const QString& what) { ++kept_[what]; }
  void ignored(const QString& what) { ++ignored_[what]; }
  void moveTo(ImportReport& report, const QString& file) const;

  int notes = 0;
  int replaced = 0;

 private:
  QMap<QString, int> kept_;
  QMap<QString, int> ignored_;
};

}  // namespace lens

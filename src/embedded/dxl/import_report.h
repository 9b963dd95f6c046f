// What an import did, for the user to read: nothing that was not understood goes unmentioned.
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <map>

namespace lens {

struct ImportReport {
  int notes = 0;        // notes written, replaced ones included
  int replaced = 0;     // of these, notes that the database already had
  QStringList keptRaw;  // "file: what (n times)": kept in the database in a form nobody interprets
  QStringList ignored;  // "file: what (n times)": not stored, by design
  QStringList origin;   // attributes, each once, that tell of the database and program the files come from
  QStringList failed;   // "file, line L, column C: reason": nothing of that file was imported
  bool cancelled = false;

  // By what was found, which many files may have in common; text() says it once.
  struct Finding {
    int files = 0, times = 0;
    QString line;  // of the first file
  };
  QMap<QString, Finding> keptKinds, ignoredKinds;
  QStringList otherFiles;  // of the lines of `ignored` those that are about files that are no DXL

  QString text() const;
};

// Counts the findings of one file; they reach the report only when the file was imported.
class FileFindings {
 public:
  void keptRaw(const QString& what) { ++kept_[what]; }
  void ignored(const QString& what) { ++ignored_[what]; }
  // Nobody can run a formula of a design. The first ones are named by their places; all others are counted
  // by what is wrong with them.
  void unreadFormula(const QString& place, const QString& problem);
  // Nothing asked for them: they are left out.
  void unreadAttribute(QStringView element, QStringView attribute);
  void unreadElement(QStringView element, QStringView parent);
  // Of attributes that tell where a file comes from: a report of many files names them once.
  static bool tellsOrigin(QStringView element, QStringView attribute);
  void moveTo(ImportReport& report, const QString& file) const;

  int notes = 0;
  int replaced = 0;

 private:
  using Place = std::pair<QStringView, QStringView>;  // element, attribute
  struct Before {
    using is_transparent = void;
    bool operator()(const auto& a, const auto& b) const {
      const int order = QStringView(a.first).compare(QStringView(b.first));
      return order != 0 ? order < 0 : QStringView(a.second) < QStringView(b.second);
    }
  };

  int namedFormulas_ = 0;
  QMap<QString, int> kept_;
  QMap<QString, int> ignored_;
  std::map<std::pair<QString, QString>, int, Before> unread_;
};

}  // namespace lens

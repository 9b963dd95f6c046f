// The world in which the formulas of the tests run: one document in one database, a clock that stands
// still on Friday 15 March 2024, 10:30:45 in New York, and the region United States. Every world is fresh,
// and remembers what was written to it.
#pragma once

#include <QHash>
#include <QMap>

#include "embedded/formula/formula.h"
#include "embedded/formula/support/memory_document.h"

namespace lens::formula {

class TestEnvironment : public Environment {
 public:
  QString userName() const override;
  QStringList userNamesList() const override;
  TimeDate now() const override;
  const LocalZone& zone() const override;
  const Region& region() const override { return region_; }
  QString iniValue(const QString& name) const override { return ini.value(name); }
  void setIniValue(const QString& name, const QString& value) override { ini.insert(name, value); }
  QString iniPath() const override;
  QStringList addressBooks() const override;

  QMap<QString, QString> ini{{QStringLiteral("$Region"), QStringLiteral("North")}};

 private:
  Region region_;
};

// Items: Form, Subject, Empty, Names, Numbers, Amount, Zero, Due, Meeting, Clock, Span, Dates, Body (rich
// text), From.
class TestDocument : public MemoryDocument {
 public:
  TestDocument();
  DocumentProperties properties() const override;
  QVector<Attachment> attachments() const override;
};

// Database "Orders". A second document FEDCBA9876543210FEDCBA9876543210 holds Subject and Amount; the
// profile "Settings" holds Color, for all and for "Ada"; the view "Stock" has the columns article (sorted),
// amount: apple 3, banana 5, banana 7, cherry 11.
class TestDatabase : public Database {
 public:
  DatabaseProperties properties() const override;
  bool documentItem(const Unid& unid, const Name& name, Value& value) const override;
  void setDocumentItem(const Unid& unid, const QString& name, const Value& value) override;
  bool profileItem(const QString& profile, const QString& key, const Name& name, Value& value) const override;
  void setProfileItem(const QString& profile, const QString& key, const QString& name,
                      const Value& value) override;
  bool exists(const QString& server, const QString& path) const override;
  Value column(const ViewPlace& place, int column) const override;
  bool lookup(const ViewPlace& place, const Lookup& lookup, Value& value) const override;

 private:
  struct Row {
    QString article;
    double amount;
    QString unid;
  };
  static const QVector<Row>& rows();
  void checkPlace(const ViewPlace& place) const;
  // By "unid" or "profile/key", then by item, all in lower case.
  QMap<QString, QMap<QString, Value>> written_;
};

struct TestContext {
  TestEnvironment environment;
  TestDocument document;
  TestDatabase database;
};

// Wall clock of the test world's zone as a stored time.
TimeDate testTime(int year, int month, int day, int hour, int minute, int second = 0);
TimeDate testDate(int year, int month, int day);

// The canonical print of a value: "a" : "b", 1 : 2.5, [2024-03-15 10:30:45], [2024-03-01 - 2024-03-05],
// keyword CN, nothing, missing, unavailable, error 053C.
QString printValue(const Value& value, const LocalZone& zone);

}  // namespace lens::formula

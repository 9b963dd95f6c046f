// What the client window asks the user for: files, a folder, a name. A test answers in the user's place.
#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>

namespace lens {

// Every answer is empty when the user gives up.
class FileChoice {
 public:
  virtual ~FileChoice() = default;
  virtual QStringList dxlFiles(QWidget* owner) = 0;
  // A database to be opened.
  virtual QString databaseFile(QWidget* owner) = 0;
  virtual QString folder(QWidget* owner) = 0;
  // A file to be written; the user was asked already when there is one of that name.
  virtual QString exportFile(QWidget* owner, const QString& suggestion) = 0;
  // The same for a report, as text or JSON.
  virtual QString reportFile(QWidget* owner, const QString& suggestion) = 0;
  // Path of a database to be made, below the directory of its server; `where` names that server.
  virtual QString databaseName(QWidget* owner, const QString& where) = 0;
};

// The desktop's own dialogs. They hold back only their owner: the tool's windows go on.
class DesktopFileChoice : public FileChoice {
 public:
  QStringList dxlFiles(QWidget* owner) override;
  QString databaseFile(QWidget* owner) override;
  QString folder(QWidget* owner) override;
  QString exportFile(QWidget* owner, const QString& suggestion) override;
  QString reportFile(QWidget* owner, const QString& suggestion) override;
  QString databaseName(QWidget* owner, const QString& where) override;

 private:
  QString lastFolder_;
};

}  // namespace lens

// What the client window asks the user for: files, a folder, a name. A test answers in the user's place.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QWidget>

#include "client/import_offer.h"
#include "controls/kept_settings.h"

namespace lens {

// Every answer is empty when the user gives up.
class FileChoice {
 public:
  virtual ~FileChoice() = default;
  virtual QStringList dxlFiles(QWidget* owner) = 0;
  // A database to be opened.
  virtual QString databaseFile(QWidget* owner) = 0;
  virtual QString folder(QWidget* owner) = 0;
  // A file to be written, of the kind of the suggested one ("mail.dxl"); the user was asked already when
  // there is one of that name.
  virtual QString exportFile(QWidget* owner, const QString& suggestion) = 0;
  // The same for a report, as text or JSON.
  virtual QString reportFile(QWidget* owner, const QString& suggestion) = 0;
  // The open database or a new one.
  virtual ImportTarget importTarget(QWidget* owner, const ImportOffer& offer) = 0;
  // Whether something is to be done that takes long or cannot be undone; the action is a button's caption.
  virtual bool confirm(QWidget* owner, const QString& question, const QString& action) = 0;
  // Another path for a database; `caption` says for what.
  virtual QString otherDatabaseName(QWidget* owner, const QString& caption, const QString& suggestion) = 0;
  // Path of a database to be made, below the directory of its server; `where` names that server.
  virtual QString databaseName(QWidget* owner, const QString& where) = 0;

  // Dialogs begin in the folder that they ended in the last time, also of an earlier start. The settings live
  // longer.
  void keepFoldersIn(KeptSettings& settings) { settings_ = &settings; }

 protected:
  // By what is chosen: "import", "database", "export".
  QString folderOf(const QString& purpose) const;
  void keepFolder(const QString& purpose, const QString& folder);

 private:
  KeptSettings* settings_ = nullptr;  // null: for this start only
  QHash<QString, QString> folders_;
};

// The desktop's own dialogs. They hold back only their owner: the tool's windows go on.
class DesktopFileChoice : public FileChoice {
 public:
  QStringList dxlFiles(QWidget* owner) override;
  QString databaseFile(QWidget* owner) override;
  QString folder(QWidget* owner) override;
  QString exportFile(QWidget* owner, const QString& suggestion) override;
  QString reportFile(QWidget* owner, const QString& suggestion) override;
  ImportTarget importTarget(QWidget* owner, const ImportOffer& offer) override;
  bool confirm(QWidget* owner, const QString& question, const QString& action) override;
  QString otherDatabaseName(QWidget* owner, const QString& caption, const QString& suggestion) override;
  QString databaseName(QWidget* owner, const QString& where) override;
};

}  // namespace lens

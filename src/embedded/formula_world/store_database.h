// A database of a workspace as formulas see it: its properties, its other documents and its profiles.
// Views have no index yet, so columns and lookups are refused (fault::NotInContext).
#pragma once

#include <QHash>

#include "embedded/formula/world.h"
#include "embedded/workspace.h"

namespace lens {

class StoreDatabase : public formula::Database {
 public:
  // The workspace must outlive this.
  StoreDatabase(Workspace& workspace, DatabasePlace place, std::shared_ptr<lens::Database> store)
      : workspace_(workspace), place_(std::move(place)), store_(std::move(store)) {}

  formula::DatabaseProperties properties() const override;
  bool documentItem(const QString& unid, const formula::Name& name, formula::Value& value) const override;
  // Saves the document at once.
  void setDocumentItem(const QString& unid, const QString& name, const formula::Value& value) override;
  bool profileItem(const QString& profile, const QString& key, const formula::Name& name,
                   formula::Value& value) const override;
  // Makes the profile when there is none, and saves it.
  void setProfileItem(const QString& profile, const QString& key, const QString& name,
                      const formula::Value& value) override;
  // By path, or by replica ID on that server.
  bool exists(const QString& server, const QString& path) const override;

 private:
  void findProfiles() const;
  bool readProfile(const QString& profile, const QString& key, Note& note) const;
  void write(Note& note, const QString& name, const formula::Value& value);

  Workspace& workspace_;
  DatabasePlace place_;
  std::shared_ptr<lens::Database> store_;
  // Note IDs of the profiles by $Name in lower case, as of that change of the database.
  mutable QHash<QString, quint32> profiles_;
  mutable qint64 profilesOf_ = -1;
};

}  // namespace lens

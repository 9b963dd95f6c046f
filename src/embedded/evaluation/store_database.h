// A database of a workspace as formulas see it: its properties, its other documents and its profiles.
// Columns and lookups read the indexes of views (embedded/views).
#pragma once

#include <QHash>

#include "embedded/formula/evaluation_context.h"
#include "embedded/workspace/workspace.h"

namespace lens {

class ViewIndex;

class StoreDatabase : public formula::Database {
 public:
  // The workspace must outlive this.
  StoreDatabase(Workspace& workspace, DatabasePlace place, std::shared_ptr<lens::Database> store)
      : workspace_(workspace), place_(std::move(place)), store_(std::move(store)) {}

  formula::DatabaseProperties properties() const override;
  bool documentItem(const Unid& unid, const formula::Name& name, formula::Value& value) const override;
  // Saves the document at once.
  void setDocumentItem(const Unid& unid, const QString& name, const formula::Value& value) override;
  bool profileItem(const QString& profile, const QString& key, const formula::Name& name,
                   formula::Value& value) const override;
  // Makes the profile when there is none, and saves it.
  void setProfileItem(const QString& profile, const QString& key, const QString& name,
                      const formula::Value& value) override;
  // By path, or by replica ID on that server.
  bool exists(const QString& server, const QString& path) const override;
  // A database, view or column that is not there: a Fault (CannotCompute).
  formula::Value column(const formula::ViewPlace& place, int column) const override;
  bool lookup(const formula::ViewPlace& place, const Lookup& lookup, formula::Value& value) const override;

 private:
  // A view that was read, with what it needs to live.
  struct OpenView {
    std::shared_ptr<lens::Database> store;
    qint64 change = -1;
    std::shared_ptr<ViewIndex> index;
  };
  ViewIndex& openView(const formula::ViewPlace& place) const;
  void findProfiles() const;
  bool readProfile(const QString& profile, const QString& key, Note& note) const;
  void write(Note& note, const QString& name, const formula::Value& value);

  Workspace& workspace_;
  DatabasePlace place_;
  std::shared_ptr<lens::Database> store_;
  // Note IDs of the profiles by $Name in lower case, as of that change of the database.
  mutable QHash<QString, NoteId> profiles_;
  mutable qint64 profilesOf_ = -1;
  mutable QHash<QString, OpenView> views_;  // by place
  mutable bool interrupted_ = false;        // while a view was brought up to date
};

}  // namespace lens

// What a formula may ask of the world around it: the document at hand, its database, and the machine.
// The evaluator knows these interfaces only; what stands behind them is the store, a test or a benchmark.
#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>

#include "embedded/format/item_name.h"
#include "embedded/format/note_id.h"
#include "embedded/format/unid.h"
#include "embedded/formula/region.h"
#include "embedded/formula/times.h"
#include "embedded/formula/value.h"
#include "notes/literals.h"

namespace lens::formula {

// The name of an item or of a variable.
using Name = ItemName;

struct DocumentProperties {
  TimeDate created, modified, accessed;
  Unid unid;        // null for a document that was never saved
  Unid parentUnid;  // null for a main document
  NoteId noteId;
  qint64 size = 0;         // bytes
  qint64 omittedSize = 0;  // bytes cut off
  bool isNew = false, isTruncated = false, isResponse = false;
};

struct Attachment {
  QString name;
  qint64 size = 0;
  TimeDate modified;
};

class Document {
 public:
  virtual ~Document() = default;
  // False when the document has no such item, or a formula may not see it. A value that formulas cannot
  // hold (rich text, objects) is there and reads as the empty text.
  virtual bool item(const Name& name, Value& value) const = 0;
  virtual QStringList itemNames() const { return {}; }
  // The names of those that hold authors.
  virtual QStringList authorItems() const { return {}; }
  // Writing; an existing item keeps its flags. Refused with a Fault (fault::FieldsReadOnly).
  virtual void setItem(const QString& name, const Value& value);
  virtual void removeItem(const QString& name);
  virtual DocumentProperties properties() const { return {}; }
  virtual QVector<Attachment> attachments() const { return {}; }
  // The text of a rich text item; "" when it is none.
  virtual QString richText(const Name&) const { return {}; }
  // In a selection: whether an ancestor of this document (its parent only, unless every level counts)
  // was selected.
  virtual bool respondsToSelected(bool everyLevel) const;
};

struct DatabaseProperties {
  QString server, path, title, replicaId;  // server "" for local, ID as "85255CEB:0032AC04"
  QString templateVersion, viewTitle;
  QStringList managers, userRoles;
  int accessLevel = 6;  // of the user, 0 none to 6 manager
};

// Where a column or lookup reads: another database or, with an empty path, this one.
struct ViewPlace {
  QString server, path, view;
};

class Database {
 public:
  virtual ~Database() = default;
  virtual DatabaseProperties properties() const { return {}; }
  // Items of other documents: false when the item is missing; a Fault (NoDocument) when the document is.
  virtual bool documentItem(const Unid& unid, const Name& name, Value& value) const;
  virtual void setDocumentItem(const Unid& unid, const QString& name, const Value& value);
  // An empty key is the profile that all users share. A profile that does not exist has no items.
  virtual bool profileItem(const QString& profile, const QString& key, const Name& name, Value& value) const;
  virtual void setProfileItem(const QString& profile, const QString& key, const QString& name,
                              const Value& value);
  virtual bool exists(const QString& server, const QString& path) const;
  // Values of the column, 1-based; a Fault when there is no such database, view or column.
  virtual Value column(const ViewPlace& place, int column) const;
  // Rows whose first sorted column holds the key: values of a column or an item, or the UNIDs.
  struct Lookup {
    QString key;
    int column = 0;  // 1-based; 0: the item
    QString item;
    bool partial = false, unids = false;
  };
  // False when no row has the key.
  virtual bool lookup(const ViewPlace& place, const Lookup& lookup, Value& value) const;
};

class Environment {
 public:
  virtual ~Environment() = default;
  virtual QString userName() const { return {}; }           // canonical
  virtual QStringList userNamesList() const { return {}; }  // with groups and roles
  virtual TimeDate now() const = 0;
  virtual const LocalZone& zone() const = 0;
  virtual const Region& region() const = 0;
  // Entries of notes.ini; "" for one that is missing. Writing is refused with a Fault (SideEffect).
  virtual QString iniValue(const QString&) const { return {}; }
  virtual void setIniValue(const QString& name, const QString& value);
  virtual QString iniPath() const { return {}; }
  virtual QStringList addressBooks() const { return {}; }
  virtual QString language() const { return u"en"_s; }
  // Asked now and then during long work; true ends the evaluation with fault::TooMuchTime.
  virtual bool interrupted() { return false; }
};

// A clock and settings that never change but for the clock: what the program uses where it asks for
// nothing more. The machine's zone and region.
class MachineEnvironment : public Environment {
 public:
  MachineEnvironment();
  TimeDate now() const override;
  const LocalZone& zone() const override { return zone_; }
  const Region& region() const override { return region_; }

 private:
  LocalZone zone_;
  Region region_;
};

}  // namespace lens::formula

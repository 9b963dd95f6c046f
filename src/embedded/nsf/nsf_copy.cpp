#include "embedded/nsf/nsf_copy.h"

#include "embedded/format/stored_lists.h"
#include "embedded/nsf/nsf_acl_items.h"
#include "embedded/store/exact_notes.h"
#include "notes/literals.h"

namespace lens {
namespace {

// So much is written in one transaction: more would only swell the journal.
constexpr qint64 kTurnBytes = 16 * 1024 * 1024;

class NsfCopying {
 public:
  NsfCopying(NsfDatabase& source, const QString& target, const NsfCopyProgress& tell)
      : source_(source),
        tell_(tell),
        database_(Database::create(target, infoOfNsf(source.properties()))),
        notes_(*database_),
        aclNote_(source.specialNote(noteclass::Acl)) {}

  NsfCopyCounts run() {
    begin();
    const qint64 all = source_.report().notesProven;
    qint64 done = 0;
    source_.forEachNote([&](NsfNote& note) {
      if (tell_) tell_(done++, all);
      take(note);
      return true;
    });
    for (const NsfStub& stub : source_.stubs()) take(stub);
    transaction_->commit();
    return counts_;
  }

 private:
  void begin() {
    transaction_.emplace(*database_);
    inTurn_ = 0;
  }

  void take(NsfNote& note) {
    if (isHidden(note)) {
      ++counts_.hidden;
      return;
    }
    Note copy = note.toNote();
    copy.header.parent = parentOf(note);
    if (note.header.id == aclNote_) addAccess(copy);
    if (notes_.add(copy))
      ++counts_.notes;
    else
      ++counts_.doubled;
    for (const Item& item : std::as_const(copy.items)) inTurn_ += item.value.size();
    if (inTurn_ < kTurnBytes) return;
    transaction_->commit();
    transaction_.reset();
    begin();
  }

  void take(const NsfStub& stub) {
    NoteHeader header;
    header.id = stub.id;
    header.unid = stub.unid;
    header.noteClass = stub.noteClass;
    header.sequence = stub.sequence;
    header.sequenceTime = stub.sequenceTime;
    header.created = readTimeDate(stub.unid.bytes().constData() + 8);
    header.modified = header.added = header.accessed = stub.deleted;
    if (notes_.addStub(header))
      ++counts_.stubs;
    else
      ++counts_.doubled;
  }

  // The list lies in an object of its own.
  void addAccess(Note& copy) {
    if (const std::optional<NsfAcl> acl = source_.acl()) addAclItems(*acl, copy);
  }

  // A ghost that is no profile stands for a parent that is not there.
  static bool isHidden(const NsfNote& note) {
    if (note.isSoftDeleted()) return true;
    return note.isGhost() && noteclass::base(note.header.noteClass) == noteclass::Document &&
           !isProfile(note.toNote());
  }

  // The item tells in every replica; the ID in the record only where the parent is here.
  Unid parentOf(const NsfNote& note) {
    for (const NsfItem& item : note.items)
      if (item.item.type() == itemtype::NoteRefs && sameItemName(item.item.name, u"$REF"))
        return StoredReferences(item.item.data()).first();
    return {};
  }

  NsfDatabase& source_;
  const NsfCopyProgress& tell_;
  std::shared_ptr<Database> database_;
  ExactNotes notes_;
  const NoteId aclNote_;
  std::optional<Database::Transaction> transaction_;
  qint64 inTurn_ = 0;
  NsfCopyCounts counts_;
};

}  // namespace

DatabaseInfo infoOfNsf(const NsfProperties& properties) {
  DatabaseInfo info;
  info.title = properties.title;
  info.replicaId = timeDateHex(properties.replicaId);
  info.templateName = properties.templateName;
  info.inheritsFrom = properties.inheritsFrom;
  info.categories = properties.categories;
  return info;
}

NsfCopyCounts copyNsf(NsfDatabase& source, const QString& target, const NsfCopyProgress& tell) {
  return NsfCopying(source, target, tell).run();
}

}  // namespace lens

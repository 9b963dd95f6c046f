#include "embedded/evaluation/store_database.h"

#include <algorithm>
#include <utility>

#include "embedded/design/design_elements.h"
#include "embedded/format/case_key.h"
#include "embedded/format/packed_note.h"
#include "embedded/format/profile_name.h"
#include "embedded/formula_context/evaluated_note.h"
#include "embedded/views/view_lookup.h"
#include "notes/literals.h"

namespace lens {
namespace {

using formula::Fault;
namespace fault = formula::fault;

// Sixteen digits with a colon between its halves.
QString shownReplicaId(const QString& id) {
  return id.size() == 16 ? id.left(8) + u':' + id.mid(8) : id;
}

bool looksLikeReplicaId(const QString& text) {
  return text.size() == 17 && text[8] == u':' && !text.contains(u'.') && !text.contains(u'/') &&
         !text.contains(u'\\');
}

// What the store cannot read is for the formula a value that cannot be computed.
template <class Read>
auto guarded(const Read& read) {
  try {
    return read();
  } catch (const RuntimeError&) {
    throw Fault{fault::CannotCompute};
  }
}

// A damaged note counts as none.
template <class Which>
bool readNote(const lens::Database& store, const Which& which, Note& note) {
  try {
    return store.notes().read(which, note);
  } catch (const RuntimeError&) {
    return false;
  }
}

}  // namespace

formula::DatabaseProperties StoreDatabase::properties() const {
  const DatabaseInfo info = guarded([&] { return store_->info(); });
  formula::DatabaseProperties properties;
  properties.server = place_.server;
  properties.path = place_.path;
  properties.title = info.title;
  properties.replicaId = shownReplicaId(info.replicaId);
  return properties;
}

bool StoreDatabase::documentItem(const Unid& unid, const formula::Name& name, formula::Value& value) const {
  Note note;
  if (!readNote(*store_, unid, note)) throw Fault{fault::NoDocument};
  return EvaluatedNote(note).item(name, value);
}

// What the store refuses (a file without write permission, a full disk) is for the formula a field that
// it may not write.
void StoreDatabase::write(Note& note, const QString& name, const formula::Value& value) {
  EvaluatedNote(&note, nullptr).setItem(name, value);
  try {
    store_->notes().save(note);
  } catch (const RuntimeError&) {
    throw Fault{fault::FieldsReadOnly};
  }
  workspace_.notifyChanged(place_);
}

void StoreDatabase::setDocumentItem(const Unid& unid, const QString& name, const formula::Value& value) {
  Note note;
  if (!readNote(*store_, unid, note)) throw Fault{fault::NoDocument};
  write(note, name, value);
}

// The places of all profiles are kept until the database changes, since a search asks for each document.
void StoreDatabase::findProfiles() const {
  const qint64 change = store_->versions().changeSequence();
  if (change == profilesOf_) return;
  profiles_.clear();
  store_->notes().scanPacked(noteclass::Document, [&](const PackedNote& candidate) {
    if (isProfile(candidate))
      profiles_.insert(caseKey(candidate.unpack().text(u"$Name")), candidate.header.id);
    return true;
  });
  profilesOf_ = change;
}

bool StoreDatabase::readProfile(const QString& profile, const QString& key, Note& note) const {
  guarded([&] { findProfiles(); });
  const NoteId id = profiles_.value(profileName(profile, key));
  return id && readNote(*store_, id, note);
}

bool StoreDatabase::profileItem(const QString& profile, const QString& key, const formula::Name& name,
                                formula::Value& value) const {
  Note note;
  return readProfile(profile, key, note) && EvaluatedNote(note).item(name, value);
}

void StoreDatabase::setProfileItem(const QString& profile, const QString& key, const QString& name,
                                   const formula::Value& value) {
  Note note;
  if (!readProfile(profile, key, note)) {
    note = Note();
    note.add(u"Form"_s, itemflag::Summary, textValue(profile));
    note.add(u"$Name"_s, itemflag::Summary, textValue(profileName(profile, key)));
  }
  write(note, name, value);
}

bool StoreDatabase::exists(const QString& server, const QString& path) const {
  try {
    if (looksLikeReplicaId(path)) return !workspace_.replicas(server, QString(path).remove(u':')).isEmpty();
    return Workspace::looksLikeDatabase(workspace_.absolutePath(workspace_.place(server, path)));
  } catch (const RuntimeError&) {
    return false;  // an unknown server, a path that leads outside, a file that cannot be read
  }
}

// A formula may look up a value for each of many documents: the view is looked for once, until its database
// changes.
ViewIndex& StoreDatabase::openView(const formula::ViewPlace& place) const {
  OpenView& view = views_[place.server + u'\n' + place.path + u'\n' + place.view];
  if (!view.store) {
    const QString server = place.server.isEmpty() && !place.path.isEmpty() ? place_.server : place.server;
    view.store = place.path.isEmpty() ? store_ : workspace_.database(server, place.path);
  }
  const qint64 change = view.store->versions().changeSequence();
  if (!view.index || view.change != change) {
    const NoteId note = findView(*view.store, place.view);
    if (note.isNull()) throw Fault{fault::CannotCompute};
    if (!view.index || view.index->design().noteId != note)
      view.index = std::make_shared<ViewIndex>(
          *view.store, note, [this] { return interrupted_ = interrupted_ || workspace_.isInterrupted(); });
    view.change = change;
  }
  try {
    view.index->refresh();
  } catch (const RuntimeError&) {
    // Who interrupts wants the formula that asked to end, not a value that cannot be computed.
    if (std::exchange(interrupted_, false)) throw Fault{fault::TooMuchTime, true};
    throw;
  }
  return *view.index;
}

formula::Value StoreDatabase::column(const formula::ViewPlace& place, int column) const {
  return guarded([&] {
    ViewIndex& view = openView(place);
    if (column > view.design().columns.size()) throw Fault{fault::OutOfBounds};
    return viewColumn(view, column - 1, workspace_.regional());
  });
}

bool StoreDatabase::lookup(const formula::ViewPlace& place, const Lookup& lookup,
                           formula::Value& value) const {
  return guarded([&] {
    ViewIndex& view = openView(place);
    if (lookup.column > view.design().columns.size()) throw Fault{fault::OutOfBounds};
    return viewLookup(view, lookup, workspace_.regional(), value);
  });
}

}  // namespace lens

#include "embedded/model/open_note.h"

#include <algorithm>

#include "embedded/format/case_key.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr quint16 kSetByForms = itemflag::Sign | itemflag::Seal | itemflag::Summary | itemflag::Protected;

void requireName(const OpenNote& open, const QString& name) {
  if (name.isEmpty())
    throw RuntimeError(err::InvalidCall, u"%1: an item needs a name"_s.arg(open.database->place.path));
}

[[noreturn]] void refuse(const OpenNote& open, const Item& item, const QString& reason) {
  throw RuntimeError(modelfault::ItemRefused, u"%1: the item \"%2\" %3 and cannot become a plain value"_s.arg(
                                                  open.database->place.path, item.name.left(64), reason));
}

void requireReplaceable(const OpenNote& open, const Item& item) {
  if (item.type() == itemtype::Object) refuse(open, item, u"holds an attachment"_s);
  if (item.type() == itemtype::NoteRefs) refuse(open, item, u"refers to other documents"_s);
}

}  // namespace

Database& requireStore(const OpenDatabase& database) {
  if (!database.store)
    throw RuntimeError(modelfault::DatabaseClosed,
                       u"%1: the database is not open"_s.arg(database.place.path));
  return *database.store;
}

bool readableNote(const Database& store, NoteId noteId, Note& note) {
  return readable([&] { return store.notes().read(noteId, note); });
}

void tellChanged(const OpenDatabase& database) {
  database.context->workspace->notifyChanged(database.place);
}

void removeNotes(const OpenDatabase& database, const QVector<NoteId>& notes) {
  Database& store = requireStore(database);
  {
    Database::Transaction transaction(store);
    for (const NoteId note : notes)
      if (note) store.notes().remove(note);
    transaction.commit();
  }
  tellChanged(database);
}

void OpenNote::requirePresent() const {
  if (removed)
    throw RuntimeError(modelfault::NoSuchDocument,
                       u"%1: document %2 was removed"_s.arg(database->place.path, note.header.id.hexText()));
}

void OpenNote::count() const {
  while (numbers_.size() < note.items.size()) numbers_.push_back(next_++);
}

quint32 OpenNote::numberAt(qsizetype place) const {
  count();
  return numbers_[place];
}

qsizetype OpenNote::placeOf(quint32 number) const {
  const auto found = std::lower_bound(numbers_.cbegin(), numbers_.cend(), number);
  return found != numbers_.cend() && *found == number ? found - numbers_.cbegin() : -1;
}

Item& OpenNote::item(quint32 number) {
  const qsizetype place = placeOf(number);
  if (place < 0)
    throw RuntimeError(modelfault::ItemRemoved,
                       u"%1: the item was removed from its document"_s.arg(database->place.path));
  return note.items[place];
}

QVector<FileObject> OpenNote::shownFiles(quint32 number) const {
  if (!shown_) shown_ = shownFilesOf(note);
  return shown_->value(placeOf(number));
}

void OpenNote::index() const {
  if (!names_.isEmpty()) return;
  count();
  for (qsizetype place = note.items.size() - 1; place >= 0; --place) {
    Named& named = names_[caseKey(note.items[place].name)];
    named.first = numbers_[place];
    ++named.count;
  }
}

const Item* OpenNote::find(const QString& name) const {
  constexpr qsizetype kManyItems = 32;
  if (name.isEmpty()) return nullptr;
  if (names_.isEmpty() && note.items.size() < kManyItems) return note.find(name);
  index();
  const auto found = names_.constFind(caseKey(name));
  return found == names_.cend() ? nullptr : &note.items[placeOf(found->first)];
}

quint32 OpenNote::add(Item item) {
  requireName(*this, item.name);
  index();
  shown_.reset();
  const quint32 number = next_++;
  Named& named = names_[caseKey(item.name)];
  if (named.count++ == 0) named.first = number;
  note.items.push_back(std::move(item));
  numbers_.push_back(number);
  return number;
}

quint32 OpenNote::replace(const QString& name, QByteArray value) {
  requireName(*this, name);
  index();
  const Named named = names_.value(caseKey(name));
  if (named.count == 0) return add({name, itemflag::Summary, std::move(value)});
  const qsizetype place = placeOf(named.first);
  const Item& present = std::as_const(note).items[place];
  if (named.count > 1) refuse(*this, present, u"is one of %1 of its name"_s.arg(named.count));
  requireReplaceable(*this, present);
  shown_.reset();
  Item& item = note.items[place];
  item.value = std::move(value);
  item.flags &= kSetByForms;
  return named.first;
}

void OpenNote::removeFirst(const QString& name) {
  if (!find(name)) return;
  index();
  const auto named = names_.find(caseKey(name));
  const qsizetype place = placeOf(named->first);
  shown_.reset();
  note.items.removeAt(place);
  numbers_.removeAt(place);
  if (--named->count == 0) {
    names_.erase(named);
    return;
  }
  // The next item of the name is the first one now.
  qsizetype next = place;
  while (!sameItemName(std::as_const(note).items[next].name, name)) ++next;
  named->first = numbers_[next];
}

}  // namespace lens

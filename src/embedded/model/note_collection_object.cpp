#include "embedded/model/note_collection_object.h"

#include <algorithm>
#include <utility>

#include "embedded/design/design_elements.h"
#include "embedded/evaluation/store_database.h"
#include "embedded/evaluation/workspace_environment.h"
#include "embedded/model/document_object.h"
#include "embedded/search/selection.h"
#include "notes/literals.h"

namespace lens {
namespace {

template <NoteKind kKind>
Value readSwitch(Dispatch& self, const Arguments&) {
  return static_cast<NoteCollectionObject&>(self).selects(kKind);
}

template <NoteKind kKind>
void writeSwitch(Dispatch& self, const Value& value) {
  static_cast<NoteCollectionObject&>(self).select(kKind, value.boolean());
}

template <size_t kRow>
Member switchRow() {
  constexpr NoteKind kind = NoteKind(kRow);
  return {noteKindTable()[kRow].property, 0, 0, readSwitch<kind>, writeSwitch<kind>};
}

template <size_t... kRows>
MemberTable withSwitches(const MemberTable& rest, std::index_sequence<kRows...>) {
  return {rest, {switchRow<kRows>()...}};
}

// A number is a moment as automation counts it: days since 1899-12-30.
DateTime momentOf(const Value& value, const QString& database) {
  if (value.kind() == Value::Kind::DateTime) return value.dateTime();
  constexpr double kMostDays = 2'958'465, kMillisecondsADay = 86'400'000;
  const double days = value.number();
  if (!(std::abs(days) <= kMostDays))
    throw RuntimeError(err::Overflow, u"%1: SINCETIME can be no moment %2 days from 1899-12-30"_s.arg(
                                          database, QString::number(days)));
  const QDateTime moment = QDate(1899, 12, 30).startOfDay().addMSecs(qint64(days * kMillisecondsADay));
  return {moment.date(), moment.time()};
}

}  // namespace

NoteCollectionObject::NoteCollectionObject(std::shared_ptr<OpenDatabase> database, bool selectAll)
    : database_(std::move(database)), kinds_(selectAll ? NoteKinds::all() : NoteKinds()) {}

const MemberTable& NoteCollectionObject::members() const {
  static const MemberTable rest{
      method<&NoteCollectionObject::selectAllNotes>(u"SELECTALLNOTES", 1, 1),
      property<&NoteCollectionObject::build>(u"BUILDCOLLECTION"),
      property<&NoteCollectionObject::count>(u"count"),
      property<&NoteCollectionObject::firstNoteId>(u"GETFIRSTNOTEID"),
      method<&NoteCollectionObject::nextNoteId>(u"GETNEXTNOTEID", 1, 1),
      {u"SELECTIONFORMULA", 0, 0, property<&NoteCollectionObject::selectionFormula>(u"").read,
       written<&NoteCollectionObject::setSelectionFormula>(u"").write},
      {u"SINCETIME", 0, 0, property<&NoteCollectionObject::sinceTime>(u"").read,
       written<&NoteCollectionObject::setSinceTime>(u"").write},
  };
  static const MemberTable table = withSwitches(rest, std::make_index_sequence<kNoteKinds>());
  return table;
}

Value NoteCollectionObject::selectAllNotes(const Arguments& arguments) {
  kinds_ = arguments[0].boolean() ? NoteKinds::all() : NoteKinds();
  return {};
}

Value NoteCollectionObject::selectionFormula() {
  return formula_;
}

void NoteCollectionObject::setSelectionFormula(const Value& value) {
  formula_ = value.text();
}

Value NoteCollectionObject::sinceTime() {
  return since_;
}

// Nothing and an empty value take the limit away.
void NoteCollectionObject::setSinceTime(const Value& value) {
  const bool none = value.isEmpty() || (value.kind() == Value::Kind::Object && !value.object());
  if (none) {
    since_ = {};
    sinceInstant_ = {};
    return;
  }
  const DateTime moment = momentOf(value, database_->place.path);
  since_ = moment;
  sinceInstant_ = QDateTime(moment.date, moment.time.isValid() ? moment.time : QTime(0, 0));
}

QVector<quint32> NoteCollectionObject::formulaDocuments() const {
  Workspace& workspace = *database_->context->workspace;
  WorkspaceEnvironment environment(workspace);
  StoreDatabase properties(workspace, database_->place, database_->store);
  const Database& store = *database_->store;
  return selectDocuments(store,
                         {searchFormula(store, formula_, environment), environment, &properties, {}, 0});
}

// The index does not tell the time of a note, so this is the one thing for which notes are read.
bool NoteCollectionObject::isRecent(quint32 noteId) const {
  Note note;
  return readableNote(*database_->store, noteId, note) && instantOf(note.header.modified) >= sinceInstant_;
}

Value NoteCollectionObject::build() {
  NoteKinds kinds = kinds_;
  QVector<quint32> selected;
  if (!formula_.isEmpty()) {
    kinds.set(NoteKind::Documents, false);
    selected = formulaDocuments();
  }
  const QVector<quint32> ofKinds = notesOfKinds(*database_->store, kinds);
  QVector<quint32> ids;
  ids.reserve(ofKinds.size() + selected.size());
  std::merge(ofKinds.begin(), ofKinds.end(), selected.begin(), selected.end(), std::back_inserter(ids));
  if (sinceInstant_.isValid()) ids.removeIf([this](quint32 id) { return !isRecent(id); });
  noteIds_ = std::move(ids);
  return {};
}

Value NoteCollectionObject::count() {
  return Value(qint64(noteIds_.size()));
}

// The end of the list is an empty text.
Value NoteCollectionObject::idAt(qsizetype place) const {
  return place < noteIds_.size() ? QString::number(noteIds_[place], 16).toUpper() : QString();
}

Value NoteCollectionObject::firstNoteId() {
  return idAt(0);
}

// What is no ID of the list ends the walk.
Value NoteCollectionObject::nextNoteId(const Arguments& arguments) {
  bool isNumber = false;
  const quint32 id = arguments[0].text().toUInt(&isNumber, 16);
  const auto found = std::lower_bound(noteIds_.cbegin(), noteIds_.cend(), id);
  if (!isNumber || found == noteIds_.cend() || *found != id) return QString();
  return idAt(found - noteIds_.cbegin() + 1);
}

}  // namespace lens

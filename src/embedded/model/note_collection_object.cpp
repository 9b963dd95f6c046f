#include "embedded/model/note_collection_object.h"

#include <algorithm>
#include <utility>

#include "embedded/design/design_elements.h"
#include "embedded/evaluation/store_database.h"
#include "embedded/evaluation/workspace_environment.h"
#include "embedded/model/open_note.h"
#include "embedded/search/selection.h"
#include "notes/literals.h"

namespace lens {
namespace {

template <size_t... kRows>
Members kindSwitches(std::index_sequence<kRows...>) {
  return {{noteKindTable()[kRows].property,
           [](NoteCollectionObject& self) { return self.selects(NoteKind(kRows)); },
           [](NoteCollectionObject& self, bool on) { self.select(NoteKind(kRows), on); }}...};
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

// Nothing and an empty value take the limit away.
void NoteCollectionObject::setSince(const Value& value) {
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

QVector<NoteId> NoteCollectionObject::formulaDocuments() const {
  Workspace& workspace = *database_->context->workspace;
  WorkspaceEnvironment environment(workspace);
  StoreDatabase properties(workspace, database_->place, database_->store);
  const Database& store = *database_->store;
  return selectDocuments(store,
                         {searchFormula(store, formula_, environment), environment, &properties, {}, 0});
}

// The index does not tell the time of a note, so this is the one thing for which notes are read.
bool NoteCollectionObject::isRecent(NoteId noteId) const {
  Note note;
  return readableNote(*database_->store, noteId, note) && instantOf(note.header.modified) >= sinceInstant_;
}

void NoteCollectionObject::build() {
  NoteKinds kinds = kinds_;
  QVector<NoteId> selected;
  if (!formula_.isEmpty()) {
    kinds.set(NoteKind::Documents, false);
    selected = formulaDocuments();
  }
  const QVector<NoteId> ofKinds = notesOfKinds(*database_->store, kinds);
  QVector<NoteId> ids;
  ids.reserve(ofKinds.size() + selected.size());
  std::merge(ofKinds.begin(), ofKinds.end(), selected.begin(), selected.end(), std::back_inserter(ids));
  if (sinceInstant_.isValid()) ids.removeIf([this](NoteId id) { return !isRecent(id); });
  noteIds_ = std::move(ids);
}

// The end of the list is an empty text.
QString NoteCollectionObject::idAt(qsizetype place) const {
  return place < noteIds_.size() ? noteIds_[place].hexText() : QString();
}

const MemberTable& NoteCollectionObject::members() const {
  static const MemberTable table{
      Members{
          {u"SELECTALLNOTES",
           [](NoteCollectionObject& self, bool on) { self.kinds_ = on ? NoteKinds::all() : NoteKinds(); }},
          {u"SELECTIONFORMULA", [](NoteCollectionObject& self) { return self.formula_; },
           [](NoteCollectionObject& self, const QString& formula) { self.formula_ = formula; }},
          {u"SINCETIME", [](NoteCollectionObject& self) { return self.since_; },
           [](NoteCollectionObject& self, const Value& moment) { self.setSince(moment); }},
          {u"BUILDCOLLECTION", [](NoteCollectionObject& self) { self.build(); }},
          {u"count", [](NoteCollectionObject& self) { return qint64(self.noteIds_.size()); }},
          {u"GETFIRSTNOTEID", [](NoteCollectionObject& self) { return self.idAt(0); }},
          // What is no ID of the list ends the walk.
          {u"GETNEXTNOTEID",
           [](NoteCollectionObject& self, const QString& text) {
             bool isNumber = false;
             const NoteId id(text.toUInt(&isNumber, 16));
             const QVector<NoteId>& ids = self.noteIds_;
             const auto found = std::lower_bound(ids.cbegin(), ids.cend(), id);
             if (!isNumber || found == ids.cend() || *found != id) return QString();
             return self.idAt(found - ids.cbegin() + 1);
           }},
      },
      kindSwitches(std::make_index_sequence<kNoteKinds>())};
  return table;
}

}  // namespace lens

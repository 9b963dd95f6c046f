#include "embedded/views/view_index.h"

#include <QSet>
#include <QUuid>
#include <cstring>

#include "embedded/store/paced_transaction.h"
#include "embedded/views/folder_documents.h"
#include "notes/literals.h"

namespace lens {
namespace {

// From so many changes on, and with a quarter of all documents changed, one scan is faster.
constexpr qsizetype kManyChanges = 2000;
// How long to wait for others that write before the index is made for this connection only.
constexpr int kWaitMs = 250;

// Somebody else keeps the file locked, or there is no room: what is there can be read all the same.
bool cannotWrite(const RuntimeError& error) {
  return error.number() == enginefault::NotSaved || error.number() == err::PermissionDenied;
}

// A transaction that writes to tables of this connection only: it asks for no right to write to the file.
class TemporaryTransaction {
 public:
  explicit TemporaryTransaction(Database& database) : connection_(database.connection()) {
    connection_.execute("SAVEPOINT view_index", enginefault::NotSaved);
  }
  ~TemporaryTransaction() {
    if (open_)
      sqlite3_exec(connection_.handle(), "ROLLBACK TO view_index; RELEASE view_index", nullptr, nullptr,
                   nullptr);
  }
  TemporaryTransaction(const TemporaryTransaction&) = delete;
  TemporaryTransaction& operator=(const TemporaryTransaction&) = delete;
  void commit() {
    connection_.execute("RELEASE view_index", enginefault::NotSaved);
    open_ = false;
  }

 private:
  Connection& connection_;
  bool open_ = true;
};

}  // namespace

ViewIndex::ViewIndex(Database& database, NoteId view, Interrupted interrupted, UnreadableSelection unreadable)
    : database_(database),
      view_(view),
      tables_(database),
      readOnly_(sqlite3_db_readonly(database.handle(), "main") == 1),
      unreadable_(unreadable) {
  environment_.asked = std::move(interrupted);
  readDesign();
}

ViewIndex::~ViewIndex() = default;

void ViewIndex::readDesign() {
  const qint64 change = database_.versions().changeSequence();
  if (change == designOf_) return;
  Note note;
  if (!database_.notes().read(view_, note) || noteclass::base(note.header.noteClass) != noteclass::View)
    throw RuntimeError(enginefault::UnknownNote, u"%1: there is no view %2 (it may have been deleted)"_s.arg(
                                                     database_.path(), view_.hexText()));
  ViewDesign design = readViewDesign(note);
  design.database = database_.path();
  if (design.hiddenSelection && unreadable_ == UnreadableSelection::Raises)
    raiseHiddenSelection(database_.path(), design);
  // In a tree an answer to what is not there would be missing.
  if (design.hiddenSelection) design.hierarchy = false;
  if (!rows_ || design.digest != design_.digest) rows_ = makeRows(design);
  design_ = std::move(design);
  designOf_ = change;
}

std::unique_ptr<DocumentRows> ViewIndex::makeRows(const ViewDesign& design) {
  try {
    return std::make_unique<DocumentRows>(design, environment_);
  } catch (const RuntimeError& error) {
    throw RuntimeError(error.number(),
                       u"%1: the view \"%2\": %3"_s.arg(database_.path(), design.title, error.description()));
  }
}

IndexHead ViewIndex::wanted() {
  return {design_.digest, database_.versions().changeSequence(), rows_->moment(),
          design_.folder ? folderChange(database_, design_.unid) : 0};
}

bool ViewIndex::isFresh() {
  IndexHead head;
  return tables_.exist() && tables_.readHead(view_, head) && head == wanted();
}

void ViewIndex::refresh() {
  readDesign();
  if (isFresh()) return;
  if (!readOnly_) {
    try {
      return refreshInFile();
    } catch (const RuntimeError& error) {
      if (!cannotWrite(error)) throw;
    }
  }
  refreshForConnection();
}

// What others changed during a pause is brought in by another round.
void ViewIndex::refreshInFile() {
  PacedTransaction transaction(database_, kWaitMs);
  tables_.dropTemporary();
  tables_.create(false);
  bool othersWrote = true;
  while (std::exchange(othersWrote, false))
    bringUpToDate([&] {
      if (!transaction.pause()) return false;
      othersWrote = true;
      return true;
    });
  transaction.commit();
}

void ViewIndex::refreshForConnection() {
  TemporaryTransaction transaction(database_);
  tables_.create(true);
  bringUpToDate([] { return false; });
  transaction.commit();
}

void ViewIndex::bringUpToDate(const ViewBuilder::Pause& pause) {
  designOf_ = -1;  // what was read in a transaction that was undone counts for nothing
  readDesign();
  const IndexHead goal = wanted();
  IndexHead head;
  const bool known = tables_.readHead(view_, head);
  if (known && head == goal) return;
  if (known && head.digest == goal.digest && head.moment == goal.moment && head.change <= goal.change)
    catchUp(head, goal, pause);
  else
    makeAnew(goal, pause);
}

void ViewIndex::makeAnew(const IndexHead& goal, const ViewBuilder::Pause& pause) {
  IndexHead unfinished = goal;
  unfinished.digest = QUuid::createUuid().toRfc4122();
  tables_.writeHead(view_, unfinished, 0);
  ViewBuilder builder(database_, design_, *rows_, tables_);
  builder.rebuild([&] {
    if (environment_.interrupted()) rows_->raiseTooMuchTime();
    if (!pause()) return false;
    IndexHead head;
    if (!tables_.readHead(view_, head) || head != unfinished)
      throw RuntimeError(enginefault::NotSaved,
                         u"%1: the index of the view \"%2\" is being made by somebody else"_s.arg(
                             database_.path(), design_.title));
    return true;
  });
  tables_.writeHead(view_, goal, builder.growth());
}

void ViewIndex::catchUp(const IndexHead& from, const IndexHead& goal, const ViewBuilder::Pause& pause) {
  QVector<NoteId> changed;
  for (const NoteChange& change : database_.versions().changesSince(from.change))
    changed.push_back(change.id);
  if (design_.folder) {
    const QSet<NoteId> known(changed.begin(), changed.end());
    for (const NoteId note : folderChangesSince(database_, design_.unid, from.folderChange))
      if (!known.contains(note)) changed.push_back(note);
  }
  if (changed.size() > kManyChanges && changed.size() > database_.notes().noteCount(design_.noteClass) / 4)
    return makeAnew(goal, pause);
  ViewBuilder builder(database_, design_, *rows_, tables_);
  builder.update(changed);
  tables_.writeHead(view_, goal, tables_.rowCount(view_) + builder.growth());
}

// --- Reading -------------------------------------------------------------------------------------------

// Categories are told from the keys: one begins where a row does not share the key's beginning with the row
// before it.
template <class Category, class Document>
void ViewIndex::walk(const Category& category, const Document& document) {
  QByteArray before;
  std::vector<PackedCategory> categories;
  tables_.eachRow(view_, {}, [&](QByteArrayView key, int level, QByteArrayView packed) {
    if (key.size() < 4) return true;
    readCategories(packed, categories);
    bool shared = true;
    for (std::size_t i = 0; i < categories.size(); ++i) {
      const qsizetype end = qMin<qsizetype>(categories[i].end, key.size());
      shared =
          shared && before.size() >= end && std::memcmp(before.constData(), key.data(), size_t(end)) == 0;
      if (!shared) category(int(i), categories[i]);
    }
    if (!categories.empty()) before = key.toByteArray();
    document(key, level, int(categories.size()));
    return true;
  });
}

QVector<NoteId> ViewIndex::notes() {
  QVector<NoteId> notes;
  walk([&](int, const PackedCategory&) { notes.push_back(NoteId()); },
       [&](QByteArrayView key, int, int) { notes.push_back(noteIdOf(key)); });
  return notes;
}

qint64 ViewIndex::count() {
  return design_.categorized() ? notes().size() : tables_.rowCount(view_);
}

QVector<ViewLine> ViewIndex::lines() {
  QVector<ViewLine> lines;
  walk(
      [&](int level, const PackedCategory& category) {
        lines.push_back({{}, level, category.column, shownValue(category.shown), {}});
      },
      [&](QByteArrayView key, int level, int above) {
        lines.push_back({noteIdOf(key), above + level, 0, {}, key.toByteArray()});
      });
  return lines;
}

QVector<NoteId> ViewIndex::documents() {
  QVector<NoteId> documents;
  QSet<NoteId> known;
  tables_.eachRow(view_, {}, [&](QByteArrayView key, int, QByteArrayView) {
    const NoteId note = noteIdOf(key);
    const qsizetype before = known.size();
    known.insert(note);
    if (known.size() > before) documents.push_back(note);
    return true;
  });
  return documents;
}

}  // namespace lens

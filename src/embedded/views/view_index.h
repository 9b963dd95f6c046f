// A view's index: its rows in their order, kept in the database from one use to the next.
//
// It is brought up to date from the changes of the database since the last time; a new design, a machine with
// another zone or region, or very many changes make it anew. An index whose formulas ask for the day is made
// anew when the day is another one, and for the time (@Now) when the minute is. Profiles are in no view, and
// documents that cannot be read drop out. Where the file cannot be written, the index lives as long as the
// connection; where it only could not be written just then, no longer than until it can be.
//
// While an index is made, others may write to the database: what they change is brought in afterwards. Until
// it is whole its head names who makes it, so that nobody takes it for finished; who needs it meanwhile, or
// finds it left by somebody who died, begins again.
#pragma once

#include <functional>
#include <memory>

#include "embedded/views/document_rows.h"
#include "embedded/views/index_tables.h"
#include "embedded/views/view_builder.h"

namespace lens {

// What stands in a view: a category or a document.
struct ViewLine {
  NoteId note;     // null: a category
  int level = 0;   // of categories among themselves, of responses below documents
  int column = 0;  // of a category: the column that it stands in
  formula::Value category;
  QByteArray key;  // of a document's row
};

// What a view is whose selection nobody can read. All documents, without a tree, are only for those who show
// them with the mark that they are not the view's.
enum class UnreadableSelection { Raises, TakesAll };

class ViewIndex {
 public:
  using Interrupted = std::function<bool()>;
  // The database must outlive this; it may be one whose file cannot be written. Raises UnknownNote when there
  // is no such view. Where the user may
  // interrupt, a refresh asks and raises kFormulaError, as for a formula that takes too much time.
  ViewIndex(Database& database, NoteId view, Interrupted interrupted = {},
            UnreadableSelection unreadable = UnreadableSelection::Raises);
  ~ViewIndex();

  const ViewDesign& design() const { return design_; }
  const Database& database() const { return database_; }
  DocumentRows& rows() { return *rows_; }
  IndexTables& tables() { return tables_; }

  // The design may have changed too. Raises UnknownNote when the view has gone.
  void refresh();

  // As of the last refresh. The note of each line, 0 for a category.
  QVector<NoteId> notes();
  qint64 count();
  QVector<ViewLine> lines();
  // Documents in view order; one that stands in several places at its first.
  QVector<NoteId> documents();

 private:
  template <class Category, class Document>
  void walk(const Category& category, const Document& document);
  void readDesign();
  std::unique_ptr<DocumentRows> makeRows(const ViewDesign& design);
  IndexHead wanted();
  bool isFresh();
  void refreshInFile();
  void refreshForConnection();
  void bringUpToDate(const ViewBuilder::Pause& pause);
  void makeAnew(const IndexHead& goal, const ViewBuilder::Pause& pause);
  void catchUp(const IndexHead& from, const IndexHead& goal, const ViewBuilder::Pause& pause);

  Database& database_;
  const NoteId view_;
  struct Environment : formula::MachineEnvironment {
    bool interrupted() override { return asked && asked(); }
    Interrupted asked;
  };
  Environment environment_;
  ViewDesign design_;
  qint64 designOf_ = -1;  // the change of the database that it was read at
  std::unique_ptr<DocumentRows> rows_;
  IndexTables tables_;
  const bool readOnly_;
  const UnreadableSelection unreadable_;
};

}  // namespace lens

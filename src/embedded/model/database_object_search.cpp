// Documents of a database by formula and by words.
#include "embedded/evaluation/store_database.h"
#include "embedded/evaluation/workspace_environment.h"
#include "embedded/model/database_object.h"
#include "embedded/model/document_collection_object.h"
#include "embedded/search/full_text.h"
#include "embedded/search/selection.h"
#include "notes/numbers.h"

namespace lens {

// Formula, the moment from which on documents count (nothing: all), and how many at most (0: all).
Value DatabaseObject::search(const Arguments& arguments) {
  const Database& notes = store();
  Workspace& workspace = *database_->context->workspace;
  WorkspaceEnvironment environment(workspace);
  StoreDatabase properties(workspace, database_->place, database_->store);
  SelectionRequest request{
      searchFormula(notes, arguments[0].text(), environment), environment, &properties, {}, 0};
  if (arguments[1].kind() == Value::Kind::DateTime) {
    const DateTime& since = arguments[1].dateTime();
    request.since = QDateTime(since.date, since.time.isValid() ? since.time : QTime(0, 0));
  }
  request.most = qMax<qsizetype>(0, roundToInt32(arguments[2].number()));
  return newObject<DocumentCollectionObject>(database_, selectDocuments(notes, request));
}

// Query and how many documents at most (0: all), best match first.
Value DatabaseObject::fullTextSearch(const Arguments& arguments) {
  const qsizetype most = qMax<qsizetype>(0, roundToInt32(arguments[1].number()));
  return newObject<DocumentCollectionObject>(database_,
                                             lens::fullTextSearch(store(), arguments[0].text(), most));
}

Value DatabaseObject::isIndexed() {
  return hasFullTextIndex(store());
}

}  // namespace lens

// Documents of a database by formula and by words.
#include "embedded/evaluation/store_database.h"
#include "embedded/evaluation/workspace_environment.h"
#include "embedded/model/database_object.h"
#include "embedded/model/document_collection_object.h"
#include "embedded/search/full_text.h"
#include "embedded/search/selection.h"
#include "notes/numbers.h"

namespace lens {

Members DatabaseObject::searchMembers() {
  return {
      // Formula, the moment from which on documents count (nothing: all), and how many at most (0: all).
      {u"SEARCH",
       [](DatabaseObject& self, const Value& formula, const Value& since, const Value& most) {
         const Database& notes = self.store();
         const OpenDatabase& database = *self.database_;
         WorkspaceEnvironment environment(*database.context->workspace);
         StoreDatabase properties(*database.context->workspace, database.place, database.store);
         SelectionRequest request{
             searchFormula(notes, formula.text(), environment), environment, &properties, {}, 0};
         if (since.kind() == Value::Kind::DateTime) {
           const DateTime& moment = since.dateTime();
           request.since = QDateTime(moment.date, moment.time.isValid() ? moment.time : QTime(0, 0));
         }
         request.most = qMax<qsizetype>(0, roundToInt32(most.number()));
         return newObject<DocumentCollectionObject>(self.database_, selectDocuments(notes, request));
       }},
      // Query and how many documents at most (0: all), best match first.
      {u"FTSEARCH",
       [](DatabaseObject& self, const Value& query, qint32 most) {
         return newObject<DocumentCollectionObject>(
             self.database_, fullTextSearch(self.store(), query.text(), qMax<qsizetype>(0, most)));
       }},
      {u"isIndexed", [](DatabaseObject& self) { return hasFullTextIndex(self.store()); }},
  };
}

}  // namespace lens

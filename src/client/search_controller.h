// Searching the open database by its full-text index: the search box, what it finds, and the marks on the
// hits in a document that is opened from there.
#pragma once

#include <QObject>
#include <QString>

namespace lens {

class DatabaseController;
class DocumentPane;
class IndexController;
class ViewPane;
struct ClientControls;

class SearchController : public QObject {
  Q_OBJECT

 public:
  SearchController(ClientControls& controls, DatabaseController& databases, ViewPane& views,
                   DocumentPane& document, IndexController& index);

  // Shows the documents that the query finds, best match first; an empty one takes the last result away. What
  // is wrong with the query is told in the window. Without an index the user is asked whether to make one.
  // Returns when it is over; events go on meanwhile.
  void search(const QString& query);

 private:
  bool isIndexed();
  void markHits();

  ClientControls& controls_;
  DatabaseController& databases_;
  ViewPane& views_;
  IndexController& index_;
};

}  // namespace lens

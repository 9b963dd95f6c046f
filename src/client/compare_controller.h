// Comparing from the client window: the open database with another one, or two marked documents.
#pragma once

#include <QObject>
#include <memory>

#include "client/compare_window.h"

namespace lens {

class DatabaseController;
class DocumentPane;
class ListExport;
class ViewPane;
struct ClientControls;

class CompareController : public QObject {
  Q_OBJECT

 public:
  // Adds its commands to the menus.
  CompareController(ClientControls& controls, std::shared_ptr<Workspace> workspace,
                    DatabaseController& databases, DocumentPane& document, const ViewPane& views,
                    ListExport& lists);

 private:
  CompareWindow& window();
  void offerDatabases();
  void compareMarked();
  void compareChosen();
  void compare(const CompareWindow::Side& first, const CompareWindow::Side& second);
  void exportCsv(QAbstractItemView& list);

  ClientControls& controls_;
  std::shared_ptr<Workspace> workspace_;
  DatabaseController& databases_;
  DocumentPane& document_;
  const ViewPane& views_;
  ListExport& lists_;
  CompareWindow* window_ = nullptr;  // made when it is first asked for
};

}  // namespace lens

// What is seen in the client window, for other programs: a list as CSV or as a table on the clipboard,
// documents as JSON.
#pragma once

#include <QAction>
#include <QIODevice>
#include <QObject>
#include <QPointer>
#include <functional>

#include "embedded/workspace/workspace.h"

class QAbstractItemView;

namespace lens {

class DatabaseController;
class ViewPane;
struct ClientControls;

class ListExport : public QObject {
  Q_OBJECT

 public:
  // Adds its commands to the menus.
  ListExport(ClientControls& controls, std::shared_ptr<Workspace> workspace,
             const DatabaseController& databases, const ViewPane& views);

  // The list that the keyboard was in last among those that are shown; null where none is.
  QAbstractItemView* currentList() const;

  // Each writes a file whole or not at all and returns when it is over; events go on meanwhile. Refused while
  // other such work runs; failures are told in the window.
  void exportCsv(QAbstractItemView& list, const QString& path);
  // The open document, or the marked ones: a line for each, as docs/command.schema.json describes documents.
  void exportJson(const QString& path);
  // The marked rows, or all where none is marked.
  void copyTable(const QAbstractItemView& list);

 private:
  QAction* add(QMenu& menu, QAction* behind, const QString& name, const QString& text, const QString& tip);
  void askCsv();
  void askJson();
  QVector<NoteId> documents() const;
  QString suggestion(const QString& suffix) const;
  bool run(const QString& path, const std::function<bool(QIODevice&)>& write);

  ClientControls& controls_;
  std::shared_ptr<Workspace> workspace_;
  const DatabaseController& databases_;
  const ViewPane& views_;
  QPointer<QAbstractItemView> last_;
};

}  // namespace lens

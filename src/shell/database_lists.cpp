#include "shell/database_lists.h"

#include "notes/literals.h"
#include "shell/exact_texts.h"

namespace lens {

QString namedServer(const QString& text) {
  return text == u"Local" ? QString() : text;
}

void DatabaseLists::registerList(const QString& list, const QString& window, ListBox& box, Filter filter) {
  targets_[{list, window}] = {&box, std::move(filter)};
}

void DatabaseLists::GetDbs(const QString& server, const QString& list, const QString& window) {
  host_.setPointer(pointer::Hourglass);
  try {
    const Target target = targets_.value({list, window});
    if (target.box) target.box->clear();
    state_.gServer = namedServer(server);
    if (!state_.gSession.isNothing()) walk(target);
  } catch (const RuntimeError& error) {
    host_.messageBox(error.description() + exact::kInLine, box::Critical, u"Program Error in: GetDbs"_s);
  }
  host_.setPointer(pointer::Default);
}

void DatabaseLists::walk(const Target& target) {
  const NotesDbDirectory directory = state_.gSession.dbDirectory(state_.gServer);
  NotesDatabase database = directory.firstDatabase(NotesDbDirectory::kDatabasesAndTemplates);
  for (; database; database = directory.nextDatabase())
    if (target.box && (!target.filter || target.filter(database))) target.box->addItem(database.filePath());
}

}  // namespace lens

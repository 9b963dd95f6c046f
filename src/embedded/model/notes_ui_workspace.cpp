#include "embedded/model/notes_ui_workspace.h"

#include "embedded/model/notes_database.h"
#include "embedded/model/notes_ui_document.h"

namespace lens {

const MemberTable& NotesUiWorkspace::members() const {
  static const MemberTable table{
      property<&NotesUiWorkspace::currentDocument>(u"CURRENTDOCUMENT"),
      property<&NotesUiWorkspace::currentDatabase>(u"CURRENTDATABASE"),
      property<&NotesUiWorkspace::refreshView>(u"VIEWREFRESH"),
      method<&NotesUiWorkspace::openDatabase>(u"OPENDATABASE", 2, 2),
  };
  return table;
}

Value NotesUiWorkspace::currentDocument() {
  const ClientState& client = context_->workspace->client();
  if (client.document() == 0) return nothing();
  return newObject<NotesUiDocument>(context_, *client.database(), client.document());
}

Value NotesUiWorkspace::currentDatabase() {
  const DatabasePlace* top = context_->workspace->client().database();
  if (!top) return nothing();
  return NotesDatabase::open(context_, *top, NotesDatabase::Source::ClientWindow);
}

Value NotesUiWorkspace::openDatabase(const Arguments& arguments) {
  Workspace& workspace = *context_->workspace;
  const DatabasePlace place = workspace.place(arguments[0].text(), arguments[1].text());
  workspace.database(place.server, place.path);  // raises where it cannot be opened
  workspace.client().showDatabase(place);
  return {};
}

Value NotesUiWorkspace::refreshView() {
  context_->workspace->client().refreshView();
  return {};
}

}  // namespace lens

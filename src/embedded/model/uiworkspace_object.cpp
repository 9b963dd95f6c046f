#include "embedded/model/uiworkspace_object.h"

#include "embedded/model/database_object.h"
#include "embedded/model/uidocument_object.h"

namespace lens {

const MemberTable& UiWorkspaceObject::members() const {
  static const MemberTable table{
      property<&UiWorkspaceObject::currentDocument>(u"CURRENTDOCUMENT"),
      property<&UiWorkspaceObject::currentDatabase>(u"CURRENTDATABASE"),
      property<&UiWorkspaceObject::refreshView>(u"VIEWREFRESH"),
      method<&UiWorkspaceObject::openDatabase>(u"OPENDATABASE", 2, 2),
  };
  return table;
}

Value UiWorkspaceObject::currentDocument() {
  const ClientState& client = context_->workspace->client();
  if (client.document() == 0) return nothing();
  return newObject<UiDocumentObject>(context_, *client.database(), client.document());
}

Value UiWorkspaceObject::currentDatabase() {
  const DatabasePlace* top = context_->workspace->client().database();
  if (!top) return nothing();
  return DatabaseObject::open(context_, *top, DatabaseObject::Source::ClientWindow);
}

Value UiWorkspaceObject::openDatabase(const Arguments& arguments) {
  Workspace& workspace = *context_->workspace;
  const DatabasePlace place = workspace.place(arguments[0].text(), arguments[1].text());
  workspace.database(place.server, place.path);  // raises where it cannot be opened
  workspace.client().showDatabase(place);
  return {};
}

Value UiWorkspaceObject::refreshView() {
  context_->workspace->client().refreshView();
  return {};
}

}  // namespace lens

#include "embedded/model/uiworkspace_object.h"

#include "embedded/model/database_object.h"
#include "embedded/model/uidocument_object.h"

namespace lens {

const MemberTable& UiWorkspaceObject::members() const {
  static const MemberTable table{Members{
      {u"CURRENTDOCUMENT",
       [](UiWorkspaceObject& self) {
         const ClientState& client = self.context_->workspace->client();
         if (client.document().isNull()) return nothing();
         return newObject<UiDocumentObject>(self.context_, *client.database(), client.document());
       }},
      {u"CURRENTDATABASE",
       [](UiWorkspaceObject& self) {
         const DatabasePlace* top = self.context_->workspace->client().database();
         if (!top) return nothing();
         return DatabaseObject::open(self.context_, *top, DatabaseObject::Source::ClientWindow);
       }},
      {u"VIEWREFRESH", [](UiWorkspaceObject& self) { self.context_->workspace->client().refreshView(); }},
      {u"OPENDATABASE",
       [](UiWorkspaceObject& self, const QString& server, const QString& path) {
         Workspace& workspace = *self.context_->workspace;
         const DatabasePlace place = workspace.place(server, path);
         workspace.database(place.server, place.path);  // raises where it cannot be opened
         workspace.client().showDatabase(place);
       }},
  }};
  return table;
}

}  // namespace lens

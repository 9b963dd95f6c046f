// The embedded side of the object model's door.
#pragma once

#include <memory>

#include "notes/bridge.h"

namespace lens {

class Workspace;
struct ModelContext;

// Makes "Notes.NotesSession", "Lotus.NotesSession" and "Notes.NotesUIWorkSpace" on a workspace.
// Objects that it made may outlive it.
class EmbeddedGateway : public Gateway {
 public:
  explicit EmbeddedGateway(std::shared_ptr<Workspace> workspace);
  ~EmbeddedGateway() override;
  Object create(const QString& classId) override;

 private:
  std::shared_ptr<ModelContext> context_;
};

}  // namespace lens

// What the user does about a workspace that cannot be opened. A test answers in the user's place.
#pragma once

#include <QString>

namespace lens {

class WorkspaceChoice {
 public:
  virtual ~WorkspaceChoice() = default;
  // Another directory to be opened, or to be made where there is none; "" to go on without a workspace.
  virtual QString another(const QString& directory, const QString& failure) = 0;
};

// Asks with the desktop's dialogs.
class DesktopWorkspaceChoice : public WorkspaceChoice {
 public:
  QString another(const QString& directory, const QString& failure) override;
};

}  // namespace lens

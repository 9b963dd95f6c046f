// The machine as formulas of a workspace see it: the user and settings of notes.ini, the system's clock,
// zone and region.
#pragma once

#include "embedded/formula/evaluation_context.h"
#include "embedded/workspace/workspace.h"

namespace lens {

class WorkspaceEnvironment : public formula::MachineEnvironment {
 public:
  // The workspace must outlive this.
  explicit WorkspaceEnvironment(Workspace& workspace) : workspace_(workspace) {}

  QString userName() const override { return workspace_.userName(); }
  QString iniValue(const QString& name) const override { return workspace_.iniValue(name); }
  // A name that could break the file, or a file that cannot be written: a Fault (SideEffect).
  void setIniValue(const QString& name, const QString& value) override;
  QString iniPath() const override;
  // "server!!path", or the path alone for a book of this machine.
  QStringList addressBooks() const override;
  QString language() const override;
  bool interrupted() override { return workspace_.isInterrupted(); }

 private:
  Workspace& workspace_;
};

}  // namespace lens

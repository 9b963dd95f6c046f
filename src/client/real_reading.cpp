#include "client/real_reading.h"

#include <QPointer>
#include <optional>

#include "client/background_task.h"
#include "client/client_controls.h"

namespace lens {

bool readBeforeOpening(ClientControls& controls, const Workspace& workspace, const DatabasePlace& place) {
  const QString file = workspace.absolutePath(place);
  const RealDatabases reading(workspace.directory());
  if (!RealDatabases::isReal(file) || reading.isRead(file)) return true;
  if (controls.refuseWhileBusy()) return false;
  controls.clearError();
  controls.workBar->begin(WorkBar::Work::Read);
  const QPointer<WorkBar> bar(controls.workBar);
  bool finished = false;
  std::optional<RuntimeError> failure;
  runInBackground(bar, [&](TaskProgress& progress) {
    try {
      finished = reading.read(file, [&](qint64 done, qint64 all) { return progress.go(file, done, all); });
    } catch (const RuntimeError& error) {
      failure = error;
    }
  });
  if (!bar) return false;  // destroyed by what ran meanwhile
  bar->finish();
  if (failure) throw RuntimeError(*failure);
  if (!finished)
    controls.statusBar->showMessage(QObject::tr("The reading was cancelled; nothing of it is kept"));
  return finished;
}

}  // namespace lens

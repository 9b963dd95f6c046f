// What was found in a real database while it was read: the user is warned of what is missing, and can read
// and save the whole report.
#pragma once

#include <QObject>
#include <memory>

#include "embedded/workspace/real_databases.h"

namespace lens {

class DatabaseController;
struct ClientControls;

class RealReport : public QObject {
  Q_OBJECT

 public:
  RealReport(ClientControls& controls, DatabaseController& databases);

 private:
  void offer();
  void show();
  void save(const RealDatabase& real);

  ClientControls& controls_;
  DatabaseController& databases_;
  std::weak_ptr<Database> shown_;  // of which the user was warned, or did not have to be
};

}  // namespace lens

// Making the full-text index of the open database in the client window.
#pragma once

#include <QObject>

namespace lens {

class DatabaseController;
struct ClientControls;

class IndexController : public QObject {
  Q_OBJECT

 public:
  IndexController(ClientControls& controls, DatabaseController& databases);

  // Makes the index of the open database, or brings it up to date, and tells how it went. Returns when it is
  // over; events go on meanwhile. Refused while other such work runs.
  void makeIndex();

 private:
  void offer();

  ClientControls& controls_;
  DatabaseController& databases_;
};

}  // namespace lens

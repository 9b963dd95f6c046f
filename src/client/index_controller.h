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

 private:
  void offer();
  void makeIndex();

  ClientControls& controls_;
  DatabaseController& databases_;
};

}  // namespace lens

// A client's window that counts how often it was told of new databases.
#pragma once

#include "embedded/workspace/client_state.h"

namespace lens {

struct CountingListener : ClientListener {
  int told = 0;
  void refreshView() override {}
  void documentClosed() override {}
  void databaseClosed() override {}
  void databasesChanged() override { ++told; }
};

}  // namespace lens

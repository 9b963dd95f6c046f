// Changes of one open database that are made together or not at all.
#pragma once

namespace lens {

class StoreSession;  // store_session.h

// Everything between is one transaction; without commit() it is undone. Transactions nest: an inner
// one can be undone alone, and what it commits still hangs on the outer one.
class StoreTransaction {
 public:
  explicit StoreTransaction(StoreSession& session);
  ~StoreTransaction();
  StoreTransaction(const StoreTransaction&) = delete;
  StoreTransaction& operator=(const StoreTransaction&) = delete;
  void commit();

 private:
  StoreSession& session_;
  bool open_ = true;
};

}  // namespace lens

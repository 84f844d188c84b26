#pragma once

#include <functional>

#include "store/connection.h"

namespace tavora {

// Batches writes into one commit: a whole-library walk pays for one
// synchronous write instead of one per row. Rolls back unless committed.
// Inside another transaction it does nothing and leaves the outer one to
// decide.
class Transaction {
  public:
    // on_rollback runs after a rollback, so that caches of the rows written
    // inside can be dropped.
    explicit Transaction(Connection& connection, std::function<void()> on_rollback = {});
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();

    // False when BEGIN failed (the file is locked by another writer).
    bool ok() const { return state_ != State::Failed; }
    bool commit();

  private:
    enum class State { Open, Nested, Done, Failed };

    Connection& connection_;
    std::function<void()> on_rollback_;
    State state_;
};

}  // namespace tavora

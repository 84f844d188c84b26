#include "store/transaction.h"

#include <utility>

namespace tavora {

Transaction::Transaction(Connection& connection, std::function<void()> on_rollback)
    : connection_(connection), on_rollback_(std::move(on_rollback)) {
    if (connection_.in_transaction()) {
        state_ = State::Nested;
    } else {
        // IMMEDIATE takes the write lock now, so a busy file fails here and
        // not halfway through the walk.
        state_ = connection_.exec("BEGIN IMMEDIATE") ? State::Open : State::Failed;
    }
}

Transaction::~Transaction() {
    if (state_ != State::Open) return;
    connection_.exec("ROLLBACK");
    if (on_rollback_) on_rollback_();
}

bool Transaction::commit() {
    if (state_ == State::Nested) return true;
    if (state_ != State::Open) return false;
    if (!connection_.exec("COMMIT")) return false;  // still open: the destructor rolls back
    state_ = State::Done;
    return true;
}

}  // namespace tavora

#pragma once

#include "ports/MainQueue.h"

#include <map>

namespace corvane::testing {

/// A main queue whose turns a test takes by hand.
class ManualMainQueue final : public MainQueue {
public:
    Subscription post(std::move_only_function<void()> action) override;

    /// One turn: runs what is posted now, not what that posts.
    void runTurn();

    /// Turns until nothing is posted any more.
    void runAll();

    bool isEmpty() const { return posted_.empty(); }

private:
    std::size_t nextSerial_ = 0;
    std::map<std::size_t, std::move_only_function<void()>> posted_;
};

} // namespace corvane::testing

#pragma once

#include "ports/MainQueue.h"

#include <map>
#include <mutex>

namespace corvane::testing {

/// A main queue whose turns a test takes by hand.
class ManualMainQueue final : public MainQueue {
public:
    Subscription post(std::move_only_function<void()> action) override;
    void postFromAnyThread(std::move_only_function<void()> action) override;

    /// One turn: runs what is posted now, not what that posts.
    void runTurn();

    /// Turns until nothing is posted any more.
    void runAll();

    bool isEmpty() const;

private:
    std::size_t add(std::move_only_function<void()> action);
    std::move_only_function<void()> takeBefore(std::size_t end);

    mutable std::mutex lock_;
    std::size_t nextSerial_ = 0;
    std::map<std::size_t, std::move_only_function<void()>> posted_;
};

} // namespace corvane::testing

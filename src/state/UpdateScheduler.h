#pragma once

#include "base/Subscription.h"
#include "ports/MainQueue.h"

#include <functional>
#include <utility>

namespace corvane {

/// Folds any number of requests within one turn of the main loop into one call in a later turn.
class UpdateScheduler {
public:
    /// The queue must outlive this object.
    UpdateScheduler(MainQueue& queue, std::function<void()> update) : queue_(queue), update_(std::move(update)) {}

    /// Sees to it that the update runs once, later.
    void request()
    {
        if (std::exchange(isRequested_, true))
            return;
        pending_ = queue_.post([this] {
            isRequested_ = false;
            update_();
        });
    }

private:
    MainQueue& queue_;
    std::function<void()> update_;
    bool isRequested_ = false;
    Subscription pending_;
};

} // namespace corvane

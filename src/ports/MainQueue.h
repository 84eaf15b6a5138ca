#pragma once

#include "base/Subscription.h"

#include <functional>

namespace corvane {

/// The main thread's queue of later work.
class MainQueue {
public:
    virtual ~MainQueue() = default;

    /// Calls `action` once in a later turn, in the order of posting, unless the subscription ends first.
    [[nodiscard]] virtual Subscription post(std::move_only_function<void()> action) = 0;
};

} // namespace corvane

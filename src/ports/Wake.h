#pragma once

#include "base/Subscription.h"

#include <functional>

namespace corvane {

/// Says when the computer has woken from sleep.
class Wake {
public:
    virtual ~Wake() = default;

    /// Calls `woke` on the main thread after each sleep until the subscription ends. On a system that does not tell,
    /// it is never called.
    [[nodiscard]] virtual Subscription observeWake(std::function<void()> woke) = 0;
};

} // namespace corvane

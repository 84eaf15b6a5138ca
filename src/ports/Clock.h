#pragma once

#include "async/Task.h"
#include "base/Subscription.h"

#include <chrono>
#include <functional>

namespace corvane {

/// What time it is, and waiting for later. Main thread only, but for `now`, which any thread may ask.
class Clock {
public:
    using TimePoint = std::chrono::system_clock::time_point;

    virtual ~Clock() = default;

    /// Wall-clock time.
    virtual TimePoint now() const = 0;

    /// Ends after `delay`; destroying the task removes the timer.
    virtual Task<void> sleep(std::chrono::milliseconds delay) = 0;

    /// Calls `action` once after `delay`, unless the subscription ends first.
    [[nodiscard]] virtual Subscription after(std::chrono::milliseconds delay,
                                             std::move_only_function<void()> action) = 0;
};

} // namespace corvane

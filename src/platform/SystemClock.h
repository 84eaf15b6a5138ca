#pragma once

#include "ports/Clock.h"

namespace corvane {

/// The system's wall clock and timers of the main loop.
class SystemClock final : public Clock {
public:
    TimePoint now() const override;
    Task<void> sleep(std::chrono::milliseconds delay) override;
    Subscription after(std::chrono::milliseconds delay, std::move_only_function<void()> action) override;
};

} // namespace corvane

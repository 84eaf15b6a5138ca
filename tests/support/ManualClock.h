#pragma once

#include "async/Task.h"
#include "ports/Clock.h"

#include <atomic>
#include <map>

namespace corvane::testing {

/// Time that moves only when a test says so.
class ManualClock final : public Clock {
public:
    explicit ManualClock(TimePoint start = TimePoint(std::chrono::seconds(1'700'000'000))) : now_(start) {}

    TimePoint now() const override { return now_; }
    Task<void> sleep(std::chrono::milliseconds delay) override;
    Subscription after(std::chrono::milliseconds delay, std::move_only_function<void()> action) override;

    /// Moves time on, running what falls due on the way, in order.
    void advance(std::chrono::milliseconds step);

    std::size_t pendingTimers() const { return timers_.size(); }

private:
    using Key = std::pair<TimePoint, std::size_t>;

    std::atomic<TimePoint> now_;
    std::size_t nextSerial_ = 0;
    std::map<Key, std::move_only_function<void()>> timers_;
};

} // namespace corvane::testing

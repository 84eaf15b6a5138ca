#include "support/ManualClock.h"

#include <coroutine>

namespace corvane::testing {
namespace {

class UntilDue {
public:
    UntilDue(Clock& clock, std::chrono::milliseconds delay) : clock_(clock), delay_(delay) {}
    UntilDue(const UntilDue&) = delete;
    UntilDue& operator=(const UntilDue&) = delete;

    bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> waiter)
    {
        timer_ = clock_.after(delay_, [waiter] { waiter.resume(); });
    }
    void await_resume() const noexcept {}

private:
    Clock& clock_;
    std::chrono::milliseconds delay_;
    Subscription timer_;
};

} // namespace

Task<void> ManualClock::sleep(std::chrono::milliseconds delay)
{
    co_await UntilDue(*this, delay);
}

Subscription ManualClock::after(std::chrono::milliseconds delay, std::move_only_function<void()> action)
{
    const Key key(now() + delay, nextSerial_++);
    timers_.emplace(key, std::move(action));
    return Subscription([this, key] { timers_.erase(key); });
}

void ManualClock::advance(std::chrono::milliseconds step)
{
    const auto end = now() + step;
    while (!timers_.empty() && timers_.begin()->first.first <= end) {
        auto due = timers_.extract(timers_.begin());
        now_ = due.key().first;
        due.mapped()();
    }
    now_ = end;
}

} // namespace corvane::testing

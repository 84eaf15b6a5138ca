#include "platform/SystemClock.h"

#include "async/MainLoop.h"

#include <utility>

namespace corvane {

Clock::TimePoint SystemClock::now() const
{
    return std::chrono::system_clock::now();
}

Task<void> SystemClock::sleep(std::chrono::milliseconds delay)
{
    co_await Delay(delay);
}

Subscription SystemClock::after(std::chrono::milliseconds delay, std::move_only_function<void()> action)
{
    return callAfter(delay, std::move(action));
}

} // namespace corvane

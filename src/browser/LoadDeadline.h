#pragma once

#include "ports/Clock.h"

#include <chrono>
#include <functional>
#include <utility>

namespace corvane {

/// Gives up a page load whose server has not begun to answer in time. The engine itself waits without limit. Counting
/// begins when the engine says that a load has started: going to another place of the page shown is none.
class LoadDeadline {
public:
    static constexpr std::chrono::seconds limit{60};

    /// The clock must outlive this object.
    LoadDeadline(Clock& clock, std::function<void()> giveUp) : clock_(clock), giveUp_(std::move(giveUp)) {}

    /// Counts from now on; an earlier count ends.
    void restart()
    {
        timer_ = clock_.after(limit, [this] { giveUp_(); });
    }

    void stop() { timer_.end(); }

private:
    Clock& clock_;
    std::function<void()> giveUp_;
    Subscription timer_;
};

} // namespace corvane

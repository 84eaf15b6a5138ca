#pragma once

#include <algorithm>
#include <chrono>
#include <ctime>

#include <glib.h>

namespace corvane::bench {

/// Watches how long the default main loop cannot draw: a timer of one millisecond at the priority of GTK's drawing, and
/// the longest time between two of its calls, as it passes and as the thread itself works. The second leaves out what
/// other programs take of the processor, and waiting for the disk.
class MainLoopGap {
public:
    MainLoopGap() : source_(g_timeout_source_new(1))
    {
        g_source_set_priority(source_, G_PRIORITY_HIGH_IDLE + 20);
        g_source_set_callback(source_, &MainLoopGap::tick, this, nullptr);
        g_source_attach(source_, nullptr);
    }
    MainLoopGap(const MainLoopGap&) = delete;
    MainLoopGap& operator=(const MainLoopGap&) = delete;
    ~MainLoopGap()
    {
        g_source_destroy(source_);
        g_source_unref(source_);
    }

    using Milliseconds = std::chrono::duration<double, std::milli>;

    struct Longest {
        Milliseconds passed{};
        Milliseconds worked{};
    };

    /// Calls `begin` right after a tick and runs the loop until the tick after `isOver` holds. The longest gap between.
    template <typename Begin, typename IsOver>
    Longest during(Begin begin, IsOver isOver)
    {
        runUntilTick();
        longest_ = {};
        begin();
        while (!isOver())
            g_main_context_iteration(nullptr, TRUE);
        runUntilTick();
        return longest_;
    }

private:
    using Clock = std::chrono::steady_clock;

    static gboolean tick(gpointer self)
    {
        auto& gap = *static_cast<MainLoopGap*>(self);
        const auto now = Clock::now();
        const auto worked = workedSoFar();
        gap.longest_.passed = std::max<Milliseconds>(gap.longest_.passed, now - gap.last_);
        gap.longest_.worked = std::max(gap.longest_.worked, worked - gap.lastWorked_);
        gap.last_ = now;
        gap.lastWorked_ = worked;
        ++gap.ticks_;
        return G_SOURCE_CONTINUE;
    }

    static Milliseconds workedSoFar()
    {
        timespec time{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }

    void runUntilTick()
    {
        for (const auto before = ticks_; ticks_ == before;)
            g_main_context_iteration(nullptr, TRUE);
    }

    GSource* source_;
    Clock::time_point last_ = Clock::now();
    Milliseconds lastWorked_ = workedSoFar();
    Longest longest_;
    unsigned long ticks_ = 0;
};

} // namespace corvane::bench

#pragma once

#include "base/Subscription.h"

#include <chrono>
#include <coroutine>
#include <functional>

#include <glib.h>

namespace corvane {

/// Calls `action` once, in a later turn of the main loop of the calling thread, at ordinary priority. Ending the
/// subscription takes the call back.
[[nodiscard]] Subscription callLater(std::move_only_function<void()> action);

/// The same after `delay`. Whole seconds from ten on share the system's coarse wake-ups, which can be a second off.
[[nodiscard]] Subscription callAfter(std::chrono::milliseconds delay, std::move_only_function<void()> action);

/// Waits in a task for a turn in which the main loop has nothing more urgent to do, drawing included; destroying the
/// frame takes the wait back. For long work that goes on in small pieces.
class IdleTurn {
public:
    IdleTurn() = default;
    IdleTurn(const IdleTurn&) = delete;
    IdleTurn& operator=(const IdleTurn&) = delete;

    bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> waiter);
    void await_resume() const noexcept {}

private:
    Subscription turn_;
};

/// Waits in a task until `delay` has passed; destroying the frame removes the timer.
class Delay {
public:
    explicit Delay(std::chrono::milliseconds delay) : delay_(delay) {}
    Delay(const Delay&) = delete;
    Delay& operator=(const Delay&) = delete;

    bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> waiter);
    void await_resume() const noexcept {}

private:
    std::chrono::milliseconds delay_;
    Subscription timer_;
};

} // namespace corvane

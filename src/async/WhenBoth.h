#pragma once

#include "async/Task.h"

#include <coroutine>
#include <exception>
#include <optional>
#include <utility>

namespace corvane {

namespace detail {

/// Counts what `whenBoth` still waits for: the two legs and the starting of both.
struct BothPending {
    int count = 3;
    std::coroutine_handle<> waiter;

    /// The coroutine that goes on now that one thing less is pending.
    std::coroutine_handle<> next() { return --count == 0 ? waiter : std::noop_coroutine(); }
};

/// One of two tasks that run at the same time. Owns its frame; the frame stays until the leg goes, so that the
/// coroutine that waits may end, and destroy the leg, as soon as it is resumed.
template <typename T>
class Leg {
public:
    struct promise_type {
        struct ReportBack {
            bool await_ready() const noexcept { return false; }
            std::coroutine_handle<> await_suspend(std::coroutine_handle<promise_type> finished) const noexcept
            {
                return finished.promise().pending->next();
            }
            void await_resume() const noexcept {}
        };

        Leg get_return_object() { return Leg(std::coroutine_handle<promise_type>::from_promise(*this)); }
        std::suspend_always initial_suspend() const noexcept { return {}; }
        ReportBack final_suspend() const noexcept { return {}; }
        void return_value(T result) { value.emplace(std::move(result)); }
        [[noreturn]] void unhandled_exception() const noexcept { std::terminate(); }

        BothPending* pending = nullptr;
        std::optional<T> value;
    };

    Leg(const Leg&) = delete;
    Leg& operator=(const Leg&) = delete;
    ~Leg() { frame_.destroy(); }

    static Leg of(Task<T> task) { co_return co_await std::move(task); }

    void start(BothPending& pending)
    {
        frame_.promise().pending = &pending;
        frame_.resume();
    }
    T takeResult() { return std::move(*frame_.promise().value); }

private:
    explicit Leg(std::coroutine_handle<promise_type> frame) : frame_(frame) {}

    std::coroutine_handle<promise_type> frame_;
};

template <typename A, typename B>
class BothAwaiter {
public:
    BothAwaiter(Task<A> first, Task<B> second)
        : first_(Leg<A>::of(std::move(first))), second_(Leg<B>::of(std::move(second)))
    {
    }
    BothAwaiter(const BothAwaiter&) = delete;
    BothAwaiter& operator=(const BothAwaiter&) = delete;

    bool await_ready() const noexcept { return false; }
    std::coroutine_handle<> await_suspend(std::coroutine_handle<> waiter)
    {
        pending_.waiter = waiter;
        first_.start(pending_);
        second_.start(pending_);
        return pending_.next();
    }
    std::pair<A, B> await_resume() { return {first_.takeResult(), second_.takeResult()}; }

private:
    BothPending pending_; // first: the legs report to it
    Leg<A> first_;
    Leg<B> second_;
};

} // namespace detail

/// Starts both tasks at once, the first one first, and waits until both have ended. Destroying the task that waits
/// destroys whichever of them still runs.
template <typename A, typename B>
Task<std::pair<A, B>> whenBoth(Task<A> first, Task<B> second)
{
    auto results = co_await detail::BothAwaiter<A, B>(std::move(first), std::move(second));
    co_return results;
}

} // namespace corvane

#pragma once

#include <cassert>
#include <coroutine>
#include <exception>
#include <optional>
#include <utility>

namespace corvane {

template <typename T>
class Task;

namespace detail {

/// What the promises of all tasks share: who waits for the task, and that no exception leaves it.
class TaskPromiseBase {
public:
    struct ResumeWaiter {
        bool await_ready() const noexcept { return false; }
        template <typename Promise>
        std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> finished) const noexcept
        {
            return finished.promise().waiter_;
        }
        void await_resume() const noexcept {}
    };

    std::suspend_always initial_suspend() const noexcept { return {}; }
    ResumeWaiter final_suspend() const noexcept { return {}; }
    [[noreturn]] void unhandled_exception() const noexcept { std::terminate(); }

    void setWaiter(std::coroutine_handle<> waiter) { waiter_ = waiter; }

private:
    std::coroutine_handle<> waiter_ = std::noop_coroutine();
};

template <typename T>
class TaskPromise : public TaskPromiseBase {
public:
    Task<T> get_return_object();
    template <typename Value>
    void return_value(Value&& value)
    {
        value_.emplace(std::forward<Value>(value));
    }
    T takeResult() { return std::move(*value_); }

private:
    std::optional<T> value_;
};

template <>
class TaskPromise<void> : public TaskPromiseBase {
public:
    Task<void> get_return_object();
    void return_void() const {}
    void takeResult() const {}
};

} // namespace detail

/// A lazy coroutine: it runs when it is awaited, once, and its caller goes on with the result.
/// Destroying the task destroys its frame, and with it whatever it is waiting for: that is how work is cancelled.
/// Parameters of a coroutine are values, a lambda that is a coroutine captures nothing, and no exception leaves a task.
template <typename T = void>
class [[nodiscard]] Task {
public:
    using promise_type = detail::TaskPromise<T>;

    Task(Task&& other) noexcept : frame_(std::exchange(other.frame_, nullptr)) {}
    Task& operator=(Task&&) = delete;
    ~Task()
    {
        if (frame_)
            frame_.destroy();
    }

    auto operator co_await() &&
    {
        struct Awaiter {
            explicit Awaiter(std::coroutine_handle<promise_type> frame) : frame_(frame) {}
            Awaiter(const Awaiter&) = delete;
            Awaiter& operator=(const Awaiter&) = delete;

            bool await_ready() const noexcept { return false; }
            std::coroutine_handle<> await_suspend(std::coroutine_handle<> waiter) noexcept
            {
                frame_.promise().setWaiter(waiter);
                return frame_;
            }
            T await_resume() { return frame_.promise().takeResult(); }

        private:
            std::coroutine_handle<promise_type> frame_;
        };
        assert(frame_);
        return Awaiter(frame_);
    }

private:
    friend promise_type;
    explicit Task(std::coroutine_handle<promise_type> frame) : frame_(frame) {}

    std::coroutine_handle<promise_type> frame_;
};

namespace detail {

template <typename T>
Task<T> TaskPromise<T>::get_return_object()
{
    return Task<T>(std::coroutine_handle<TaskPromise<T>>::from_promise(*this));
}

inline Task<void> TaskPromise<void>::get_return_object()
{
    return Task<void>(std::coroutine_handle<TaskPromise<void>>::from_promise(*this));
}

} // namespace detail

} // namespace corvane

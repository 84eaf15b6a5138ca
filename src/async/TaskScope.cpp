#include "async/TaskScope.h"

#include <exception>
#include <utility>

namespace corvane {

/// The outermost frame of a task: it takes itself off its scope when the task has ended.
struct TaskScope::Root {
    struct promise_type {
        struct LeaveScope {
            bool await_ready() const noexcept { return false; }
            void await_suspend(std::coroutine_handle<promise_type> finished) const noexcept
            {
                finished.promise().scope->forget(finished);
                finished.destroy();
            }
            void await_resume() const noexcept {}
        };

        Root get_return_object() { return {std::coroutine_handle<promise_type>::from_promise(*this)}; }
        std::suspend_always initial_suspend() const noexcept { return {}; }
        LeaveScope final_suspend() const noexcept { return {}; }
        void return_void() const {}
        [[noreturn]] void unhandled_exception() const noexcept { std::terminate(); }

        TaskScope* scope = nullptr;
    };

    std::coroutine_handle<promise_type> frame;
};

TaskScope::Root TaskScope::run(Task<void> task)
{
    co_await std::move(task);
}

void TaskScope::start(Task<void> task)
{
    const auto root = run(std::move(task));
    root.frame.promise().scope = this;
    running_.push_back(root.frame);
    root.frame.resume();
}

void TaskScope::cancel()
{
    // A frame's destructors may start or end other tasks of this scope: take one at a time.
    while (!running_.empty()) {
        const auto frame = running_.front();
        running_.pop_front();
        frame.destroy();
    }
}

void TaskScope::forget(std::coroutine_handle<> finished)
{
    running_.remove(finished);
}

} // namespace corvane

#pragma once

#include "async/Task.h"

#include <coroutine>
#include <list>

namespace corvane {

/// Owns running tasks. Destroying or cancelling the scope destroys their frames; each awaiter undoes itself.
/// Owners keep it as their last field, one scope per reason to cancel. A task must not cancel its own scope: it lets a
/// later turn do so.
class TaskScope {
public:
    TaskScope() = default;
    TaskScope(const TaskScope&) = delete;
    TaskScope& operator=(const TaskScope&) = delete;
    ~TaskScope() { cancel(); }

    /// Runs `task` at once, up to its first wait, and keeps it until it ends.
    void start(Task<void> task);

    /// Destroys every task that still runs.
    void cancel();

    bool isEmpty() const { return running_.empty(); }

private:
    struct Root;

    static Root run(Task<void> task);
    void forget(std::coroutine_handle<> finished);

    std::list<std::coroutine_handle<>> running_;
};

} // namespace corvane

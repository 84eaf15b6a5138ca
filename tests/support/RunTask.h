#pragma once

#include "async/TaskScope.h"

#include <optional>
#include <utility>

namespace corvane::testing {

/// Waits for `task` and leaves its result in `result`.
template <typename T>
Task<void> keepResult(Task<T> task, std::optional<T>* result)
{
    result->emplace(co_await std::move(task));
}

/// The result of a task that has no need to wait; empty when it does.
template <typename T>
std::optional<T> resultOf(Task<T> task)
{
    std::optional<T> result;
    TaskScope scope;
    scope.start(keepResult(std::move(task), &result));
    return result;
}

} // namespace corvane::testing

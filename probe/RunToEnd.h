#pragma once

#include "async/TaskScope.h"

#include <optional>
#include <utility>

#include <glib.h>

namespace corvane::probe {

template <typename T>
Task<void> keepResult(Task<T> task, std::optional<T>* result)
{
    result->emplace(co_await std::move(task));
}

/// The result of a task, for which the main loop runs as long as it takes.
template <typename T>
T runToEnd(Task<T> task)
{
    std::optional<T> result;
    TaskScope scope;
    scope.start(keepResult(std::move(task), &result));
    while (!result)
        g_main_context_iteration(nullptr, TRUE);
    return std::move(*result);
}

} // namespace corvane::probe

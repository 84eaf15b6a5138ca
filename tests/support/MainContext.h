#pragma once

#include <chrono>

#include <glib.h>

namespace corvane::testing {

/// Takes turns of the default main context until `condition` holds. False when that takes more than ten seconds.
template <typename Condition>
[[nodiscard]] bool iterateUntil(Condition condition)
{
    bool isOver = false;
    auto* guard = g_timeout_source_new(10'000);
    g_source_set_callback(
        guard,
        [](gpointer over) -> gboolean {
            *static_cast<bool*>(over) = true;
            return G_SOURCE_CONTINUE;
        },
        &isOver, nullptr);
    g_source_attach(guard, nullptr);
    bool holds = condition();
    while (!holds && !isOver) {
        g_main_context_iteration(nullptr, TRUE);
        holds = condition();
    }
    g_source_destroy(guard);
    g_source_unref(guard);
    return holds;
}

/// Takes every turn that is due now, without waiting for anything.
inline void iteratePending()
{
    for (int turns = 0; turns < 1000 && g_main_context_iteration(nullptr, FALSE) != FALSE; ++turns) {
    }
}

} // namespace corvane::testing

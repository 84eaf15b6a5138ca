#include "async/MainLoop.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>

namespace corvane {
namespace {

/// Shared by the source and the subscription: whichever ends first tells the other.
struct PendingCall {
    std::move_only_function<void()> action;
    GSource* source = nullptr; // null once the call has run or was taken back
};

using Shared = std::shared_ptr<PendingCall>;

gboolean runOnce(gpointer data)
{
    const auto call = *static_cast<Shared*>(data);
    call->source = nullptr;
    auto action = std::move(call->action);
    action();
    return G_SOURCE_REMOVE;
}

/// The context has let go of the source, perhaps because it ends itself.
void release(gpointer data)
{
    const std::unique_ptr<Shared> call(static_cast<Shared*>(data));
    (*call)->source = nullptr;
}

Subscription schedule(GSource* source, int priority, std::move_only_function<void()> action)
{
    auto call = std::make_shared<PendingCall>(std::move(action), source);
    g_source_set_priority(source, priority);
    g_source_set_callback(source, runOnce, new Shared(call), release);
    g_source_attach(source, g_main_context_get_thread_default());
    g_source_unref(source); // the context owns it now
    return Subscription([call] {
        if (auto* pending = std::exchange(call->source, nullptr))
            g_source_destroy(pending);
    });
}

} // namespace

Subscription callLater(std::move_only_function<void()> action)
{
    return schedule(g_idle_source_new(), G_PRIORITY_DEFAULT, std::move(action));
}

Subscription callAfter(std::chrono::milliseconds delay, std::move_only_function<void()> action)
{
    static constexpr std::int64_t most = G_MAXUINT; // about 50 days in milliseconds
    static constexpr std::int64_t fewestCoarse = 10'000;
    const std::int64_t milliseconds = delay.count() > 0 ? delay.count() : 0;
    const bool inSeconds = milliseconds > most || (milliseconds >= fewestCoarse && milliseconds % 1000 == 0);
    const auto seconds = std::min(milliseconds / 1000, most);
    auto* source = inSeconds ? g_timeout_source_new_seconds(static_cast<guint>(seconds))
                             : g_timeout_source_new(static_cast<guint>(milliseconds));
    return schedule(source, G_PRIORITY_DEFAULT, std::move(action));
}

void IdleTurn::await_suspend(std::coroutine_handle<> waiter)
{
    turn_ = schedule(g_idle_source_new(), G_PRIORITY_DEFAULT_IDLE, [waiter] { waiter.resume(); });
}

void Delay::await_suspend(std::coroutine_handle<> waiter)
{
    timer_ = callAfter(delay_, [waiter] { waiter.resume(); });
}

} // namespace corvane

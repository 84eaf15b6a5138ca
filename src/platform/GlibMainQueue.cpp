#include "platform/GlibMainQueue.h"

#include "async/MainLoop.h"

#include <utility>

#include <glib.h>

namespace corvane {

GlibMainQueue::~GlibMainQueue()
{
    while (g_source_remove_by_user_data(this) != FALSE) {
    }
}

Subscription GlibMainQueue::post(std::move_only_function<void()> action)
{
    return callLater(std::move(action));
}

void GlibMainQueue::postFromAnyThread(std::move_only_function<void()> action)
{
    {
        const std::scoped_lock guard(lock_);
        inbox_.push_back(std::move(action));
    }
    const auto run = [](gpointer queue) -> gboolean {
        static_cast<GlibMainQueue*>(queue)->runNext();
        return G_SOURCE_REMOVE;
    };
    g_idle_add_full(G_PRIORITY_DEFAULT, run, this, nullptr);
}

void GlibMainQueue::runNext()
{
    std::move_only_function<void()> action;
    {
        const std::scoped_lock guard(lock_);
        action = std::move(inbox_.front());
        inbox_.pop_front();
    }
    action();
}

} // namespace corvane

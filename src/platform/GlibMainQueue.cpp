#include "platform/GlibMainQueue.h"

#include "async/MainLoop.h"

#include <utility>

namespace corvane {

Subscription GlibMainQueue::post(std::move_only_function<void()> action)
{
    return callLater(std::move(action));
}

} // namespace corvane

#pragma once

#include "base/Subscription.h"

#include <functional>

namespace corvane {

/// The main thread's queue of later work.
class MainQueue {
public:
    virtual ~MainQueue() = default;

    /// Calls `action` once in a later turn, in the order of posting, unless the subscription ends first. Main thread
    /// only, as is ending the subscription.
    [[nodiscard]] virtual Subscription post(std::move_only_function<void()> action) = 0;

    /// The same from any thread, in one order with the calls above. It cannot be taken back, so `action` holds weakly
    /// what it works on. An action that has not run by then is dropped with the queue; no thread may post any more
    /// then.
    virtual void postFromAnyThread(std::move_only_function<void()> action) = 0;
};

} // namespace corvane

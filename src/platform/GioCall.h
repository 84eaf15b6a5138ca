#pragma once

#include "platform/GLibHandle.h"

#include <coroutine>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace corvane {

/// Waits in a task for one asynchronous call of GIO's form. Destroying the frame cancels the call; what the C side
/// still holds of it then outlives the frame and is freed when the call reports back. `cancellable` belongs to this one
/// task.
template <typename Outcome>
class GioCall {
public:
    using Start = std::move_only_function<void(GCancellable*, GAsyncReadyCallback, gpointer)>;
    using Finish = Outcome (*)(GObject* source, GAsyncResult* result);

    GioCall(GObjectPtr<GCancellable> cancellable, Start start, Finish finish)
        : cancellable_(std::move(cancellable)), start_(std::move(start)), call_(std::make_shared<Call>(finish))
    {
    }
    GioCall(const GioCall&) = delete;
    GioCall& operator=(const GioCall&) = delete;
    ~GioCall()
    {
        // First forget the waiter: cancelling may report back at once.
        if (std::exchange(call_->waiter, nullptr))
            g_cancellable_cancel(cancellable_.get());
    }

    bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> waiter)
    {
        call_->waiter = waiter;
        start_(cancellable_.get(), reportedBack, new std::shared_ptr<Call>(call_));
    }
    Outcome await_resume() { return std::move(*call_->outcome); }

private:
    struct Call {
        explicit Call(Finish finishCall) : finish(finishCall) {}

        Finish finish;
        std::coroutine_handle<> waiter; // null before the start, after the answer and once the frame is gone
        std::optional<Outcome> outcome;
    };

    static void reportedBack(GObject* source, GAsyncResult* result, gpointer data)
    {
        const std::unique_ptr<std::shared_ptr<Call>> owned(static_cast<std::shared_ptr<Call>*>(data));
        auto& call = **owned;
        call.outcome.emplace(call.finish(source, result));
        if (const auto waiter = std::exchange(call.waiter, nullptr))
            waiter.resume();
    }

    GObjectPtr<GCancellable> cancellable_;
    Start start_;
    std::shared_ptr<Call> call_;
};

} // namespace corvane

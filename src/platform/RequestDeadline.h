#pragma once

#include "async/MainLoop.h"
#include "base/Error.h"
#include "platform/GLibHandle.h"

#include <chrono>
#include <optional>
#include <utility>

namespace corvane {

/// Ends a request with its task, or when it takes too long in all. Its cancellable belongs to that request.
class RequestDeadline {
public:
    static constexpr auto tooLate = "The server did not answer in time.";

    /// Without a `total` there is no limit.
    explicit RequestDeadline(std::optional<std::chrono::milliseconds> total) : cancellable_(adopt(g_cancellable_new()))
    {
        if (total)
            timer_ = callAfter(*total, [this] {
                isOver_ = true;
                g_cancellable_cancel(cancellable_.get()); // may end the task and this object with it
            });
    }
    RequestDeadline(const RequestDeadline&) = delete;
    RequestDeadline& operator=(const RequestDeadline&) = delete;
    // An answer that is not wanted to its end must not keep its connection.
    ~RequestDeadline() { g_cancellable_cancel(cancellable_.get()); }

    GObjectPtr<GCancellable> cancellable() const { return retain(cancellable_.get()); }

    std::unexpected<Error> explain(Error error) const
    {
        return std::unexpected(isOver_ ? Error{tooLate} : std::move(error));
    }

private:
    GObjectPtr<GCancellable> cancellable_;
    bool isOver_ = false;
    Subscription timer_;
};

} // namespace corvane

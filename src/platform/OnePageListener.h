#pragma once

#include "async/TaskScope.h"
#include "platform/GLibHandle.h"
#include "ports/LoopbackServer.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <string>

namespace corvane {

/// Answers every connection with the same bytes, whatever it asks. Belongs to the thread that makes it and runs in that
/// thread's main loop, as long as this object lives; what it cancels in the end takes further turns of that loop.
class OnePageListener {
public:
    struct Limits {
        std::size_t connections = 32;           // further clients wait until one of these has gone
        std::chrono::milliseconds life{10'000}; // of a connection, from its acceptance to its end
        std::chrono::milliseconds drain{1'000}; // how long a client may go on sending after its answer
        std::size_t drainedBytes = std::size_t{64} * 1024;
        std::chrono::milliseconds pause{250}; // after a connection that could not be accepted
    };

    OnePageListener(std::string answer, Limits limits);
    OnePageListener(const OnePageListener&) = delete;
    OnePageListener& operator=(const OnePageListener&) = delete;
    ~OnePageListener();

    /// Starts accepting on a free port of a numeric address; the port, or why not.
    std::expected<std::uint16_t, LoopbackFailure> listen(const std::string& address);

private:
    Task<void> acceptWhileThereIsRoom();
    Task<void> serve(GObjectPtr<GSocketConnection> connection);
    Task<void> answer(GObjectPtr<GSocketConnection> connection);

    std::string answer_;
    Limits limits_;
    GObjectPtr<GSocketListener> listener_;
    std::size_t open_ = 0; // connections
    TaskScope acceptance_;
    TaskScope connections_;
};

} // namespace corvane

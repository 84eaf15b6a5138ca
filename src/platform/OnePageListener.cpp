#include "platform/OnePageListener.h"

#include "async/MainLoop.h"
#include "platform/GioCall.h"

#include <utility>

namespace corvane {
namespace {

constexpr std::size_t largestPiece = 4096;
constexpr int backlog = 128; // clients that the system keeps waiting

LoopbackFailure failureOf(const GErrorSlot& error)
{
    return {.domain = g_quark_to_string(error->domain), .code = error->code, .description = error->message};
}

/// The next client; null when there is none to be had at this moment.
GioCall<GObjectPtr<GSocketConnection>> accepted(GSocketListener* listener)
{
    return {adopt(g_cancellable_new()),
            [listener](GCancellable* cancel, GAsyncReadyCallback done, gpointer data) {
                g_socket_listener_accept_async(listener, cancel, done, data);
            },
            [](GObject* source, GAsyncResult* result) {
                return adopt(g_socket_listener_accept_finish(G_SOCKET_LISTENER(source), result, nullptr, nullptr));
            }};
}

/// What has arrived once there is anything, nothing at the client's end; null when receiving fails or is cancelled.
GioCall<GBytesPtr> received(GSocketConnection* connection, GCancellable* cancellable)
{
    auto* stream = g_io_stream_get_input_stream(G_IO_STREAM(connection));
    return {retain(cancellable),
            [stream](GCancellable* cancel, GAsyncReadyCallback done, gpointer data) {
                g_input_stream_read_bytes_async(stream, largestPiece, G_PRIORITY_DEFAULT, cancel, done, data);
            },
            [](GObject* source, GAsyncResult* result) {
                return adopt(g_input_stream_read_bytes_finish(G_INPUT_STREAM(source), result, nullptr));
            }};
}

GioCall<bool> sent(GSocketConnection* connection, GCancellable* cancellable, const std::string& bytes)
{
    auto* stream = g_io_stream_get_output_stream(G_IO_STREAM(connection));
    return {retain(cancellable),
            [stream, &bytes](GCancellable* cancel, GAsyncReadyCallback done, gpointer data) {
                g_output_stream_write_all_async(stream, bytes.data(), bytes.size(), G_PRIORITY_DEFAULT, cancel, done,
                                                data);
            },
            [](GObject* source, GAsyncResult* result) {
                return g_output_stream_write_all_finish(G_OUTPUT_STREAM(source), result, nullptr, nullptr) != FALSE;
            }};
}

} // namespace

OnePageListener::OnePageListener(std::string answer, Limits limits)
    : answer_(std::move(answer)), limits_(limits), listener_(adopt(g_socket_listener_new()))
{
}

OnePageListener::~OnePageListener()
{
    g_socket_listener_close(listener_.get());
}

std::expected<std::uint16_t, LoopbackFailure> OnePageListener::listen(const std::string& address)
{
    const auto wanted = adopt(g_inet_socket_address_new_from_string(address.c_str(), 0));
    if (!wanted) {
        return std::unexpected(LoopbackFailure{.domain = g_quark_to_string(G_IO_ERROR),
                                               .code = G_IO_ERROR_INVALID_ARGUMENT,
                                               .description = "No numeric address: " + address});
    }
    g_socket_listener_set_backlog(listener_.get(), backlog);
    GSocketAddress* effective = nullptr;
    GErrorSlot error;
    // GIO binds with SO_REUSEADDR and, for streams, without SO_REUSEPORT.
    if (g_socket_listener_add_address(listener_.get(), wanted.get(), G_SOCKET_TYPE_STREAM, G_SOCKET_PROTOCOL_TCP,
                                      nullptr, &effective, error.out()) == FALSE)
        return std::unexpected(failureOf(error));
    const auto bound = adopt(effective);
    acceptance_.start(acceptWhileThereIsRoom());
    return g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(bound.get()));
}

Task<void> OnePageListener::acceptWhileThereIsRoom()
{
    while (open_ < limits_.connections) {
        auto connection = co_await accepted(listener_.get());
        if (connection) {
            ++open_;
            connections_.start(serve(std::move(connection)));
        } else {
            // Most likely the process has no descriptor left: the next attempt would fail at once, too.
            co_await Delay(limits_.pause);
        }
    }
}

Task<void> OnePageListener::serve(GObjectPtr<GSocketConnection> connection)
{
    co_await answer(std::move(connection));
    const bool wasFull = open_ == limits_.connections;
    --open_;
    if (wasFull)
        acceptance_.start(acceptWhileThereIsRoom());
}

Task<void> OnePageListener::answer(GObjectPtr<GSocketConnection> connection)
{
    const auto ending = adopt(g_cancellable_new());
    const auto end = [&ending] { g_cancellable_cancel(ending.get()); };
    const auto life = callAfter(limits_.life, end);
    const auto request = co_await received(connection.get(), ending.get());
    if (!request)
        co_return;
    const bool isSent = co_await sent(connection.get(), ending.get(), answer_);
    if (!isSent)
        co_return;

    // A connection that is closed with bytes unread is reset, and its client may lose the answer.
    g_socket_shutdown(g_socket_connection_get_socket(connection.get()), FALSE, TRUE, nullptr);
    const auto drain = callAfter(limits_.drain, end);
    for (std::size_t drained = 0; drained < limits_.drainedBytes;) {
        const auto rest = co_await received(connection.get(), ending.get());
        if (!rest || g_bytes_get_size(rest.get()) == 0)
            co_return;
        drained += g_bytes_get_size(rest.get());
    }
}

} // namespace corvane

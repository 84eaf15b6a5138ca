#include "platform/RawServer.h"

#include "async/MainLoop.h"
#include "platform/GioCall.h"

#include <memory>

#include <fmt/format.h>
#include <sys/socket.h>

namespace corvane::testing {
namespace {

bool isComplete(std::string_view request)
{
    const auto end = request.find("\r\n\r\n");
    if (end == std::string_view::npos)
        return false;
    static constexpr std::string_view field = "\r\nContent-Length: ";
    const auto length = request.find(field);
    const auto body = length < end ? std::stoul(std::string(request.substr(length + field.size()))) : 0;
    return request.size() >= end + 4 + body;
}

GioCall<GBytesPtr> received(GInputStream* stream)
{
    return GioCall<GBytesPtr>(
        adopt(g_cancellable_new()),
        [stream](GCancellable* cancel, GAsyncReadyCallback done, gpointer data) {
            g_input_stream_read_bytes_async(stream, 65536, G_PRIORITY_DEFAULT, cancel, done, data);
        },
        [](GObject* source, GAsyncResult* result) {
            return adopt(g_input_stream_read_bytes_finish(G_INPUT_STREAM(source), result, nullptr));
        });
}

GioCall<bool> sent(GSocketConnection* connection, const std::shared_ptr<std::string>& bytes)
{
    auto* stream = g_io_stream_get_output_stream(G_IO_STREAM(connection));
    return GioCall<bool>(
        adopt(g_cancellable_new()),
        [stream, bytes](GCancellable* cancel, GAsyncReadyCallback done, gpointer data) {
            g_output_stream_write_all_async(stream, bytes->data(), bytes->size(), G_PRIORITY_DEFAULT, cancel, done,
                                            data);
        },
        [](GObject* source, GAsyncResult* result) {
            return g_output_stream_write_all_finish(G_OUTPUT_STREAM(source), result, nullptr, nullptr) != FALSE;
        });
}

/// Makes the end of a connection a reset for its client.
void prepareReset(GSocketConnection* connection)
{
    const linger none{.l_onoff = 1, .l_linger = 0};
    const int socket = g_socket_get_fd(g_socket_connection_get_socket(connection));
    ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &none, sizeof none);
}

} // namespace

RawServer::RawServer() : service_(adopt(g_socket_service_new()))
{
    const auto host = adopt(g_inet_address_new_loopback(G_SOCKET_FAMILY_IPV4));
    const auto address = adopt(g_inet_socket_address_new(host.get(), 0));
    GSocketAddress* effective = nullptr;
    g_socket_listener_add_address(G_SOCKET_LISTENER(service_.get()), address.get(), G_SOCKET_TYPE_STREAM,
                                  G_SOCKET_PROTOCOL_TCP, nullptr, &effective, nullptr);
    const auto bound = adopt(effective);
    port_ = g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(bound.get()));
    incoming_ = SignalConnection::to<&RawServer::incoming>(service_.get(), "incoming", this);
}

Url RawServer::url(std::string_view pathAndQuery) const
{
    return *Url::parse(fmt::format("http://127.0.0.1:{}{}", port_, pathAndQuery));
}

gboolean RawServer::incoming(GSocketConnection* connection, GObject*)
{
    connections_.start(serve(retain(connection)));
    return TRUE;
}

Task<void> RawServer::serve(GObjectPtr<GSocketConnection> connection)
{
    auto* stream = G_IO_STREAM(connection.get());
    if (!greeting.empty())
        co_await sent(connection.get(), std::make_shared<std::string>(greeting));
    std::string request;
    while (true) {
        const auto chunk = co_await received(g_io_stream_get_input_stream(stream));
        if (!chunk || g_bytes_get_size(chunk.get()) == 0) {
            ++hangUps;
            co_return;
        }
        request.append(static_cast<const char*>(g_bytes_get_data(chunk.get(), nullptr)), g_bytes_get_size(chunk.get()));
        if (!isComplete(request))
            continue;
        requests.push_back(std::exchange(request, {}));
        const bool staysOpen = co_await answer(retain(connection.get()), respond(requests.back()));
        if (!staysOpen)
            co_return;
    }
}

Task<bool> RawServer::answer(GObjectPtr<GSocketConnection> connection, Reply reply)
{
    bool wasSent = co_await sent(connection.get(), std::make_shared<std::string>(std::move(reply.bytes)));
    while (wasSent && !reply.again.empty()) {
        co_await Delay(reply.pause);
        wasSent = co_await sent(connection.get(), std::make_shared<std::string>(reply.again));
    }
    if (!wasSent)
        ++hangUps;
    if (reply.then == Reply::Then::reset)
        prepareReset(connection.get());
    co_return wasSent&& reply.then == Reply::Then::wait;
}

RawServer::Reply RawServer::ok(std::string_view body, std::string_view headers)
{
    return {fmt::format("HTTP/1.1 200 OK\r\nContent-Length: {}\r\n{}\r\n{}", body.size(), headers, body),
            Reply::Then::wait};
}

RawServer::Reply RawServer::redirect(int status, std::string_view location)
{
    return {fmt::format("HTTP/1.1 {} Elsewhere\r\nContent-Length: 4\r\nLocation: {}\r\n\r\ngone", status, location),
            Reply::Then::wait};
}

} // namespace corvane::testing

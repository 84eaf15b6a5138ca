#pragma once

#include "base/Error.h"
#include "http/HttpAnswer.h"
#include "http/HttpRequest.h"

#include <cstdint>
#include <functional>
#include <memory>

#include <libsoup/soup.h>

namespace corvane::server {

/// Listens on 127.0.0.1 and hands every request, read whole, to one handler. Works on the main loop of the thread
/// that made it; ends its connections with itself.
class HttpServer {
public:
    using Handler = std::function<HttpAnswer(const HttpRequest&)>;

    /// A longer request body is answered with status 413 and never reaches the handler.
    static constexpr std::size_t longestBody = std::size_t{64} * 1024;

    explicit HttpServer(Handler handler);
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;
    ~HttpServer();

    /// Starts to listen; port 0 takes a free one. The port, or why it cannot be had.
    Result<std::uint16_t> listen(std::uint16_t port);

private:
    struct Unref {
        void operator()(SoupServer* server) const { g_object_unref(server); }
    };

    static void onHeaders(SoupServer*, SoupServerMessage* message, const char* path, GHashTable*, void* self);
    static void onRequest(SoupServer*, SoupServerMessage* message, const char* path, GHashTable*, void* self);

    Handler handler_;
    std::unique_ptr<SoupServer, Unref> server_;
};

} // namespace corvane::server

#include "http/HttpServer.h"

#include "http/AnswerSending.h"
#include "http/BodyLimit.h"

#include <string>

#include <fmt/format.h>

namespace corvane::server {
namespace {

std::string orEmpty(const char* text)
{
    return text == nullptr ? std::string() : std::string(text);
}

std::string bodyOf(SoupServerMessage* message)
{
    auto* body = soup_server_message_get_request_body(message);
    GBytes* bytes = soup_message_body_flatten(body);
    gsize size = 0;
    const auto* data = static_cast<const char*>(g_bytes_get_data(bytes, &size));
    std::string text = size == 0 ? std::string() : std::string(data, size);
    g_bytes_unref(bytes);
    return text;
}

HttpRequest requestOf(SoupServerMessage* message, const char* path)
{
    auto* headers = soup_server_message_get_request_headers(message);
    const auto header = [&](const char* name) { return orEmpty(soup_message_headers_get_list(headers, name)); };
    HttpRequest request;
    request.method = soup_server_message_get_method(message);
    request.path = path;
    request.query = orEmpty(g_uri_get_query(soup_server_message_get_uri(message)));
    request.body = bodyOf(message);
    request.host = header("Host");
    request.origin = header("Origin");
    request.contentType = header("Content-Type");
    request.cookie = header("Cookie");
    request.ifNoneMatch = header("If-None-Match");
    request.ifModifiedSince = header("If-Modified-Since");
    request.userAgent = header("User-Agent");
    return request;
}

} // namespace

HttpServer::HttpServer(Handler handler) : handler_(std::move(handler))
{
    // Paths stay as sent: what "%2F" and "%2e" mean is for the handler to decide.
    auto* server = g_object_new(SOUP_TYPE_SERVER, "raw-paths", TRUE, nullptr);
    server_.reset(SOUP_SERVER(server));
    soup_server_add_early_handler(server_.get(), nullptr, &HttpServer::onHeaders, this, nullptr);
    soup_server_add_handler(server_.get(), nullptr, &HttpServer::onRequest, this, nullptr);
}

HttpServer::~HttpServer()
{
    soup_server_disconnect(server_.get());
    soup_server_remove_handler(server_.get(), nullptr);
}

Result<std::uint16_t> HttpServer::listen(std::uint16_t port)
{
    GError* error = nullptr;
    if (soup_server_listen_local(server_.get(), port, SOUP_SERVER_LISTEN_IPV4_ONLY, &error) == FALSE) {
        Error reason{fmt::format("cannot listen on 127.0.0.1:{}: {}", port, error->message)};
        g_error_free(error);
        return std::unexpected(std::move(reason));
    }
    GSList* addresses = soup_server_get_uris(server_.get());
    const int taken = g_uri_get_port(static_cast<GUri*>(addresses->data));
    g_slist_free_full(addresses, [](void* uri) { g_uri_unref(static_cast<GUri*>(uri)); });
    return static_cast<std::uint16_t>(taken);
}

void HttpServer::onHeaders(SoupServer*, SoupServerMessage* message, const char*, GHashTable*, void*)
{
    BodyLimit::watch(message, longestBody);
}

void HttpServer::onRequest(SoupServer*, SoupServerMessage* message, const char* path, GHashTable*, void* self)
{
    if (BodyLimit::isExceeded(message)) {
        send(HttpAnswer::error(413, "too_large", "The body of the request is too large."), message);
        return;
    }
    send(static_cast<HttpServer*>(self)->handler_(requestOf(message, path)), message);
}

} // namespace corvane::server

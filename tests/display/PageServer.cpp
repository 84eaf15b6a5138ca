#include "display/PageServer.h"

#include <algorithm>

namespace corvane::testing {

PageServer::PageServer() : server_(soup_server_new(nullptr, nullptr))
{
    soup_server_add_handler(server_, nullptr, answer, this, nullptr);
    soup_server_listen_local(server_, 0, SOUP_SERVER_LISTEN_IPV4_ONLY, nullptr);
    auto* uris = soup_server_get_uris(server_);
    port_ = static_cast<unsigned>(g_uri_get_port(static_cast<GUri*>(uris->data)));
    g_slist_free_full(uris, [](gpointer uri) { g_uri_unref(static_cast<GUri*>(uri)); });
}

PageServer::~PageServer()
{
    soup_server_disconnect(server_);
    for (auto* message : silent_)
        g_object_unref(message);
    g_object_unref(server_);
}

std::size_t PageServer::hits(const std::string& path) const
{
    return static_cast<std::size_t>(std::ranges::count_if(requests, [&](const Request& request) {
        return request.path == path || request.path.starts_with(path + "?");
    }));
}

void PageServer::answer(SoupServer* /*server*/, SoupServerMessage* message, const char* path, GHashTable* /*query*/,
                        gpointer self)
{
    auto& server = *static_cast<PageServer*>(self);
    const auto found = server.pages.find(path);
    const char* query = g_uri_get_query(soup_server_message_get_uri(message));
    const auto header = [message](const char* name) {
        const char* value = soup_message_headers_get_one(soup_server_message_get_request_headers(message), name);
        return std::string(value == nullptr ? "" : value);
    };
    const auto* body = soup_server_message_get_request_body(message);
    auto& noted = found == server.pages.end() ? server.missed : server.requests;
    noted.push_back({.path = std::string(path) + (query == nullptr ? "" : std::string("?") + query),
                     .method = soup_server_message_get_method(message),
                     .userAgent = header("User-Agent"),
                     .accept = header("Accept"),
                     .body = body->data == nullptr ? std::string()
                                                   : std::string(body->data, static_cast<std::size_t>(body->length))});
    if (found == server.pages.end()) {
        soup_server_message_set_status(message, 404, nullptr);
        return;
    }
    const auto& page = found->second;
    if (page.isSilent) {
        soup_server_message_pause(message);
        server.silent_.push_back(static_cast<SoupServerMessage*>(g_object_ref(message)));
        return;
    }
    soup_server_message_set_status(message, page.status, nullptr);
    auto* headers = soup_server_message_get_response_headers(message);
    for (const auto& [name, value] : page.headers)
        soup_message_headers_replace(headers, name.c_str(), value.c_str());
    soup_server_message_set_response(message, page.type.c_str(), SOUP_MEMORY_COPY, page.body.data(), page.body.size());
}

} // namespace corvane::testing

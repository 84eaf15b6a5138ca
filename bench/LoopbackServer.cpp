#include "LoopbackServer.h"

#include <future>
#include <utility>

namespace corvane::bench {
namespace {

void answer(SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer data)
{
    const auto& document = *static_cast<const std::string*>(data);
    soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
    soup_server_message_set_response(message, "application/json", SOUP_MEMORY_STATIC, document.data(), document.size());
}

} // namespace

LoopbackServer::LoopbackServer(std::string document) : document_(std::move(document))
{
    std::promise<void> listening;
    auto isListening = listening.get_future();
    thread_ = std::thread([this, &listening] {
        g_main_context_push_thread_default(context_);
        auto* server = soup_server_new(nullptr, nullptr);
        soup_server_add_handler(server, nullptr, answer, &document_, nullptr);
        if (soup_server_listen_local(server, 0, SOUP_SERVER_LISTEN_IPV4_ONLY, nullptr) != FALSE) {
            auto* addresses = soup_server_get_uris(server);
            auto* first = g_uri_to_string(static_cast<GUri*>(addresses->data));
            base_ = first;
            g_free(first);
            g_slist_free_full(addresses, reinterpret_cast<GDestroyNotify>(g_uri_unref));
        }
        listening.set_value();
        g_main_loop_run(loop_);
        g_object_unref(server);
        g_main_context_pop_thread_default(context_);
    });
    isListening.wait();
}

LoopbackServer::~LoopbackServer()
{
    // From the loop's own thread: it may not run yet.
    g_main_context_invoke(
        context_,
        [](gpointer loop) -> gboolean {
            g_main_loop_quit(static_cast<GMainLoop*>(loop));
            return G_SOURCE_REMOVE;
        },
        loop_);
    thread_.join();
    g_main_loop_unref(loop_);
    g_main_context_unref(context_);
}

std::string LoopbackServer::url(std::string_view path) const
{
    return base_.empty() ? std::string() : base_ + std::string(path);
}

} // namespace corvane::bench

#include "http/BodyLimit.h"

#include "http/AnswerSending.h"

#include <memory>

namespace corvane::server {
namespace {

constexpr const char* dataKey = "corvane-body-limit";

/// What a sender may waste on a body that nobody keeps before the connection is closed.
constexpr std::size_t patience = std::size_t{4} * 1024 * 1024;

} // namespace

void BodyLimit::watch(SoupServerMessage* message, std::size_t longest)
{
    auto* headers = soup_server_message_get_request_headers(message);
    const auto announced = soup_message_headers_get_content_length(headers);
    std::unique_ptr<BodyLimit> limit(new BodyLimit(longest));
    if (announced > static_cast<goffset>(longest)) {
        limit->received_ = longest + 1;
        soup_message_body_set_accumulate(soup_server_message_get_request_body(message), FALSE);
        send(HttpAnswer::error(413, "too_large", "The body of the request is too large.").with("Connection", "close"),
             message);
    }
    g_signal_connect(message, "got-chunk", G_CALLBACK(&BodyLimit::onChunk), limit.get());
    g_object_set_data_full(G_OBJECT(message), dataKey, limit.release(),
                           [](void* self) { delete static_cast<BodyLimit*>(self); });
}

bool BodyLimit::isExceeded(SoupServerMessage* message)
{
    const auto* limit = static_cast<const BodyLimit*>(g_object_get_data(G_OBJECT(message), dataKey));
    return limit != nullptr && limit->received_ > limit->longest_;
}

void BodyLimit::onChunk(SoupServerMessage* message, GBytes* chunk, void* self)
{
    auto& limit = *static_cast<BodyLimit*>(self);
    limit.received_ += g_bytes_get_size(chunk);
    if (limit.received_ > limit.longest_)
        soup_message_body_set_accumulate(soup_server_message_get_request_body(message), FALSE);
    if (limit.received_ > patience)
        g_socket_shutdown(soup_server_message_get_socket(message), TRUE, TRUE, nullptr);
}

} // namespace corvane::server

#include "http/AnswerSending.h"

#include <memory>
#include <string>

namespace corvane::server {
namespace {

/// One body on its way into one message; ends with the message.
class ContentSending {
public:
    explicit ContentSending(std::shared_ptr<const ByteSource> content) : content_(std::move(content)) {}

    static void start(std::shared_ptr<const ByteSource> content, SoupServerMessage* message)
    {
        auto sending = std::make_unique<ContentSending>(std::move(content));
        sending->appendNext(message);
        g_signal_connect_data(
            message, "wrote-chunk", G_CALLBACK(+[](SoupServerMessage* sent, void* self) {
                static_cast<ContentSending*>(self)->appendNext(sent);
            }),
            sending.release(), [](void* self, GClosure*) { delete static_cast<ContentSending*>(self); },
            GConnectFlags(0));
    }

private:
    static constexpr std::size_t pieceSize = std::size_t{256} * 1024;

    void appendNext(SoupServerMessage* message)
    {
        if (sent_ >= content_->size())
            return;
        const auto piece = content_->read(sent_, pieceSize);
        if (piece.empty()) {
            // A file has become shorter than announced: the client must see a broken answer, not a complete one.
            g_socket_shutdown(soup_server_message_get_socket(message), TRUE, TRUE, nullptr);
            return;
        }
        sent_ += piece.size();
        soup_message_body_append(soup_server_message_get_response_body(message), SOUP_MEMORY_COPY, piece.data(),
                                 piece.size());
    }

    std::shared_ptr<const ByteSource> content_;
    std::uint64_t sent_ = 0;
};

void attachBody(const HttpAnswer& answer, SoupServerMessage* message)
{
    auto* headers = soup_server_message_get_response_headers(message);
    auto* body = soup_server_message_get_response_body(message);
    if (answer.status == 204 || answer.status == 304) {
        // No length: with 304 it would be taken for that of the document, and with 204 there must be none.
        soup_message_headers_set_encoding(headers, SOUP_ENCODING_NONE);
        return;
    }
    if (!answer.content) {
        soup_message_body_append(body, SOUP_MEMORY_COPY, answer.body.data(), answer.body.size());
        return;
    }
    soup_message_headers_set_content_length(headers, static_cast<goffset>(answer.content->size()));
    soup_message_body_set_accumulate(body, FALSE);
    if (soup_server_message_get_method(message) != SOUP_METHOD_HEAD && answer.content->size() > 0)
        ContentSending::start(answer.content, message);
}

} // namespace

void send(const HttpAnswer& answer, SoupServerMessage* message)
{
    soup_server_message_set_status(message, answer.status, nullptr);
    auto* headers = soup_server_message_get_response_headers(message);
    soup_message_headers_replace(headers, "X-Content-Type-Options", "nosniff");
    soup_message_headers_replace(headers, "Referrer-Policy", "no-referrer");
    for (const auto& [name, value] : answer.headers)
        soup_message_headers_append(headers, name.c_str(), value.c_str());
    attachBody(answer, message);
}

} // namespace corvane::server

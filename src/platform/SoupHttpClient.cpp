#include "platform/SoupHttpClient.h"

#include "async/MainLoop.h"
#include "base/Text.h"
#include "platform/GioCall.h"
#include "platform/HttpRedirect.h"

#include <algorithm>
#include <optional>
#include <string>

namespace corvane {
namespace {

using Stream = GObjectPtr<GInputStream>;

constexpr gsize chunkSize = gsize{16} << 10U;

std::unexpected<Error> failure(std::string_view sentence)
{
    return std::unexpected(Error{std::string(sentence)});
}

std::unexpected<Error> failure(const GErrorSlot& error)
{
    if (g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_TIMED_OUT))
        return failure("The server did not answer in time.");
    return failure(repairedUtf8(error->message));
}

/// Ends a request that takes too long in all. Its cancellable belongs to that request.
class Deadline {
public:
    explicit Deadline(std::chrono::milliseconds total)
        : cancellable_(adopt(g_cancellable_new())), timer_(callAfter(total, [this] {
              isOver_ = true;
              g_cancellable_cancel(cancellable_.get()); // may end the task and this object with it
          }))
    {
    }
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;
    // An answer that is not wanted to its end must not keep its connection.
    ~Deadline() { g_cancellable_cancel(cancellable_.get()); }

    GObjectPtr<GCancellable> cancellable() const { return retain(cancellable_.get()); }

    std::unexpected<Error> explain(Error error) const
    {
        return isOver_ ? failure("The server did not answer in time.") : std::unexpected(std::move(error));
    }

private:
    GObjectPtr<GCancellable> cancellable_;
    bool isOver_ = false;
    Subscription timer_;
};

bool isHeader(const std::pair<std::string, std::string>& header)
{
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
    const auto& [name, value] = header;
    return !name.empty() && name.find_first_of(" :") == std::string::npos && std::ranges::none_of(name, isControl) &&
           std::ranges::none_of(value, isControl);
}

Result<GObjectPtr<SoupMessage>> makeMessage(const HttpRequest& request)
{
    if (!request.url.isHttp())
        return failure("Only http and https addresses can be fetched.");
    if (!std::ranges::all_of(request.headers, isHeader))
        return failure("The request has a header that cannot be sent.");

    GErrorSlot error;
    const auto flags = static_cast<GUriFlags>(SOUP_HTTP_URI_FLAGS | G_URI_FLAGS_ENCODED);
    const auto uri = adopt(g_uri_parse(request.url.text().c_str(), flags, error.out()));
    if (!uri)
        return failure(error);
    const bool isPost = request.method == HttpMethod::post;
    auto message = adopt(soup_message_new_from_uri(isPost ? SOUP_METHOD_POST : SOUP_METHOD_GET, uri.get()));
    soup_message_add_flags(message.get(), SOUP_MESSAGE_NO_REDIRECT);
    if (isPost && !request.body.empty()) {
        const auto body = adopt(g_bytes_new(request.body.data(), request.body.size()));
        soup_message_set_request_body_from_bytes(message.get(), nullptr, body.get());
    }
    auto* headers = soup_message_get_request_headers(message.get());
    for (const auto& [name, value] : request.headers)
        soup_message_headers_replace(headers, name.c_str(), value.c_str());
    return message;
}

int statusOf(SoupMessage* message)
{
    return static_cast<int>(soup_message_get_status(message));
}

/// Where the answer redirects to; empty when it is the final one.
std::optional<std::string> redirectLocation(SoupMessage* message)
{
    const char* location = soup_message_headers_get_one(soup_message_get_response_headers(message), "Location");
    if (location == nullptr || !isRedirect(statusOf(message)))
        return std::nullopt;
    return location;
}

GioCall<Result<Stream>> headersArrived(SoupSession* session, SoupMessage* message, GObjectPtr<GCancellable> cancellable)
{
    return GioCall<Result<Stream>>(
        std::move(cancellable),
        [session, message](GCancellable* cancel, GAsyncReadyCallback done, gpointer data) {
            soup_session_send_async(session, message, G_PRIORITY_DEFAULT, cancel, done, data);
        },
        [](GObject* source, GAsyncResult* result) -> Result<Stream> {
            GErrorSlot error;
            auto stream = adopt(soup_session_send_finish(SOUP_SESSION(source), result, error.out()));
            if (!stream)
                return failure(error);
            return stream;
        });
}

GioCall<Result<GBytesPtr>> chunkArrived(GInputStream* stream, GObjectPtr<GCancellable> cancellable)
{
    return GioCall<Result<GBytesPtr>>(
        std::move(cancellable),
        [stream](GCancellable* cancel, GAsyncReadyCallback done, gpointer data) {
            g_input_stream_read_bytes_async(stream, chunkSize, G_PRIORITY_DEFAULT, cancel, done, data);
        },
        [](GObject* source, GAsyncResult* result) -> Result<GBytesPtr> {
            GErrorSlot error;
            auto chunk = adopt(g_input_stream_read_bytes_finish(G_INPUT_STREAM(source), result, error.out()));
            if (!chunk)
                return failure(error);
            return chunk;
        });
}

Task<Result<std::string>> readBody(Stream stream, std::size_t largest, GObjectPtr<GCancellable> cancellable)
{
    std::string body;
    while (true) {
        const auto chunk = co_await chunkArrived(stream.get(), retain(cancellable.get()));
        if (!chunk)
            co_return std::unexpected(chunk.error());
        gsize size = 0;
        const auto* bytes = static_cast<const char*>(g_bytes_get_data(chunk->get(), &size));
        if (size == 0)
            co_return body;
        if (size > largest - body.size())
            co_return failure("The answer of the server is too large.");
        body.append(bytes, size);
    }
}

Task<Result<HttpResponse>> exchange(GObjectPtr<SoupSession> session, HttpRequest request, HttpLimits limits)
{
    const Deadline deadline(limits.total);
    for (int redirects = 0;; ++redirects) {
        const auto message = makeMessage(request);
        if (!message)
            co_return std::unexpected(message.error());
        auto stream = co_await headersArrived(session.get(), message->get(), deadline.cancellable());
        if (!stream)
            co_return deadline.explain(stream.error());

        const auto location = redirectLocation(message->get());
        if (!location) {
            auto body = co_await readBody(std::move(*stream), limits.body(request.limit), deadline.cancellable());
            if (!body)
                co_return deadline.explain(body.error());
            co_return HttpResponse{statusOf(message->get()), std::move(*body)};
        }
        if (redirects == limits.redirects)
            co_return failure("The server redirects too often.");
        auto next = redirected(std::move(request), statusOf(message->get()), *location);
        if (!next)
            co_return std::unexpected(next.error());
        request = std::move(*next);
    }
}

} // namespace

SoupHttpClient::SoupHttpClient(std::string_view version, HttpLimits limits) : limits_(limits)
{
    const auto userAgent = "Corvane/" + std::string(version);
    session_ = adopt(SOUP_SESSION(g_object_new(
        SOUP_TYPE_SESSION, "user-agent", userAgent.c_str(), "timeout", static_cast<guint>(limits.silence.count()),
        "idle-timeout", static_cast<guint>(limits.silence.count()), "max-conns-per-host", 6, nullptr)));
    if (!soup_session_has_feature(session_.get(), SOUP_TYPE_CONTENT_DECODER))
        soup_session_add_feature_by_type(session_.get(), SOUP_TYPE_CONTENT_DECODER);
}

SoupHttpClient::~SoupHttpClient()
{
    soup_session_abort(session_.get());
}

Task<Result<HttpResponse>> SoupHttpClient::send(HttpRequest request)
{
    return exchange(retain(session_.get()), std::move(request), limits_);
}

} // namespace corvane

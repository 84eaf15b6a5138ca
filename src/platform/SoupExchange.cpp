#include "platform/SoupExchange.h"

#include "base/Text.h"
#include "platform/AnswerHead.h"
#include "platform/ChunkedSink.h"
#include "platform/GioCall.h"
#include "platform/GzipSink.h"
#include "platform/HttpRedirect.h"
#include "platform/RequestDeadline.h"

#include <algorithm>
#include <string>

namespace corvane {
namespace {

using Stream = GObjectPtr<GInputStream>;

constexpr gsize chunkSize = gsize{16} << 10U;
constexpr auto tooLarge = "The answer of the server is too large.";
constexpr auto cutOff = "The connection broke off amid the answer.";
constexpr auto unreadable = "The answer of the server cannot be read.";

std::unexpected<Error> failure(std::string_view sentence)
{
    return std::unexpected(Error{std::string(sentence)});
}

std::unexpected<Error> failure(const GErrorSlot& error)
{
    if (g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_TIMED_OUT))
        return failure(RequestDeadline::tooLate);
    return failure(repairedUtf8(error->message));
}

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
    soup_message_headers_replace(headers, "Accept-Encoding", "gzip");
    for (const auto& [name, value] : request.headers)
        soup_message_headers_replace(headers, name.c_str(), value.c_str());
    return message;
}

/// Where the answer redirects to; empty when it is the final one.
std::optional<std::string> redirectLocation(SoupMessage* message, int status)
{
    const char* location = soup_message_headers_get_one(soup_message_get_response_headers(message), "Location");
    if (location == nullptr || !isRedirect(status))
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
            // Behind drawing: a fast server has the next chunk ready at once, again and again.
            g_input_stream_read_bytes_async(stream, chunkSize, G_PRIORITY_DEFAULT_IDLE, cancel, done, data);
        },
        [](GObject* source, GAsyncResult* result) -> Result<GBytesPtr> {
            GErrorSlot error;
            auto chunk = adopt(g_input_stream_read_bytes_finish(G_INPUT_STREAM(source), result, error.out()));
            if (!chunk)
                return failure(error);
            return chunk;
        });
}

/// Hands decoded bytes on as long as they are not too many.
class LimitedSink final : public ByteSink {
public:
    LimitedSink(ByteSink& next, std::uint64_t largest, DownloadProgress progress, DownloadObserver observer)
        : next_(next), largest_(largest), progress_(progress), observer_(std::move(observer))
    {
    }

    Result<void> write(std::string_view bytes) override
    {
        if (bytes.empty())
            return {};
        if (bytes.size() > largest_ - progress_.received)
            return failure(tooLarge);
        auto taken = next_.write(bytes);
        if (!taken)
            return taken;
        progress_.received += bytes.size();
        if (observer_)
            observer_(progress_);
        return {};
    }

private:
    ByteSink& next_;
    std::uint64_t largest_;
    DownloadProgress progress_;
    DownloadObserver observer_;
};

/// The way of a body from the network to the sink that wants it.
class BodyPath {
public:
    BodyPath(const SoupAnswer& answer, ByteSink& sink, std::uint64_t largest, DownloadObserver observer)
        : isChunked_(answer.isChunked), isCompressed_(answer.isCompressed()), length_(answer.length),
          decoded_(sink, largest, {.total = isCompressed_ ? std::nullopt : length_}, std::move(observer)),
          travelling_(isCompressed_ ? static_cast<ByteSink&>(gzip_) : decoded_, largest + compressionRoom, {}, {})
    {
    }
    BodyPath(const BodyPath&) = delete;
    BodyPath& operator=(const BodyPath&) = delete;

    Result<void> write(std::string_view bytes)
    {
        arrived_ += bytes.size();
        return isChunked_ ? chunked_.write(bytes) : travelling_.write(bytes);
    }

    /// Whether nothing more can belong to the body.
    bool isOver() const { return isChunked_ && chunked_.isComplete(); }

    /// Whether nothing is missing when the connection has ended.
    bool isWhole() const
    {
        const bool hasArrived = isChunked_ ? chunked_.isComplete() : length_.value_or(arrived_) == arrived_;
        return hasArrived && gzip_.isComplete();
    }

private:
    // What does not get smaller gets this much larger at most; more is not worth its time.
    static constexpr std::uint64_t compressionRoom = std::uint64_t{64} << 10U;

    bool isChunked_;
    bool isCompressed_;
    std::optional<std::uint64_t> length_;
    std::uint64_t arrived_ = 0;
    LimitedSink decoded_;
    GzipSink gzip_{decoded_};
    LimitedSink travelling_; // without chunks
    ChunkedSink chunked_{travelling_};
};

} // namespace

int SoupAnswer::status() const
{
    return static_cast<int>(soup_message_get_status(message.get()));
}

bool SoupAnswer::isCompressed() const
{
    const char* encoding =
        soup_message_headers_get_list(soup_message_get_response_headers(message.get()), "Content-Encoding");
    return encoding != nullptr && (lowercased(encoding) == "gzip" || lowercased(encoding) == "x-gzip");
}

Task<Result<SoupAnswer>> finalAnswer(GObjectPtr<SoupSession> session, HttpRequest request, int redirects,
                                     GObjectPtr<GCancellable> cancellable)
{
    for (int followed = 0;; ++followed) {
        auto message = makeMessage(request);
        if (!message)
            co_return std::unexpected(message.error());
        AnswerHead head(message->get(), retain(cancellable.get()));
        auto stream = co_await headersArrived(session.get(), message->get(), retain(cancellable.get()));
        if (stream)
            head.arrived();
        if (head.isBroken())
            co_return failure(unreadable);
        if (!stream)
            co_return std::unexpected(stream.error());

        SoupAnswer answer{*std::move(message), *std::move(stream), head.isChunked(), head.length()};
        const auto location = redirectLocation(answer.message.get(), answer.status());
        if (!location)
            co_return answer;
        if (followed == redirects)
            co_return failure("The server redirects too often.");
        auto next = redirected(std::move(request), answer.status(), *location);
        if (!next)
            co_return std::unexpected(next.error());
        request = *std::move(next);
    }
}

Task<Result<void>> receive(SoupAnswer answer, ByteSink* sink, std::uint64_t largest, DownloadObserver observer,
                           GObjectPtr<GCancellable> cancellable)
{
    BodyPath path(answer, *sink, largest, std::move(observer));
    if (answer.length.value_or(0) > largest && !answer.isCompressed())
        co_return failure(tooLarge);
    while (!path.isOver()) {
        const auto chunk = co_await chunkArrived(answer.body.get(), retain(cancellable.get()));
        if (!chunk)
            co_return std::unexpected(chunk.error());
        gsize size = 0;
        const auto* bytes = static_cast<const char*>(g_bytes_get_data(chunk->get(), &size));
        if (size == 0)
            break;
        auto taken = path.write({bytes, size});
        if (!taken)
            co_return taken;
    }
    if (!path.isWhole())
        co_return failure(cutOff);
    co_return Result<void>();
}

} // namespace corvane

#include "platform/SoupHttpClient.h"

#include "platform/RequestDeadline.h"
#include "platform/SoupExchange.h"

#include <algorithm>
#include <string>
#include <utility>

namespace corvane {
namespace {

/// A body that is kept in memory.
class BodyText final : public ByteSink {
public:
    /// Room that no byte comes for stays untouched.
    explicit BodyText(std::uint64_t expected) { text_.reserve(static_cast<std::size_t>(expected)); }

    Result<void> write(std::string_view bytes) override
    {
        text_ += bytes;
        return {};
    }
    std::string take() { return std::move(text_); }

private:
    std::string text_;
};

Task<Result<HttpResponse>> fetched(GObjectPtr<SoupSession> session, HttpRequest request, HttpLimits limits)
{
    const RequestDeadline deadline(limits.total);
    const auto largest = limits.body(request.limit);
    auto answer =
        co_await finalAnswer(std::move(session), std::move(request), limits.redirects, deadline.cancellable());
    if (!answer)
        co_return deadline.explain(answer.error());
    const int status = answer->status();
    BodyText body(std::min(answer->length.value_or(0), largest));
    const auto received = co_await receive(*std::move(answer), &body, largest, nullptr, deadline.cancellable());
    if (!received)
        co_return deadline.explain(received.error());
    co_return HttpResponse{status, body.take()};
}

Task<Result<int>> downloaded(GObjectPtr<SoupSession> session, Url url, ByteSink* sink, DownloadObserver observer,
                             HttpLimits limits)
{
    const RequestDeadline deadline(std::nullopt);
    HttpRequest request{.url = std::move(url)};
    auto answer =
        co_await finalAnswer(std::move(session), std::move(request), limits.redirects, deadline.cancellable());
    if (!answer)
        co_return std::unexpected(answer.error());
    const int status = answer->status();
    if (status < 200 || status > 299)
        co_return status;
    const auto received =
        co_await receive(*std::move(answer), sink, limits.download, std::move(observer), deadline.cancellable());
    if (!received)
        co_return std::unexpected(received.error());
    co_return status;
}

} // namespace

SoupHttpClient::SoupHttpClient(std::string_view version, HttpLimits limits) : limits_(limits)
{
    const auto userAgent = "Corvane/" + std::string(version);
    session_ = adopt(SOUP_SESSION(g_object_new(
        SOUP_TYPE_SESSION, "user-agent", userAgent.c_str(), "timeout", static_cast<guint>(limits.silence.count()),
        "idle-timeout", static_cast<guint>(limits.silence.count()), "max-conns-per-host", 6, nullptr)));
    // Its decoder takes what is cut off for whole, and works through any number of empty blocks in one turn.
    soup_session_remove_feature_by_type(session_.get(), SOUP_TYPE_CONTENT_DECODER);
}

SoupHttpClient::~SoupHttpClient()
{
    soup_session_abort(session_.get());
}

Task<Result<HttpResponse>> SoupHttpClient::send(HttpRequest request)
{
    return fetched(retain(session_.get()), std::move(request), limits_);
}

Task<Result<int>> SoupHttpClient::download(Url url, ByteSink* sink, DownloadObserver observer)
{
    return downloaded(retain(session_.get()), std::move(url), sink, std::move(observer), limits_);
}

} // namespace corvane

#include "platform/AnswerHead.h"

#include "base/Text.h"

#include <charconv>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

namespace corvane {
namespace {

/// One value of Content-Length (RFC 9110, 8.6), which libsoup and files can count.
std::optional<std::uint64_t> lengthOf(std::string_view text)
{
    std::uint64_t length = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), length);
    if (error != std::errc() || rest != text.data() + text.size() || length > std::numeric_limits<std::int64_t>::max())
        return std::nullopt;
    return length;
}

} // namespace

AnswerHead::AnswerHead(SoupMessage* message, GObjectPtr<GCancellable> cancellable)
    : message_(message), cancellable_(std::move(cancellable)),
      // In HTTP/1 the status is set when all headers are there and before they are used.
      statusChanged_(SignalConnection::to<&AnswerHead::statusChanged>(message, "notify::status-code", this))
{
}

void AnswerHead::statusChanged(GParamSpec*)
{
    const int status = static_cast<int>(soup_message_get_status(message_));
    isChunked_ = false;
    length_.reset(); // of an earlier answer to the same message
    if (status >= 100 && status < 200 && ++interimAnswers_ == mostInterimAnswers) {
        isBroken_ = true;
        g_cancellable_cancel(cancellable_.get());
    }
    if (status < 200 || status == 204 || status == 304 || isFramed())
        return; // no body, or one whose end the protocol itself tells

    auto* headers = soup_message_get_response_headers(message_);
    isChunked_ = soup_message_headers_get_encoding(headers) == SOUP_ENCODING_CHUNKED;
    if (isChunked_)
        soup_message_headers_set_encoding(headers, SOUP_ENCODING_EOF);
    else
        readLength(headers);
}

bool AnswerHead::isFramed() const
{
    return soup_message_get_http_version(message_) == SOUP_HTTP_2_0;
}

void AnswerHead::arrived()
{
    if (isFramed())
        readLength(soup_message_get_response_headers(message_));
}

/// A server may repeat the length, but not say another one (RFC 9112, 6.3).
void AnswerHead::readLength(SoupMessageHeaders* headers)
{
    const char* list = soup_message_headers_get_list(headers, "Content-Length");
    if (list == nullptr)
        return;
    std::string_view rest = list;
    bool hasMore = true;
    while (!isBroken_ && hasMore) {
        const auto comma = rest.find(',');
        const auto length = lengthOf(trimmed(rest.substr(0, comma)));
        isBroken_ = !length || (length_ && length_ != length);
        length_ = length;
        hasMore = comma != std::string_view::npos;
        rest.remove_prefix(hasMore ? comma + 1 : rest.size());
    }
    if (isBroken_ && !isFramed())
        soup_message_headers_set_encoding(headers, SOUP_ENCODING_EOF);
}

} // namespace corvane

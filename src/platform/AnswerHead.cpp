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
      // The status is set when all headers are there and before they are used.
      statusChanged_(SignalConnection::to<&AnswerHead::statusChanged>(message, "notify::status-code", this))
{
}

void AnswerHead::statusChanged(GParamSpec*)
{
    const int status = static_cast<int>(soup_message_get_status(message_));
    if (status >= 100 && status < 200 && ++interimAnswers_ == mostInterimAnswers) {
        isBroken_ = true;
        g_cancellable_cancel(cancellable_.get());
    }
    if (status < 200 || status == 204 || status == 304)
        return; // no body

    auto* headers = soup_message_get_response_headers(message_);
    isChunked_ = soup_message_headers_get_encoding(headers) == SOUP_ENCODING_CHUNKED;
    if (isChunked_)
        soup_message_headers_set_encoding(headers, SOUP_ENCODING_EOF);
    else
        readLength(headers);
}

/// A server may repeat the length, but not say another one (RFC 9112, 6.3).
void AnswerHead::readLength(SoupMessageHeaders* headers)
{
    length_.reset();
    const char* list = soup_message_headers_get_list(headers, "Content-Length");
    if (list == nullptr)
        return;
    for (std::string_view rest = list; !isBroken_ && !rest.empty();) {
        const auto comma = rest.find(',');
        const auto length = lengthOf(trimmed(rest.substr(0, comma)));
        isBroken_ = !length || (length_ && length_ != length);
        length_ = length;
        rest.remove_prefix(comma == std::string_view::npos ? rest.size() : comma + 1);
    }
    if (isBroken_)
        soup_message_headers_set_encoding(headers, SOUP_ENCODING_EOF);
}

} // namespace corvane

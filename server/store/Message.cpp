#include "store/Message.h"

#include "base/Text.h"
#include "base/Url.h"

#include <algorithm>

#include <fmt/format.h>

namespace corvane::server {
namespace {

bool isControlInBody(char c)
{
    return (static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\r' && c != '\t') || c == 0x7F;
}

bool isLink(std::string_view text)
{
    const auto url = Url::parse(text);
    return url && (url->isHttp() || url->scheme() == "mailto");
}

} // namespace

Result<Message> Message::checked(std::string_view title, std::string_view body, std::string_view url)
{
    const auto refuse = [](std::string reason) { return std::unexpected(Error{std::move(reason)}); };
    const auto line = trimmed(title);
    if (!isValidUtf8(line) || !isValidUtf8(body))
        return refuse("title and body must be UTF-8 text");
    if (line.empty() || firstCodePoints(line, longestTitle) != line)
        return refuse(fmt::format("the title must have 1 to {} characters", longestTitle));
    if (safeTitle(line) != line)
        return refuse("the title must be one line without control characters");
    if (body.size() > longestBody)
        return refuse(fmt::format("the body must have at most {} bytes", longestBody));
    if (std::ranges::any_of(body, isControlInBody))
        return refuse("the body must have no control characters but line breaks and tabs");
    if (url.size() > longestUrl || (!url.empty() && !isLink(url)))
        return refuse(fmt::format("the link must be an http, https or mailto address of at most {} bytes", longestUrl));
    return Message{std::string(line), std::string(body), std::string(url)};
}

} // namespace corvane::server

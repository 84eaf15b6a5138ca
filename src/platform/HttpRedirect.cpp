#include "platform/HttpRedirect.h"

#include "base/Text.h"
#include "platform/GLibHandle.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

namespace corvane {
namespace {

std::optional<Url> resolved(const Url& base, std::string_view location)
{
    if (auto absolute = Url::parse(location))
        return absolute;
    // Any scheme in front makes the strict reader check the characters of a relative reference.
    static constexpr std::string_view scheme = "reference:";
    const auto reference = Url::parse(std::string(scheme) + std::string(location));
    if (!reference)
        return std::nullopt;
    const auto text = adopt(g_uri_resolve_relative(base.text().c_str(), reference->text().c_str() + scheme.size(),
                                                   G_URI_FLAGS_ENCODED, nullptr));
    return text ? Url::parse(text.get()) : std::nullopt;
}

bool describesBody(std::string_view header)
{
    return header.starts_with("content-");
}

} // namespace

bool isRedirect(int status)
{
    static constexpr std::array followed{301, 302, 303, 307, 308};
    return std::ranges::find(followed, status) != followed.end();
}

Result<HttpRequest> redirected(HttpRequest request, int status, std::string_view location)
{
    const auto target = resolved(request.url, location);
    if (!target || !target->isHttp())
        return std::unexpected(Error{"The server redirected to an address that cannot be fetched."});
    if (request.url.scheme() == "https" && target->scheme() != "https")
        return std::unexpected(Error{"The server redirected from a secure to an insecure address."});

    const bool dropsBody = status != 307 && status != 308 && request.method == HttpMethod::post;
    const bool leavesOrigin = target->origin() != request.url.origin();
    std::erase_if(request.headers, [&](const auto& header) {
        const auto name = lowercased(header.first);
        return (dropsBody && describesBody(name)) || (leavesOrigin && name == "authorization");
    });
    if (dropsBody) {
        request.method = HttpMethod::get;
        request.body.clear();
    }
    request.url = *target;
    return request;
}

} // namespace corvane

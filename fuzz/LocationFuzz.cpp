#include "Target.h"
#include "platform/HttpRedirect.h"

#include <algorithm>

namespace corvane::fuzz {
namespace {

bool hasHeader(const HttpRequest& request, std::string_view name)
{
    return std::ranges::any_of(request.headers, [name](const auto& header) { return header.first == name; });
}

void requireRedirect(const HttpRequest& request, int status, std::string_view location)
{
    const auto next = redirected(request, status, location);
    const auto absolute = Url::parse(location);
    if (!next) {
        const bool isWeaker = absolute && request.url.scheme() == "https" && absolute->scheme() != "https";
        require(!absolute || !absolute->isHttp() || isWeaker, "a whole web address is followed");
        return;
    }
    require(next->url.isHttp() && Url::parse(next->url.text()) == next->url, "redirects lead to web addresses");
    require(!absolute || next->url == *absolute, "a whole address is followed as it is");
    require(request.url.scheme() != "https" || next->url.scheme() == "https", "redirects never lead out of https");
    const bool staysAtHome = next->url.origin() == request.url.origin();
    require(hasHeader(*next, "Authorization") == staysAtHome, "credentials stay with their origin");
    const bool keepsBody = status == 307 || status == 308;
    require((next->method == HttpMethod::post) == keepsBody && next->body.empty() != keepsBody &&
                hasHeader(*next, "Content-Type") == keepsBody,
            "307 and 308 alone repeat a body");

    const auto again = redirected(request, status, next->url.text());
    require(again && again->url == next->url, "a relative address and its whole form lead to the same place");
}

} // namespace

void readInput(std::string_view bytes)
{
    for (const auto* base : {"https://push.example/api/v1/list?after=3", "http://127.0.0.1:3002"}) {
        const HttpRequest request{.url = *Url::parse(base),
                                  .method = HttpMethod::post,
                                  .headers = {{"Authorization", "Bearer t"}, {"Content-Type", "application/json"}},
                                  .body = "{}"};
        for (const int status : {301, 303, 307})
            requireRedirect(request, status, bytes);
    }
}

} // namespace corvane::fuzz

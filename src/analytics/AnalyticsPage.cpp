#include "analytics/AnalyticsPage.h"

#include "base/Json.h"

#include <algorithm>
#include <array>

namespace corvane {
namespace {

struct Placeholder {
    std::string_view name;
    std::string value;
};

/// A JSON string is a literal of JavaScript, too; without "<" it cannot end the script element it stands in.
std::string scriptLiteral(std::string_view text)
{
    std::string literal;
    for (const char c : compactJson(Json(text))) {
        if (c == '<')
            literal += "\\u003c";
        else
            literal += c;
    }
    return literal;
}

/// A policy names an origin in a narrower alphabet than addresses have: an IPv6 literal, for one, has no form there,
/// and then every origin of the scheme is allowed.
std::string policySource(const Url& url)
{
    static constexpr std::string_view allowed = "abcdefghijklmnopqrstuvwxyz0123456789-.:/";
    const auto origin = url.origin();
    return origin.find_first_not_of(allowed) == std::string::npos ? origin : url.scheme() + ":";
}

} // namespace

std::string analyticsPage(std::string_view resource, const Endpoints& endpoints)
{
    const std::array placeholders{
        Placeholder{.name = "__GA4_DEBUG_MODE__", .value = "false"},
        Placeholder{.name = "__TAG_URL__", .value = scriptLiteral(endpoints.tag.text())},
        Placeholder{.name = "__TAG_SOURCE__", .value = policySource(endpoints.tag)},
        Placeholder{.name = "__MEASUREMENT_ID__", .value = scriptLiteral(endpoints.measurementId)},
    };
    std::string page;
    while (!resource.empty()) {
        const auto found = std::ranges::find_if(
            placeholders, [&](const Placeholder& placeholder) { return resource.starts_with(placeholder.name); });
        if (found == placeholders.end()) {
            page += resource.front();
            resource.remove_prefix(1);
        } else {
            page += found->value;
            resource.remove_prefix(found->name.size());
        }
    }
    return page;
}

} // namespace corvane

#include "Target.h"
#include "base/Json.h"
#include "base/Text.h"
#include "browser/PageReport.h"

namespace corvane::fuzz {
namespace {

constexpr std::size_t longestBody = 64 * 1024;
constexpr std::size_t deepestBody = 64;

void requireLimits(std::string_view body, const PageReport& report)
{
    require(!report.bindingToken ||
                (!report.bindingToken->empty() && trimmed(*report.bindingToken) == *report.bindingToken),
            "a token is neither blank nor untrimmed");
    require(parseJson(body, deepestBody).has_value(), "a message is JSON and not deep");
    const auto padded = std::string(body) + std::string(longestBody - body.size(), ' ');
    require(readPageReport(padded) == report, "blanks up to the limit change nothing");
    require(!readPageReport(padded + ' '), "a body over the limit is ignored");
}

} // namespace

void readInput(std::string_view bytes)
{
    const auto report = readPageReport(bytes);
    if (report && bytes.size() <= longestBody)
        requireLimits(bytes, *report);
    require(!report || bytes.size() <= longestBody, "a body over the limit is ignored");

    // The same as text: a page may post an object or its JSON, or just the name of an action.
    if (!isValidUtf8(bytes))
        return;
    const auto quoted = compactJson(Json(std::string(bytes)));
    const auto document = parseJson(bytes, deepestBody);
    if (quoted.size() > longestBody || !document)
        return;
    require(!document->is_object() || readPageReport(quoted) == report, "an object says the same as its text");
    const auto deep = std::string(deepestBody, '[') + std::string(bytes) + std::string(deepestBody, ']');
    require(!readPageReport(deep), "what lies deep is ignored");
}

} // namespace corvane::fuzz

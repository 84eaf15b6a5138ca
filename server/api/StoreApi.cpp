#include "api/StoreApi.h"

#include "base/Json.h"

namespace corvane::server {

void StoreApi::addTo(Router& router)
{
    router.add("GET", "/lookup", [this](const auto& request) { return lookUp(request); });
}

HttpAnswer StoreApi::lookUp(const HttpRequest& request) const
{
    constexpr std::size_t longestVersionFile = 4096;
    const auto id = request.queryValue("id");
    if (!id || id->empty() || id->find_first_not_of("0123456789") != std::string::npos)
        return HttpAnswer::error(400, "bad_field", "The query must name one \"id\", a number.");

    const auto text = published_.text(versionPath, longestVersionFile);
    const auto document = text ? parseJson(*text) : std::nullopt;
    const auto* version = document ? textOf(member(*document, "version")) : nullptr;
    auto results = Json::array();
    if (version != nullptr && !version->empty())
        results.push_back({{"version", *version}});
    const auto count = results.size();
    return HttpAnswer::json(200, {{"resultCount", count}, {"results", std::move(results)}});
}

} // namespace corvane::server

#include "Target.h"
#include "base/Json.h"
#include "base/Text.h"
#include "catalogue/SiteDocument.h"
#include "support/RunTask.h"

#include <glib.h>

namespace corvane::fuzz {
namespace {

std::optional<std::vector<Site>> readInTurns(std::string_view bytes, std::size_t sliceSize)
{
    std::optional<std::optional<std::vector<Site>>> result;
    TaskScope scope;
    scope.start(testing::keepResult(decodeSitesInTurns(bytes, sliceSize), &result));
    while (!result)
        g_main_context_iteration(nullptr, TRUE);
    return *std::move(result);
}

std::string documentOf(const std::vector<Site>& sites)
{
    auto document = Json::array();
    for (const auto& [service, url, description] : sites)
        document.push_back({{"service", service}, {"url", url}, {"description", description}});
    return compactJson(document);
}

} // namespace

void readInput(std::string_view bytes)
{
    const auto sites = decodeSites(bytes);
    for (const auto sliceSize : {std::size_t{1}, std::size_t{100}, JsonSlices::usualSize})
        require(readInTurns(bytes, sliceSize) == sites, "a document reads the same in one piece and in many");
    if (!sites)
        return;
    const auto document = parseJson(bytes);
    require(document && document->is_array() && document->size() == sites->size(), "a catalogue is a list in JSON");
    for (const auto& [service, url, description] : *sites)
        require(isValidUtf8(service) && isValidUtf8(url) && isValidUtf8(description), "texts are UTF-8");
    require(decodeSites(documentOf(*sites)) == sites, "a catalogue that is written is read again");
}

} // namespace corvane::fuzz

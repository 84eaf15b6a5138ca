#include "catalogue/SiteDocument.h"

#include "async/MainLoop.h"
#include "base/Json.h"
#include "catalogue/SiteReader.h"

#include <utility>

namespace corvane {

std::optional<std::vector<Site>> decodeSites(std::string_view bytes)
{
    // The parser would take a null byte for the end of the text.
    if (bytes.contains('\0'))
        return std::nullopt;
    SiteReader reader;
    if (!Json::sax_parse(bytes.begin(), bytes.end(), &reader))
        return std::nullopt;
    return reader.takeSites();
}

Task<std::optional<std::vector<Site>>> decodeSitesInTurns(std::string_view bytes, std::size_t sliceSize)
{
    SiteReader reader;
    JsonSlices slices(bytes, sliceSize);
    bool isFirst = true;
    while (const auto slice = slices.next()) {
        if (!Json::sax_parse(slice->begin(), slice->end(), &reader))
            co_return std::nullopt;
        if (std::exchange(isFirst, false))
            reader.expect(static_cast<double>(bytes.size()) / static_cast<double>(slice->size()));
        if (!slices.isComplete())
            co_await IdleTurn();
    }
    if (!slices.isComplete())
        co_return std::nullopt;
    co_return reader.takeSites();
}

} // namespace corvane

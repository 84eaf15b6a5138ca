#include "catalogue/SiteListFetcher.h"

#include "catalogue/JsonSlices.h"
#include "catalogue/RedirectDocument.h"
#include "catalogue/SiteDocument.h"

#include <string_view>
#include <utility>

namespace corvane {
namespace {

constexpr std::string_view documentName = "sites.json";

std::unexpected<Error> failure(std::string message)
{
    return std::unexpected(Error{std::move(message)});
}

} // namespace

SiteListFetcher::SiteListFetcher(HttpClient& http, const Clock& clock, const Endpoints& endpoints)
    : publishing_(http), clock_(clock), defaultSitesURL_(endpoints.defaultSitesURL().text()),
      defaultSitesWhatsNewURL_(endpoints.defaultSitesWhatsNewURL().text())
{
}

Task<Result<SiteListFetcher::PublishedList>> SiteListFetcher::fetchSites(std::optional<std::string> sourceUrl) const
{
    const auto time = checkTime(clock_);
    auto address = sourceUrl && !sourceUrl->empty() ? *std::move(sourceUrl) : defaultSitesURL_;
    if (!Url::parse(cacheBusted(address, time)))
        co_return failure("Invalid sites URL: " + address);
    auto document = co_await publishing_.fetch(address, time, BodyLimit::json);
    if (!document)
        co_return failure("Network request failed — check your connection.");

    auto elsewhere = co_await decodeRedirectInTurns(*document);
    if (elsewhere) {
        address = *std::move(elsewhere);
        document = co_await publishing_.fetch(address, time, BodyLimit::json);
        if (!document)
            co_return failure("Failed to fetch redirected sites URL: " + address);
    }
    auto sites = co_await decodeSitesInTurns(*document, JsonSlices::usualSize);
    if (!sites)
        co_return failure("Remote sites.json could not be parsed.");
    co_return PublishedList{std::move(address), time, *std::move(document), *std::move(sites)};
}

Task<std::optional<std::string>> SiteListFetcher::fetchWhatsNewHTML(std::string address, CheckTime time) const
{
    const auto name = address.rfind(documentName);
    auto page = name == std::string::npos ? defaultSitesWhatsNewURL_
                                          : address.replace(name, documentName.size(), "whatsnew.html");
    auto html = co_await publishing_.fetchPage(std::move(page), time);
    co_return html;
}

Task<std::vector<ArchiveEntry>> SiteListFetcher::fetchArchives(std::string address, CheckTime time) const
{
    const auto name = address.rfind(documentName);
    if (name == std::string::npos)
        co_return std::vector<ArchiveEntry>();
    auto entries = co_await publishing_.fetchArchives(address.substr(0, name) + "archive/", time);
    co_return entries;
}

} // namespace corvane

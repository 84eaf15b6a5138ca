#include "catalogue/SiteListManager.h"

#include "async/MainLoop.h"
#include "catalogue/JsonSlices.h"
#include "catalogue/SiteDocument.h"

#include <tuple>
#include <utility>

namespace corvane {

SiteListManager::SiteListManager(FileStore& files, const Resources& resources, const Places& places,
                                 SiteListFetcher fetcher)
    : files_(files), resources_(resources), file_(places.sites() / "sites.json"), fetcher_(std::move(fetcher))
{
    loadSites();
}

void SiteListManager::loadSites()
{
    ++newestLoad_;
    sites_.set(files_.read(file_)
                   .and_then(decodeSites)
                   .or_else([this] { return resources_.read("sites", "json").and_then(decodeSites); })
                   .value_or(std::vector<Site>()));
}

void SiteListManager::applyPendingSiteData(std::string_view data)
{
    std::ignore = files_.makeFolder(file_.parent_path());
    if (const auto previous = files_.read(file_)) {
        auto backup = file_;
        backup += ".bak";
        std::ignore = files_.remove(backup);
        std::ignore = files_.write(backup, *previous);
    }
    std::ignore = files_.write(file_, data);
    hasPendingSiteUpdate_.set(false);
    loads_.start(loadSitesInTurns(++newestLoad_));
}

Task<void> SiteListManager::loadSitesInTurns(std::uint64_t load)
{
    auto document = files_.read(file_).value_or(std::string()); // no catalogue, as a file that cannot be read is none
    auto sites = co_await decodeSitesInTurns(document, JsonSlices::usualSize);
    if (!sites) {
        document = resources_.read("sites", "json").value_or(std::string());
        sites = co_await decodeSitesInTurns(document, JsonSlices::usualSize);
    }
    if (load == newestLoad_)
        sites_.set(std::move(sites).value_or(std::vector<Site>()));
}

Task<SiteListManager::CheckResult> SiteListManager::checkForUpdates(std::optional<std::string> sourceUrl)
{
    const auto hold = checking_.hold();
    auto result = co_await fetchRemoteSites(std::move(sourceUrl));
    co_return result;
}

Task<std::int64_t> SiteListManager::backgroundCheck(std::optional<std::string> sourceUrl)
{
    const auto result = co_await fetchRemoteSites(std::move(sourceUrl));
    if (std::holds_alternative<NetworkError>(result))
        co_return -1;
    const bool isUpdate = std::holds_alternative<UpdateAvailable>(result);
    hasPendingSiteUpdate_.set(isUpdate);
    co_return isUpdate ? 1 : 0;
}

Task<SiteListManager::CheckResult> SiteListManager::fetchRemoteSites(std::optional<std::string> sourceUrl) const
{
    auto published = co_await fetcher_.fetchSites(std::move(sourceUrl));
    if (!published)
        co_return NetworkError{std::move(published.error().message)};
    auto whatsNewHTML = co_await fetcher_.fetchWhatsNewHTML(published->address, published->time);
    auto archives = co_await fetcher_.fetchArchives(published->address, published->time);
    // The user may have accepted this very list during the slow fetches; what has been accepted comes into use first.
    while (!loads_.isEmpty())
        co_await IdleTurn();
    if (published->sites == *sites_)
        co_return Current{std::move(whatsNewHTML), std::move(archives)};
    co_return UpdateAvailable{std::move(published->document), std::move(whatsNewHTML), std::move(archives)};
}

} // namespace corvane

#include "catalogue/SiteListManager.h"

#include "catalogue/SiteDocument.h"

#include <tuple>

namespace corvane {

SiteListManager::SiteListManager(FileStore& files, const Resources& resources, const Places& places)
    : files_(files), resources_(resources), file_(places.data / "sites" / "sites.json")
{
    loadSites();
}

void SiteListManager::loadSites()
{
    sites_.set(files_.read(file_)
                   .and_then(decodeSites)
                   .or_else([this] { return resources_.read("sites", "json").and_then(decodeSites); })
                   .value_or(std::vector<Site>()));
}

void SiteListManager::applyPendingSiteData(std::string_view data)
{
    std::ignore = files_.makeFolder(file_.parent_path());
    if (files_.exists(file_)) {
        auto backup = file_;
        backup += ".bak";
        std::ignore = files_.remove(backup);
        if (const auto previous = files_.read(file_))
            std::ignore = files_.write(backup, *previous);
    }
    std::ignore = files_.write(file_, data);
    hasPendingSiteUpdate_.set(false);
    loadSites();
}

} // namespace corvane

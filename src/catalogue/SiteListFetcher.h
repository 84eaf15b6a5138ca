#pragma once

#include "async/Task.h"
#include "base/Error.h"
#include "catalogue/PublishingClient.h"
#include "catalogue/Site.h"
#include "ports/Clock.h"
#include "ports/Endpoints.h"

#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// Fetches the published catalogue and what stands beside it: its release notes and their archive. Outlives its tasks.
class SiteListFetcher {
public:
    struct PublishedList {
        std::string address; // where the document was found, as text
        CheckTime time;
        std::string document; // the bytes as they came
        std::vector<Site> sites;
    };

    /// The ports must outlive this object.
    SiteListFetcher(HttpClient& http, const Clock& clock, const Endpoints& endpoints);

    /// The catalogue at `sourceUrl`, or at the usual address when that is absent or empty. Follows one document that
    /// names another address.
    Task<Result<PublishedList>> fetchSites(std::optional<std::string> sourceUrl) const;

    /// The release notes beside the catalogue document at `address`; empty when there are none to be had.
    Task<std::optional<std::string>> fetchWhatsNewHTML(std::string address, CheckTime time) const;

    /// The earlier release notes beside the catalogue document at `address`.
    Task<std::vector<ArchiveEntry>> fetchArchives(std::string address, CheckTime time) const;

private:
    PublishingClient publishing_;
    const Clock& clock_;
    std::string defaultSitesURL_;
    std::string defaultSitesWhatsNewURL_;
};

} // namespace corvane

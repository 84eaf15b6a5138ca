#pragma once

#include "base/Url.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// The addresses of the servers: fixed by the build, each to be overridden for one run by an environment variable of
/// the name given here. A base ends in "/" and has neither query nor fragment.
struct Endpoints {
    Url publishing;   // CORVANE_PUBLISHING_URL, a base
    Url notification; // CORVANE_NOTIFICATION_URL, a base
    Url storeLookup;  // CORVANE_STORE_LOOKUP_URL
    Url storePage;    // CORVANE_STORE_PAGE_URL
    Url collect;      // CORVANE_COLLECT_URL
    Url tag;          // CORVANE_TAG_URL
    Url donation;     // CORVANE_DONATION_URL, a base

    std::string measurementId;
    std::string storeId;
    std::string supportMail;
    std::string donationAccount;

    using Environment = std::function<std::optional<std::string>(const char* name)>;

    /// The build's addresses with the overrides of `environment`. An override that is no http or https address is left
    /// out and named in `refused`.
    static Endpoints read(const Environment& environment, std::vector<std::string>& refused);

    /// The address of `path` below a base. `path` has no leading slash and is written as an address has it.
    static Url below(const Url& base, std::string_view path);

    Url helpPage() const;
    Url privacyPage() const;
    Url privacyUsagePage() const; // the same page where it speaks of usage data
    Url donationPage() const;

    Url defaultSitesURL() const; // the published catalogue
    Url defaultSitesWhatsNewURL() const;
    Url appWhatsNewBaseURL() const; // the folder of the program's release notes and version file, ends in "/"
    Url appDownloadPageURL() const;
    const Url& storeLookupURL() const { return storeLookup; }
};

} // namespace corvane

#pragma once

#include "async/Task.h"
#include "catalogue/PublishingClient.h"
#include "ports/Endpoints.h"
#include "updates/HostedVersion.h"

#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// Where newer versions of the program and their release notes are published. `base` is the text of the address of the
/// release notes' folder. Every failure is an empty answer. Outlives its tasks.
class VersionSources {
public:
    /// `http` must outlive this object.
    VersionSources(HttpClient& http, const Endpoints& endpoints);

    Task<std::optional<std::string>> fetchReleaseNotes(std::string base, CheckTime timestamp) const;
    Task<std::optional<HostedVersion>> fetchHostedVersion(std::string base, CheckTime timestamp) const;
    Task<std::optional<std::string>> fetchStoreVersion() const;
    Task<std::vector<ArchiveEntry>> fetchReleaseArchives(std::string base, CheckTime timestamp) const;

private:
    HttpClient& http_;
    PublishingClient publishing_;
    Url storeLookupURL_;
};

} // namespace corvane

#include "updates/VersionSources.h"

#include <utility>

namespace corvane {
namespace {

std::string asFolder(std::string address)
{
    if (!address.ends_with('/'))
        address += '/';
    return address;
}

} // namespace

VersionSources::VersionSources(HttpClient& http, const Endpoints& endpoints)
    : http_(http), publishing_(http), storeLookupURL_(endpoints.storeLookupURL())
{
}

Task<std::optional<std::string>> VersionSources::fetchReleaseNotes(std::string base, CheckTime timestamp) const
{
    auto page = co_await publishing_.fetchPage(base + "whatsnew.html", timestamp);
    co_return page;
}

Task<std::optional<HostedVersion>> VersionSources::fetchHostedVersion(std::string base, CheckTime timestamp) const
{
    auto address = asFolder(std::move(base)) + "version.json";
    const auto document = co_await publishing_.fetch(std::move(address), timestamp, BodyLimit::json);
    co_return document.and_then(decodeHostedVersion);
}

Task<std::optional<std::string>> VersionSources::fetchStoreVersion() const
{
    HttpRequest request{.url = storeLookupURL_};
    const auto answer = co_await http_.send(std::move(request));
    if (!answer)
        co_return std::nullopt;
    co_return decodeStoreVersion(answer->body);
}

Task<std::vector<ArchiveEntry>> VersionSources::fetchReleaseArchives(std::string base, CheckTime timestamp) const
{
    auto folder = asFolder(std::move(base)) + "Previous_Releases/";
    auto archives = co_await publishing_.fetchArchives(std::move(folder), timestamp);
    co_return archives;
}

} // namespace corvane

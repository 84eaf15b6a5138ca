#include "network/FetchingProgram.h"

#include "screens/ReleaseNotesPage.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <variant>

#include <fmt/format.h>

namespace corvane::testing {
namespace {

namespace fs = std::filesystem;

constexpr auto sitesPath = "/Corvane/sites/sites.json";
constexpr auto movedSitesPath = "/moved/sites.json";
constexpr auto pointerPath = "/pointer";
constexpr auto imagePath = "/C.dmg";
constexpr auto versionPath = "/Corvane/mac_whatsnew/version.json";
constexpr auto storePath = "/lookup";
constexpr auto archivedNotesPath = "/archived.html";
constexpr auto pendingPath = "/api/notifications/pending";
constexpr auto collectPath = "/g/collect";

constexpr auto list = R"([{"service":"A","url":"u","description":"d"}])";
constexpr auto index = R"({"archives":[{"file":"f","title":"T"}]})";
constexpr auto pending = R"({"notifications":[{"recipientId":7,"title":"t"}]})";

constexpr auto bindingTokenKey = "push_binding_token";

std::string content(const fs::path& file)
{
    std::ifstream input(file, std::ios::binary);
    return {std::istreambuf_iterator(input), {}};
}

} // namespace

FetchingProgram::FetchingProgram(std::string base, HttpLimits limits) : base_(std::move(base)), http_("1", limits)
{
    fs::create_directory(*places_.downloads);
    resources_.files["sites.json"] = "[]";
    sites_.loadSites();
}

Endpoints FetchingProgram::endpointsAtServer() const
{
    auto endpoints = endpointsAt(base_, base_);
    endpoints.storeLookup = url(storePath);
    endpoints.collect = url(collectPath);
    return endpoints;
}

std::string FetchingProgram::checkList()
{
    sites_.hasPendingSiteUpdate().set(true);
    const auto result = resultOf(sites_.checkForUpdates(std::nullopt));
    const auto background = resultOf(sites_.backgroundCheck(std::nullopt));
    if (*sites_.isCheckingForUpdates() || !*sites_.hasPendingSiteUpdate() || !sites_.sites()->empty())
        return "changed something";
    const auto* error = std::get_if<SiteListManager::NetworkError>(&result);
    return fmt::format("{} {}", background, error == nullptr ? "update" : error->message);
}

std::string FetchingProgram::checkRedirectedList()
{
    const auto target = url(movedSitesPath).text();
    const auto result = resultOf(sites_.checkForUpdates(url(pointerPath).text()));
    const auto* error = std::get_if<SiteListManager::NetworkError>(&result);
    auto said = error == nullptr ? "update" : error->message;
    if (said.ends_with(target))
        said.replace(said.size() - target.size(), target.size(), "there");
    return said;
}

std::string FetchingProgram::fetchListNotes()
{
    const auto result = resultOf(sites_.fetchRemoteSites(std::nullopt));
    const auto* update = std::get_if<SiteListManager::UpdateAvailable>(&result);
    if (update == nullptr || update->pendingData != list)
        return "no update";
    return update->whatsNewHTML ? "notes" : "no notes";
}

std::string FetchingProgram::fetchListArchive()
{
    const auto result = resultOf(sites_.fetchRemoteSites(std::nullopt));
    const auto* update = std::get_if<SiteListManager::UpdateAvailable>(&result);
    return update == nullptr ? "no update" : fmt::format("{} archived", update->archives.size());
}

std::string FetchingProgram::checkVersion()
{
    app_.hasPendingAppUpdate().set(true);
    const auto result = resultOf(app_.checkForUpdates());
    if (const auto* error = std::get_if<AppUpdateManager::NetworkError>(&result)) {
        const bool isKept = resultOf(app_.backgroundCheck()) == -1 && *app_.hasPendingAppUpdate();
        return isKept ? error->message : "changed something";
    }
    const auto* update = std::get_if<AppUpdateManager::UpdateAvailable>(&result);
    return update == nullptr ? "current"
                             : fmt::format("{}{}", *update->storeVersion, update->downloadURL ? " hosted" : "");
}

std::string FetchingProgram::fetchVersionArchive()
{
    const auto result = resultOf(app_.runCheck());
    const auto* update = std::get_if<AppUpdateManager::UpdateAvailable>(&result);
    return update == nullptr ? "no update" : fmt::format("{} archived", update->archives.size());
}

std::string FetchingProgram::showArchivedNotes()
{
    state_.activeWhatsNew.set(
        WhatsNewContext{.whatsNewHTML = "now", .archives = {{.url = url(archivedNotesPath), .title = "T"}}});
    notes_.appear();
    notes_.showEntry(1);
    if (!iterateUntil([&] { return !notes_.page()->contains(loadingBody); }))
        return "still loading";
    const bool hasFailed = notes_.page()->contains(failedBody);
    notes_.disappear();
    return hasFailed ? "could not be loaded" : "notes";
}

std::string FetchingProgram::downloadInstaller()
{
    const auto older = *places_.downloads / "C.dmg";
    std::ofstream(older) << "old";
    const auto result = resultOf(installers_.download(url(imagePath), std::nullopt, nullptr));
    if (std::distance(fs::directory_iterator(*places_.downloads), {}) != 1 || fs::exists(places_.updates()))
        return "left something";
    if (result)
        return *result == older && content(older) != "old" ? "stored" : "stored elsewhere";
    if (content(older) != "old")
        return "changed the older file";
    return result.error().message.starts_with("Server returned") ? result.error().message : "failed";
}

std::string FetchingProgram::registerDevice()
{
    return fmt::format("{} pending", resultOf(devices_.refresh()));
}

std::string FetchingProgram::bindDevice()
{
    defaults_.setString(bindingTokenKey, "token");
    const auto fetched = resultOf(devices_.refresh());
    return fmt::format("{} pending, {}", fetched, defaults_.string(bindingTokenKey) ? "kept" : "settled");
}

std::string FetchingProgram::fetchNotifications()
{
    const auto before = devices_.pending()->size();
    const auto fetched = resultOf(devices_.refresh());
    const bool isUnchanged = fetched >= 0 || devices_.pending()->size() == before;
    return fmt::format("{}{}", fetched, isUnchanged ? "" : " changed");
}

std::string FetchingProgram::acknowledge()
{
    resultOf(devices_.refresh());
    if (devices_.pending()->size() != 1)
        return "nothing to acknowledge";
    std::optional<bool> isDone;
    const auto acknowledged = [](PushDeviceManager* devices, std::optional<bool>* done) -> Task<void> {
        co_await devices->acknowledge({7});
        done->emplace(true);
    };
    TaskScope scope;
    scope.start(acknowledged(&devices_, &isDone));
    if (!iterateUntil([&] { return isDone.has_value(); }))
        return "does not end";
    return fmt::format("{} left", devices_.pending()->size());
}

std::string FetchingProgram::collect()
{
    collect_->sendEvent("e", {}, "c", "1");
    bool hasBegun = false;
    const bool hasEnded = iterateUntil([&] {
        hasBegun = hasBegun || *collect_->isSending();
        return hasBegun && !*collect_->isSending();
    });
    return hasEnded ? "ended" : "does not end";
}

std::string Fetch::expected(const Fault& fault) const
{
    using enum Fault::Arrives;
    if (fault.arrives == nothing)
        return outcomes.nothing;
    if (!outcomes.forbidden.empty() && (fault.status == 401 || fault.status == 403))
        return outcomes.forbidden;
    if (!outcomes.refused.empty() && (fault.status < 200 || fault.status > 299))
        return fmt::format(fmt::runtime(outcomes.refused), fault.status);
    switch (fault.arrives) {
    case document:
        return outcomes.document;
    case text:
        return outcomes.text;
    case bytes:
        return outcomes.bytes;
    default:
        return outcomes.empty;
    }
}

const std::vector<Fetch>& allFetches()
{
    using Program = FetchingProgram;
    static const std::string noNetwork = "-1 Network request failed — check your connection.";
    static const std::string noList = "Remote sites.json could not be parsed.";
    static const std::string noMovedList = "Failed to fetch redirected sites URL: there";
    static const std::string noNotes = "Could not fetch release notes — check your connection.";
    static const std::string notLoaded = "could not be loaded";
    static const std::string anyway = "1 pending";
    static const std::string kept = "1 pending, kept";
    static const std::string settled = "1 pending, settled";
    static const std::vector<Fetch> fetches{
        {"List",
         sitesPath,
         list,
         &Program::checkList,
         {noNetwork, "1 update", "-1 " + noList, "-1 " + noList, "-1 " + noList}},
        {"MovedList",
         movedSitesPath,
         list,
         &Program::checkRedirectedList,
         {noMovedList, "update", noList, noList, noList}},
        {"ListNotes",
         "/Corvane/sites/whatsnew.html",
         "<p>",
         &Program::fetchListNotes,
         {"no notes", "notes", "notes", "no notes", "no notes"}},
        {"ListArchive",
         "/Corvane/sites/archive/index.json",
         index,
         &Program::fetchListArchive,
         {"0 archived", "1 archived", "0 archived", "0 archived", "0 archived"}},
        {"VersionNotes",
         "/Corvane/mac_whatsnew/whatsnew.html",
         "<p>{{VERSION}}",
         &Program::checkVersion,
         {noNotes, "2.0", "2.0", noNotes, noNotes},
         versionPath},
        {"VersionFile",
         versionPath,
         R"({"version":"3.0"})",
         &Program::checkVersion,
         {"current", "3.0 hosted", "current", "current", "current"},
         storePath},
        {"Store",
         storePath,
         R"({"results":[{"version":"2.0"}]})",
         &Program::checkVersion,
         {"current", "2.0", "current", "current", "current"},
         versionPath},
        {"VersionArchive",
         "/Corvane/mac_whatsnew/Previous_Releases/index.json",
         index,
         &Program::fetchVersionArchive,
         {"0 archived", "1 archived", "0 archived", "0 archived", "0 archived"}},
        {"ArchivedNotes",
         archivedNotesPath,
         "<p>then",
         &Program::showArchivedNotes,
         {notLoaded, "notes", "notes", notLoaded, notLoaded}},
        {"Installer",
         imagePath,
         "image",
         &Program::downloadInstaller,
         {"failed", "stored", "stored", "stored", "stored", "Server returned status {}."},
         {},
         false},
        {"Registration",
         "/api/devices/register",
         "{}",
         &Program::registerDevice,
         {anyway, anyway, anyway, anyway, anyway}},
        {"Binding",
         "/api/devices/bind",
         "{}",
         &Program::bindDevice,
         {kept, settled, settled, settled, settled, kept, settled}},
        {"Notifications", pendingPath, pending, &Program::fetchNotifications, {"-1", "1", "-1", "-1", "-1", "-1"}},
        {"Acknowledgement",
         "/api/notifications/ack",
         R"({"acked":1})",
         &Program::acknowledge,
         {"1 left", "0 left", "0 left", "0 left", "0 left", "1 left"}},
        {"Collection", collectPath, "{}", &Program::collect, {"ended", "ended", "ended", "ended", "ended"}},
    };
    return fetches;
}

void publish(FaultyServer& server, const Fetch& fetch)
{
    for (const auto& [name, path, document, run, outcomes, without, limit] : allFetches())
        server.documents[path] = document;
    server.documents[pointerPath] = fmt::format(R"({{"source_url":"{}"}})", server.url(movedSitesPath).text());
    server.documents.erase(fetch.without);
}

} // namespace corvane::testing

#include "updates/AppUpdateManager.h"

#include "async/WhenBoth.h"
#include "updates/ReleaseNotes.h"

#include <utility>

namespace corvane {
namespace {

AppUpdateManager::NetworkError noReleaseNotes()
{
    return {"Could not fetch release notes — check your connection."};
}

} // namespace

AppUpdateManager::AppUpdateManager(HttpClient& http, const Clock& clock, const Endpoints& endpoints, AppInfo app)
    : clock_(clock), sources_(http, endpoints), appWhatsNewBaseURL_(endpoints.appWhatsNewBaseURL().text()),
      appDownloadPageURL_(endpoints.appDownloadPageURL()), app_(std::move(app))
{
}

Task<AppUpdateManager::CheckResult> AppUpdateManager::checkForUpdates()
{
    const auto hold = checking_.hold();
    auto result = co_await runCheck();
    co_return result;
}

Task<std::int64_t> AppUpdateManager::backgroundCheck()
{
    const auto result = co_await runCheck();
    if (std::holds_alternative<NetworkError>(result))
        co_return -1;
    const bool isUpdate = std::holds_alternative<UpdateAvailable>(result);
    hasPendingAppUpdate_.set(isUpdate);
    co_return isUpdate ? 1 : 0;
}

Task<AppUpdateManager::CheckResult> AppUpdateManager::runCheck() const
{
    const auto timestamp = checkTime(clock_);
    const auto base = appWhatsNewBaseURL_;
    const auto page = co_await sources_.fetchReleaseNotes(base, timestamp);
    if (!page)
        co_return noReleaseNotes();

    auto [hosted, store] =
        co_await whenBoth(sources_.fetchHostedVersion(base, timestamp), sources_.fetchStoreVersion());
    auto update = offered(std::move(hosted), store);
    const auto version = update ? *update->storeVersion : app_.currentAppVersion();
    auto whatsNewHTML = filledReleaseNotes(*page, version, app_.buildDateText);
    if (!whatsNewHTML)
        co_return noReleaseNotes();

    auto archives = co_await sources_.fetchReleaseArchives(base, timestamp);
    if (!update)
        co_return Current{*std::move(whatsNewHTML), std::move(archives)};
    update->whatsNewHTML = *std::move(whatsNewHTML);
    update->archives = std::move(archives);
    co_return *std::move(update);
}

std::optional<AppUpdateManager::UpdateAvailable>
AppUpdateManager::offered(std::optional<HostedVersion> hosted, const std::optional<std::string>& store) const
{
    auto choice = chooseUpdate(app_.currentAppVersion(), hosted, store);
    if (!choice)
        return std::nullopt;
    UpdateAvailable update{.storeVersion = std::move(choice->version)};
    if (choice->isHosted && hosted->downloadURL) {
        update.downloadURL = std::move(hosted->downloadURL);
        update.sha256 = std::move(hosted->sha256);
    } else if (choice->isHosted) {
        update.downloadURL = appDownloadPageURL_;
    }
    return update;
}

} // namespace corvane

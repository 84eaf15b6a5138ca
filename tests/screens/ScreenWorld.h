#pragma once

#include "analytics/AnalyticsManager.h"
#include "catalogue/SiteListManager.h"
#include "notifications/PushDeviceManager.h"
#include "screens/InstallerDownloadModel.h"
#include "screens/MainWindowModel.h"
#include "screens/SheetsModel.h"
#include "screens/SiteSelectorModel.h"
#include "screens/ToolbarModel.h"
#include "settings/SettingsManager.h"
#include "state/AppState.h"
#include "support/FixedHostInfo.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryFileStore.h"
#include "support/MemoryIncomingFiles.h"
#include "support/MemoryResources.h"
#include "support/PublishedDocuments.h"
#include "support/RecordingDesktop.h"
#include "support/RunTask.h"
#include "support/ScriptedHttpClient.h"
#include "support/TestEndpoints.h"
#include "updates/AppUpdateManager.h"
#include "updates/DMGDownloadHelper.h"

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace corvane::testing {

inline constexpr std::string_view catalogueInUse =
    R"([{"service":"Echo","url":"https://echo.example/","description":""},
    {"service":"Script","url":"javascript:x","description":""},{"service":"Bad","url":"::","description":""}])";

/// What the models of the main window stand on, with a stored first-use flag and a stored choice.
struct ScreenWorld {
    explicit ScreenWorld(bool isFirstUse = false, std::string_view choice = {})
    {
        defaults.setBoolean("FirstUse", isFirstUse);
        defaults.setString("siteIndex", choice);
        state.emplace(defaults, analytics);
        analytics.adoptEnabled(true);
        sheets.emplace(*state, queue);
        window.emplace(MainWindowModel::Services{.appState = *state,
                                                 .siteListManager = siteList,
                                                 .appUpdateManager = appUpdates,
                                                 .pushDevices = pushDevices,
                                                 .defaults = defaults,
                                                 .analytics = analytics,
                                                 .sheets = *sheets,
                                                 .installer = installer,
                                                 .desktop = desktop,
                                                 .endpoints = endpoints,
                                                 .queue = queue});
        toolbar.emplace(ToolbarModel::Services{.appState = *state,
                                               .siteListManager = siteList,
                                               .appUpdateManager = appUpdates,
                                               .settingsManager = settings,
                                               .pushDevices = pushDevices,
                                               .analytics = analytics,
                                               .endpoints = endpoints},
                        ToolbarModel::Badges{.siteUpdate = window->showSiteUpdateBadge(),
                                             .appUpdate = window->showAppUpdateBadge(),
                                             .notification = window->showNotificationBadge()});
        selector.emplace(*state, siteList.sites(), defaults, analytics);
    }

    /// The address that waits to be loaded; taken away by being asked for.
    std::string takePending()
    {
        const auto pending = *state->pendingLoadURL;
        state->pendingLoadURL.set(std::nullopt);
        return pending ? pending->text() : "none";
    }

    /// What was recorded since the last question, each "event label".
    std::vector<std::string> takeEvents()
    {
        std::vector<std::string> events;
        for (const auto& event : analytics.preInitQueue()) {
            const auto label = event.params.find("event_label");
            events.push_back(event.name +
                             (label == event.params.end() ? "" : " " + std::get<std::string>(label->second)));
        }
        analytics.setEnabled(false);
        analytics.adoptEnabled(true);
        return events;
    }

    void raiseBadges()
    {
        siteList.hasPendingSiteUpdate().set(true);
        appUpdates.hasPendingAppUpdate().set(true);
        http.respond = [](const HttpRequest&) {
            return HttpResponse{200, R"({"notifications":[{"recipientId":7,"title":"Hello"}]})"};
        };
        static_cast<void>(resultOf(pushDevices.refresh()));
        http.respond = nullptr;
    }

    MemoryDefaultsStore defaults;
    FixedHostInfo host;
    ManualClock clock{Clock::TimePoint(std::chrono::seconds(1))};
    ManualMainQueue queue;
    ScriptedHttpClient http;
    MemoryFileStore files;
    MemoryResources resources = shipped();
    MemoryIncomingFiles incoming{files};
    RecordingDesktop desktop;
    AppInfo info{.shortVersion = "1.2", .buildDateText = "Aug 12, 2026"};
    Endpoints endpoints = endpointsAt();
    Places places{.data = "/data", .downloads = "/Downloads"};
    SettingsManager settings{files, places};
    SiteListManager siteList{files, resources, places, SiteListFetcher(http, clock, endpoints)};
    AppUpdateManager appUpdates{http, clock, endpoints, info};
    AnalyticsManager analytics{defaults, host, clock, info};
    PushDeviceManager pushDevices{http, defaults, endpoints, info};
    DMGDownloadHelper installers{http, files, incoming, desktop, clock, places};
    InstallerDownloadModel installer{installers};
    std::optional<AppState> state;
    std::optional<SheetsModel> sheets;
    std::optional<MainWindowModel> window;
    std::optional<ToolbarModel> toolbar;
    std::optional<SiteSelectorModel> selector;

private:
    static MemoryResources shipped()
    {
        MemoryResources resources;
        resources.files["sites.json"] = catalogueInUse;
        return resources;
    }
};

} // namespace corvane::testing

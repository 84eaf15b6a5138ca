#pragma once

#include "analytics/AnalyticsManager.h"
#include "analytics/AnalyticsNativeCollect.h"
#include "catalogue/SiteListManager.h"
#include "network/FaultyServer.h"
#include "notifications/PushDeviceManager.h"
#include "platform/GlibMainQueue.h"
#include "platform/PosixFileStore.h"
#include "platform/PosixIncomingFiles.h"
#include "platform/SoupHttpClient.h"
#include "platform/SystemClock.h"
#include "screens/WhatsNewModel.h"
#include "settings/SettingsManager.h"
#include "settings/ThemeManager.h"
#include "state/AppState.h"
#include "support/FixedHostInfo.h"
#include "support/MainContext.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryFileStore.h"
#include "support/MemoryResources.h"
#include "support/RecordingDesktop.h"
#include "support/RunTask.h"
#include "support/TemporaryFolder.h"
#include "support/TestEndpoints.h"
#include "updates/AppUpdateManager.h"
#include "updates/DMGDownloadHelper.h"

#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace corvane::testing {

/// Whatever in the program fetches something, with a real client, each as one operation that tells in short words what
/// has come of it.
class FetchingProgram {
public:
    /// All its servers stand at `base`, which ends in "/".
    FetchingProgram(std::string base, HttpLimits limits);

    // The service list.
    std::string checkList();
    std::string checkRedirectedList();
    std::string fetchListNotes();
    std::string fetchListArchive();

    // The program's version.
    std::string checkVersion();
    std::string fetchVersionArchive();
    std::string showArchivedNotes();
    std::string downloadInstaller();

    // Notifications and usage events.
    std::string registerDevice();
    std::string bindDevice();
    std::string fetchNotifications();
    std::string acknowledge();
    std::string collect();

private:
    template <typename T>
    T resultOf(Task<T> task)
    {
        std::optional<T> result;
        TaskScope scope;
        scope.start(keepResult(std::move(task), &result));
        if (!iterateUntil([&] { return result.has_value(); }))
            throw std::runtime_error("The fetch does not end.");
        return *std::move(result);
    }

    Endpoints endpointsAtServer() const;
    Url url(std::string_view path) const { return *Url::parse(base_ + std::string(path.substr(1))); }

    std::string base_;
    Endpoints endpoints_ = endpointsAtServer();
    TemporaryFolder folder_;
    Places places_{.data = folder_ / "data", .downloads = folder_ / "Downloads"};
    AppInfo info_{"1.0", "today"};
    SystemClock clock_;
    GlibMainQueue queue_;
    FixedHostInfo host_;
    RecordingDesktop desktop_;
    MemoryDefaultsStore defaults_;
    MemoryFileStore memory_;
    MemoryResources resources_;
    PosixFileStore files_;
    PosixIncomingFiles incoming_;
    SoupHttpClient http_;

    SettingsManager settings_{memory_, places_};
    ThemeManager themes_{resources_};
    SiteListManager sites_{memory_, resources_, places_, SiteListFetcher(http_, clock_, endpoints_)};
    AppUpdateManager app_{http_, clock_, endpoints_, info_};
    PushDeviceManager devices_{http_, defaults_, endpoints_, info_};
    DMGDownloadHelper installers_{http_, files_, incoming_, desktop_, clock_, places_};
    AnalyticsManager analytics_{defaults_, host_, clock_, info_};
    AppState state_{defaults_, analytics_};
    WhatsNewModel notes_{{.appState = state_,
                          .settingsManager = settings_,
                          .themeManager = themes_,
                          .resources = resources_,
                          .app = info_,
                          .http = http_,
                          .clock = clock_,
                          .desktop = desktop_},
                         nullptr};
    std::shared_ptr<AnalyticsNativeCollect> collect_ =
        std::make_shared<AnalyticsNativeCollect>(http_, queue_, clock_, host_, endpoints_);
};

/// One of its operations, the path that it depends on, and what comes of what arrives from there.
struct Fetch {
    std::string name;
    std::string path;
    std::string document; // the good one
    std::string (FetchingProgram::*run)();
    struct Outcomes {
        std::string nothing, document, text, bytes, empty; // the name of Fault::Arrives
        std::string refused = {};                          // any status but 2xx; empty where it is not looked at
        std::string forbidden = {};                        // 401 and 403; empty where that is as any other
    } outcomes;
    std::string without = {}; // a path whose document would hide the outcome
    bool hasTimeLimit = true; // of the whole

    std::string expected(const Fault& fault) const;
};

/// Names it where a test fails.
inline std::ostream& operator<<(std::ostream& stream, const Fetch& fetch)
{
    return stream << fetch.name;
}

const std::vector<Fetch>& allFetches();

/// Offers every good document but what would hide the outcome of `fetch`.
void publish(FaultyServer& server, const Fetch& fetch);

} // namespace corvane::testing

#pragma once

#include "analytics/AnalyticsManager.h"
#include "browser/WebViewRepresentable.h"
#include "notifications/PushDeviceManager.h"
#include "settings/SettingsManager.h"
#include "state/AppState.h"
#include "support/FixedHostInfo.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryFileStore.h"
#include "support/RecordingWebView.h"
#include "support/ScriptedHttpClient.h"
#include "support/TestEndpoints.h"

#include <string>
#include <vector>

namespace corvane::testing {

/// Everything around a browser view, without an engine and without a display.
struct BrowserWorld {
    explicit BrowserWorld(const std::string& server = "http://127.0.0.1:3002/", bool isFirstUse = true,
                          const std::string& version = "1.2")
        : endpoints(endpointsAt(server, server)), defaults(storedFirstUse(isFirstUse)), info{.shortVersion = version}
    {
        analytics.adoptEnabled(true);
    }

    void makeView(const std::optional<Url>& initialURL = std::nullopt)
    {
        browser.makeView(initialURL);
        queue.runAll();
        view().calls.clear();
    }

    RecordingWebView& view() const { return *views.view; }

    /// A message from the registration page itself.
    void post(const std::string& bodyJson, const std::string& origin = "http://127.0.0.1:3002", bool isTop = true)
    {
        post(PageMessage{.origin = origin, .isTopFrame = isTop, .topOrigin = origin, .body = bodyJson});
    }

    void post(const PageMessage& message)
    {
        view().delegate->messageReceived(message);
        queue.runAll();
    }

    std::vector<std::string> eventNames() const
    {
        std::vector<std::string> names;
        for (const auto& event : analytics.preInitQueue())
            names.push_back(event.name);
        return names;
    }

    static MemoryDefaultsStore storedFirstUse(bool isFirstUse)
    {
        MemoryDefaultsStore defaults;
        defaults.setBoolean("FirstUse", isFirstUse);
        return defaults;
    }

    Endpoints endpoints;
    MemoryDefaultsStore defaults;
    MemoryFileStore files;
    Places places{.data = "/data", .cache = "/cache", .defaults = "/config/defaults.json"};
    FixedHostInfo host;
    ManualClock clock;
    ManualMainQueue queue;
    ScriptedHttpClient http;
    AppInfo info;
    SettingsManager settings{files, places};
    AnalyticsManager analytics{defaults, host, clock, info};
    PushDeviceManager pushDevices{http, defaults, endpoints, info};
    AppState state{defaults, analytics};
    AllowedHosts allowedHosts{endpoints.notification};
    RecordingViewFactory views;
    WebViewCoordinator coordinator{state, pushDevices, analytics, allowedHosts, queue, clock};
    WebViewRepresentable browser{{.appState = state,
                                  .settings = settings.settings(),
                                  .pushDevices = pushDevices,
                                  .allowedHosts = allowedHosts,
                                  .endpoints = endpoints,
                                  .files = files,
                                  .places = places,
                                  .views = views,
                                  .queue = queue},
                                 coordinator};
};

} // namespace corvane::testing

#pragma once

#include "analytics/AnalyticsManager.h"
#include "notifications/PushDeviceManager.h"
#include "screens/NotificationsModel.h"
#include "screens/WhatsNewModel.h"
#include "settings/SettingsManager.h"
#include "settings/ThemeManager.h"
#include "state/AppState.h"
#include "support/FixedHostInfo.h"
#include "support/ManualClock.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryFileStore.h"
#include "support/MemoryResources.h"
#include "support/RecordingDesktop.h"
#include "support/ScriptedHttpClient.h"
#include "support/TestEndpoints.h"

#include <string>
#include <vector>

namespace corvane::testing {

/// What the dialogs read and change. Analytics is on, and follows the settings as it does in the program.
struct DialogWorld {
    DialogWorld() { analytics.adoptEnabled(true); }

    std::string pendingAddress() const { return *state.pendingLoadURL ? (*state.pendingLoadURL)->text() : "none"; }

    void change(std::string AppSettings::* field, const std::string& value)
    {
        auto settings = *settingsManager.settings();
        settings.*field = value;
        settingsManager.updateSettings(settings);
    }

    /// The events that wait, each with its action.
    std::vector<std::string> events() const
    {
        std::vector<std::string> all;
        for (const auto& event : analytics.preInitQueue())
            all.push_back(event.name + " " + std::get<std::string>(event.params.at("event_action")));
        return all;
    }

    /// What the two dialogs that show documents use.
    WhatsNewModel::Services whatsNewServices()
    {
        return {.appState = state,
                .settingsManager = settingsManager,
                .themeManager = themeManager,
                .resources = resources,
                .app = info,
                .http = http,
                .clock = clock,
                .desktop = desktop};
    }
    NotificationsModel::Services notificationsServices()
    {
        return {.appState = state,
                .manager = manager,
                .settingsManager = settingsManager,
                .themeManager = themeManager,
                .desktop = desktop,
                .clock = clock};
    }

    MemoryDefaultsStore defaults;
    MemoryFileStore files;
    MemoryResources resources;
    FixedHostInfo host;
    ManualClock clock;
    ScriptedHttpClient http;
    RecordingDesktop desktop;
    AppInfo info{.shortVersion = "1.2", .buildDateText = "Aug 12, 2026"};
    Endpoints endpoints = endpointsAt("http://notify.test/", "https://publish.test/");
    AnalyticsManager analytics{defaults, host, clock, info};
    SettingsManager settingsManager{files, Places{.data = "/data", .cache = "/cache", .defaults = "/defaults"}};
    ThemeManager themeManager{resources};
    PushDeviceManager manager{http, defaults, endpoints, info};
    AppState state{defaults, analytics};
    Subscription follows = settingsManager.settings().observe(
        [this](const AppSettings& settings) { analytics.setEnabled(settings.AnalyticsEnabled == "On"); });
};

} // namespace corvane::testing

#pragma once

#include "base/NotificationCenter.h"
#include "base/Url.h"
#include "catalogue/Site.h"

#include <string>
#include <vector>

namespace corvane {

class AnalyticsManager;
class AppState;
class DefaultsStore;
class PushDeviceManager;

/// Decides what the main window shows: its first page, its title and when URL mode can be switched.
class MainWindowModel {
public:
    static constexpr std::string_view applicationName = "Corvane";

    /// Everything must outlive this object.
    MainWindowModel(AppState& appState, const PushDeviceManager& pushDevices, const DefaultsStore& defaults,
                    AnalyticsManager& analytics);

    /// The page that the window opens with: the remembered service, or the registration page during first use and
    /// whenever no service is remembered or its address cannot be loaded.
    Url initialURL(const std::vector<Site>& sites) const;

    /// Control+Shift+U; during first use nothing happens.
    void toggleURLMode();

    /// Hears the notifications that are meant for the window.
    void observe(NotificationCenter& notifications);

    /// The page's title, fit for a title bar; the application's name for a page without one.
    std::string windowTitle() const;

    /// The window's content is there for the first time.
    void created();

    AppState& appState() { return appState_; }

private:
    AppState& appState_;
    const PushDeviceManager& pushDevices_;
    const DefaultsStore& defaults_;
    AnalyticsManager& analytics_;
    std::vector<Subscription> observations_;
};

} // namespace corvane

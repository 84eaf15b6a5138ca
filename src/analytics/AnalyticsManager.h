#pragma once

#include "analytics/AnalyticsEvent.h"
#include "ports/AppInfo.h"
#include "ports/Clock.h"
#include "ports/DefaultsStore.h"
#include "ports/HostInfo.h"

#include <atomic>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Records what happens, anonymously, while the user allows it. While analytics is off, every event operation does
/// nothing at all; events recorded while it is on wait in a queue, in order. A run counts from its creation.
class AnalyticsManager {
public:
    /// Takes or makes the client identifier. The clock must outlive this object. Analytics is off at first.
    AnalyticsManager(DefaultsStore& defaults, const HostInfo& host, const Clock& clock, const AppInfo& app);

    /// Switches analytics on or off; switching off drops the events that wait.
    void setEnabled(bool enabled);

    /// Takes over the switch as the settings have it, at launch: whatever waits stays.
    void adoptEnabled(bool enabled);

    /// Records one event, whatever the switch says; for events without an operation of their own.
    void track(std::string name, AnalyticsParams params);

    void trackAppStart();
    void trackAppEnd();
    void trackUICreated();
    void trackRegistrationSuccess();
    void trackProfileDeleted();
    void trackFirstUse();

    /// An empty label is left out of the event, here and below.
    void trackPageView(std::string_view label);
    void trackButtonClick(std::string_view label);
    void trackMenuOpen();
    void trackMenuClick(std::string_view label);

    /// The result is "update_available", "up_to_date" or "network_error".
    void trackListUpdateCheck(std::string_view result);
    void trackAppUpdateCheck(std::string_view result);

    void trackServiceSelected(std::string_view name);

    /// "disable" must be recorded before switching off, "enable" after switching on: else there is no such event.
    void trackAnalyticsToggled(bool enabled);

    void trackSettingsChanged();
    void trackDonationClick();

    const std::string& clientId() const { return clientId_; }
    const std::string& appVersion() const { return appVersion_; }

    /// The events that wait, as they are now.
    std::vector<AnalyticsEvent> preInitQueue() const;

private:
    struct Description {
        std::string_view category;
        std::string_view action;
        std::string_view label;
    };

    void trackIfEnabled(std::string_view name, const Description& description, AnalyticsParams further = {});
    void trackNavigation(std::string_view label, std::string_view action, std::string_view event);

    const Clock& clock_;
    std::string clientId_;
    std::string appVersion_;
    Clock::TimePoint sessionStartTime_;

    mutable std::mutex lock_;           // never held while calling another component
    std::atomic<bool> enabled_ = false; // written under the lock, read without it
    std::vector<AnalyticsEvent> preInitQueue_;
};

} // namespace corvane

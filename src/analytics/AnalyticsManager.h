#pragma once

#include "analytics/AnalyticsEvent.h"
#include "async/TaskScope.h"
#include "base/Subscription.h"
#include "ports/AppInfo.h"
#include "ports/Clock.h"
#include "ports/DefaultsStore.h"
#include "ports/HostInfo.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

class AnalyticsNativeCollect;
struct AnalyticsRoutes;

/// Records what happens, anonymously, while the user allows it, and sees to it that it reaches the collection service.
/// While analytics is off, every event operation does nothing at all. A run counts from its creation.
///
/// An event goes one of four ways, by the state of delivery:
/// - queuing: until `startWebView` was called and the hidden page is ready, events wait, in order;
/// - page, unverified: to the page, and a copy is kept; the first copy starts a check that comes 2 seconds later;
/// - page, verified: to the page alone, since the page has shown that it reaches the service;
/// - direct: the check found no such proof; the copies and everything later are sent without the page.
/// Switching off and on again leads back to the unverified page.
///
/// Events may be recorded on any thread; all else belongs to the main thread. Held by a shared pointer where delivery
/// is started.
class AnalyticsManager : public std::enable_shared_from_this<AnalyticsManager> {
public:
    static constexpr std::chrono::seconds verificationDelay{2};

    /// The longest that the end of the program waits for the last events.
    static constexpr std::chrono::milliseconds longestFarewell{300};

    /// Takes or makes the client identifier. The clock must outlive this object. Analytics is off at first.
    AnalyticsManager(DefaultsStore& defaults, const HostInfo& host, Clock& clock, const AppInfo& app);
    ~AnalyticsManager();

    /// Starts delivery by these ways; the first call counts.
    void startWebView(AnalyticsRoutes routes);

    /// Switches analytics on or off. Switching off drops the events that wait; what was handed to the page or to the
    /// network is not recalled.
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

    /// Calls `done` when what was recorded so far has had its chance to leave: at once while analytics is off or
    /// nothing can, else when the direct requests are answered, but after `longestFarewell` at the latest. Not after
    /// this object is gone.
    void bidFarewell(std::function<void()> done);

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

    void handleReady();
    void handleConfigured();
    void handleCollectVerified();
    void sendConfiguration();
    void deliver(const AnalyticsEvent& event);
    void sendDirectly(const AnalyticsEvent& event);
    AnalyticsNativeCollect& nativeCollect();
    void resetVerification();
    void scheduleVerification();
    Task<void> verifyLater();
    void verificationTimedOut();
    void endFarewell();

    Clock& clock_;
    std::string clientId_;
    std::string appVersion_;
    Clock::TimePoint sessionStartTime_;

    mutable std::mutex lock_;           // never held while calling another component
    std::atomic<bool> enabled_ = false; // written under the lock, read without it
    std::vector<AnalyticsEvent> preInitQueue_;

    // Under the lock too.
    bool webViewStarted_ = false;
    bool webViewConfigured_ = false; // the page has said that it is ready
    bool collectVerified_ = false;
    bool nativeFallbackActive_ = false;
    bool collectVerificationScheduled_ = false;
    std::vector<AnalyticsEvent> pendingVerificationEvents_; // copies of what an unverified page was given

    std::unique_ptr<const AnalyticsRoutes> routes_; // never changes once delivery has started
    std::once_flag nativeCollectMade_;
    std::shared_ptr<AnalyticsNativeCollect> nativeCollect_;

    std::function<void()> farewellDone_;
    Subscription farewellLimit_;
    Subscription farewellAnswers_;
    TaskScope verifications_; // more than one after switching off and on
};

} // namespace corvane

#pragma once

#include "async/TaskScope.h"
#include "base/RandomBits.h"
#include "base/Subscription.h"
#include "catalogue/SiteListManager.h"
#include "notifications/PushDeviceManager.h"
#include "ports/Clock.h"
#include "ports/MainQueue.h"
#include "ports/Wake.h"
#include "settings/SettingsManager.h"
#include "updates/AppUpdateManager.h"

#include <chrono>
#include <memory>
#include <optional>

namespace corvane {

/// Decides when the three remote checks run: waiting notifications, the service list, the program's version. What they
/// find is published by their own managers.
///
/// At most one pass runs at a time, its checks one after another. A pass that hangs is given up: its tasks are
/// destroyed, and so nothing of it arrives later. Due times are kept in memory only and move at the end of a pass.
/// Apart from the first, a pass is started and given up only from turns of the main loop of their own, never from
/// inside a check.
class StatusRefreshCoordinator {
public:
    static constexpr std::chrono::seconds tickInterval{60};
    static constexpr std::chrono::seconds notifyInterval{1800};
    static constexpr std::chrono::seconds sitesInterval{43200};
    static constexpr std::chrono::seconds appInterval{86400};
    static constexpr std::chrono::seconds retryInterval{120}; // after a failed check
    static constexpr std::chrono::seconds forceDebounce{5};   // the shortest time between two forced passes
    static constexpr std::chrono::seconds busyWatchdog{60};   // a pass older than this may be given up

    /// All must outlive this object.
    StatusRefreshCoordinator(PushDeviceManager& pushDevices, Clock& clock, MainQueue& queue, Wake& wake,
                             RandomBits randomBits);

    /// Takes the managers, of which it keeps none alive but for the length of a pass; a manager that is gone is left
    /// out. The first call runs everything at once and starts the schedule, which ends with this object.
    void start(std::weak_ptr<SiteListManager> siteListManager, std::weak_ptr<AppUpdateManager> appUpdateManager,
               std::weak_ptr<SettingsManager> settingsManager);

    /// Runs everything in a later turn, unless that has been asked for within the last moments. For wake-up and for the
    /// program becoming active.
    void forceKick();

private:
    using TimePoint = Clock::TimePoint;

    struct Due {
        bool notify = false;
        bool sites = false;
        bool app = false;
    };

    /// What a pass works with; it keeps them alive.
    struct Managers {
        std::shared_ptr<SiteListManager> sites;
        std::shared_ptr<AppUpdateManager> app;
        std::shared_ptr<SettingsManager> settings;
    };

    void installWakeObserver();
    void startTickLoop();
    Task<void> tick();
    void kick();
    void runDue(bool force);
    Task<void> refreshPass(Due due, Managers managers);

    TimePoint nextDue(bool succeeded, std::chrono::seconds interval) const;

    PushDeviceManager& pushDevices_;
    Clock& clock_;
    MainQueue& queue_;
    Wake& wake_;
    RandomBits randomBits_;

    std::weak_ptr<SiteListManager> siteListManager_;
    std::weak_ptr<AppUpdateManager> appUpdateManager_;
    std::weak_ptr<SettingsManager> settingsManager_;

    // The epoch is earlier than every real reading of the clock: everything is due at first.
    TimePoint nextNotifyDue_;
    TimePoint nextSitesDue_;
    TimePoint nextAppDue_;
    TimePoint lastForceKick_;
    std::optional<TimePoint> busySince_; // present exactly while a pass is in flight
    bool didStart_ = false;

    Subscription wakeObserver_;
    Subscription kick_;
    TaskScope ticks_;
    TaskScope inFlight_;
};

} // namespace corvane

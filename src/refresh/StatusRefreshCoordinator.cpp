#include "refresh/StatusRefreshCoordinator.h"

#include "refresh/Jitter.h"

#include <string>
#include <utility>

namespace corvane {

StatusRefreshCoordinator::StatusRefreshCoordinator(PushDeviceManager& pushDevices, Clock& clock, MainQueue& queue,
                                                   Wake& wake, RandomBits randomBits)
    : pushDevices_(pushDevices), clock_(clock), queue_(queue), wake_(wake), randomBits_(std::move(randomBits))
{
}

void StatusRefreshCoordinator::start(std::weak_ptr<SiteListManager> siteListManager,
                                     std::weak_ptr<AppUpdateManager> appUpdateManager,
                                     std::weak_ptr<SettingsManager> settingsManager)
{
    siteListManager_ = std::move(siteListManager);
    appUpdateManager_ = std::move(appUpdateManager);
    settingsManager_ = std::move(settingsManager);
    installWakeObserver();
    if (std::exchange(didStart_, true))
        return;
    lastForceKick_ = clock_.now();
    runDue(true);
    startTickLoop();
}

void StatusRefreshCoordinator::forceKick()
{
    // Whatever a kick interrupts may be a check of the pass in flight, which must not end in its own turn.
    kick_ = queue_.post([this] { kick(); });
}

void StatusRefreshCoordinator::kick()
{
    const auto now = clock_.now();
    if (now - lastForceKick_ < forceDebounce)
        return;
    lastForceKick_ = now;
    runDue(true);
}

void StatusRefreshCoordinator::installWakeObserver()
{
    if (!wakeObserver_.isActive())
        wakeObserver_ = wake_.observeWake([this] { forceKick(); });
}

void StatusRefreshCoordinator::startTickLoop()
{
    ticks_.cancel();
    ticks_.start(tick());
}

Task<void> StatusRefreshCoordinator::tick()
{
    while (true) {
        co_await clock_.sleep(tickInterval);
        runDue(false);
    }
}

void StatusRefreshCoordinator::runDue(bool force)
{
    const auto now = clock_.now();
    const Due due{
        .notify = force || now >= nextNotifyDue_,
        .sites = force || now >= nextSitesDue_,
        .app = force || now >= nextAppDue_,
    };
    if (!due.notify && !due.sites && !due.app)
        return;
    if (busySince_ && now - *busySince_ <= busyWatchdog)
        return;
    inFlight_.cancel();
    busySince_ = now;
    inFlight_.start(refreshPass(
        due, {.sites = siteListManager_.lock(), .app = appUpdateManager_.lock(), .settings = settingsManager_.lock()}));
}

Task<void> StatusRefreshCoordinator::refreshPass(Due due, Managers managers)
{
    std::int64_t notify = -1;
    std::int64_t sites = -1;
    std::int64_t app = -1;
    due.sites = due.sites && managers.sites;
    due.app = due.app && managers.app;
    if (due.notify)
        notify = co_await pushDevices_.refresh();
    if (due.sites) {
        auto source = managers.settings ? managers.settings->settings()->SitesSourceUrl : std::nullopt;
        sites = co_await managers.sites->backgroundCheck(std::move(source));
    }
    if (due.app)
        app = co_await managers.app->backgroundCheck();

    if (due.notify)
        nextNotifyDue_ = nextDue(notify >= 0, notifyInterval);
    if (due.sites)
        nextSitesDue_ = nextDue(sites >= 0, sitesInterval);
    if (due.app)
        nextAppDue_ = nextDue(app >= 0, appInterval);
    busySince_.reset();
}

StatusRefreshCoordinator::TimePoint StatusRefreshCoordinator::nextDue(bool succeeded,
                                                                      std::chrono::seconds interval) const
{
    if (!succeeded)
        return clock_.now() + retryInterval;
    return clock_.now() + std::chrono::duration_cast<TimePoint::duration>(jittered(interval, randomBits_));
}

} // namespace corvane

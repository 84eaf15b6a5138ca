// How recorded events leave: the operations of AnalyticsManager from the start of the hidden page on.

#include "analytics/AnalyticsManager.h"
#include "analytics/AnalyticsRoutes.h"

#include <cassert>
#include <utility>
#include <variant>

namespace corvane {
namespace {

Json messageOf(const AnalyticsEvent& event)
{
    auto params = Json::object();
    for (const auto& [key, value] : event.params)
        params[key] = std::visit([](const auto& plain) { return Json(plain); }, value);
    return {{"type", "event"}, {"name", event.name}, {"params", std::move(params)}};
}

} // namespace

void AnalyticsManager::startWebView(AnalyticsRoutes routes)
{
    const auto self = weak_from_this();
    assert(!self.expired());
    {
        const std::scoped_lock guard(lock_);
        if (webViewStarted_)
            return;
        routes_ = std::make_unique<const AnalyticsRoutes>(std::move(routes));
        webViewStarted_ = true;
    }
    const auto call = [self](void (AnalyticsManager::*operation)()) {
        return [self, operation] {
            if (const auto manager = self.lock())
                (manager.get()->*operation)();
        };
    };
    routes_->page->setSignals({.onReady = call(&AnalyticsManager::handleReady),
                               .onConfigured = call(&AnalyticsManager::handleConfigured),
                               .onCollectVerified = call(&AnalyticsManager::handleCollectVerified)});
    if (routes_->page->isReady())
        handleReady();
}

void AnalyticsManager::handleReady()
{
    bool isOn = false;
    {
        const std::scoped_lock guard(lock_);
        if (std::exchange(webViewConfigured_, true))
            return;
        isOn = enabled_;
    }
    if (isOn) {
        sendConfiguration();
        return;
    }
    routes_->page->dropPendingMessages();
    const std::scoped_lock guard(lock_);
    preInitQueue_.clear();
}

void AnalyticsManager::sendConfiguration()
{
    routes_->page->sendMessage(
        {{"type", "configure"},
         {"config", {{"client_id", clientId_}, {"send_page_views", false}, {"debug_mode", false}}},
         {"properties", {{"app_version", appVersion_}}}});
}

void AnalyticsManager::handleConfigured()
{
    std::vector<AnalyticsEvent> events;
    {
        const std::scoped_lock guard(lock_);
        events.swap(preInitQueue_);
    }
    for (const auto& event : events)
        deliver(event);
}

void AnalyticsManager::handleCollectVerified()
{
    const std::scoped_lock guard(lock_);
    if (!std::exchange(collectVerified_, true))
        pendingVerificationEvents_.clear();
}

/// Way and copy are settled in one step, so that an event recorded while the check ends goes directly or is among the
/// copies that the check sends.
void AnalyticsManager::deliver(const AnalyticsEvent& event)
{
    bool isDirect = false;
    bool isFirstCopy = false;
    {
        const std::scoped_lock guard(lock_);
        if (!enabled_)
            return;
        isDirect = nativeFallbackActive_;
        if (!isDirect && !collectVerified_) {
            pendingVerificationEvents_.push_back(event);
            isFirstCopy = !std::exchange(collectVerificationScheduled_, true);
        }
    }
    if (isDirect)
        sendDirectly(event);
    else
        routes_->page->sendMessage(messageOf(event));
    if (isFirstCopy)
        scheduleVerification();
}

void AnalyticsManager::sendDirectly(const AnalyticsEvent& event)
{
    nativeCollect().sendEvent(event.name, event.params, clientId_, appVersion_);
}

AnalyticsNativeCollect& AnalyticsManager::nativeCollect()
{
    std::call_once(nativeCollectMade_, [this] { nativeCollect_ = routes_->makeNativeCollect(); });
    return *nativeCollect_;
}

void AnalyticsManager::resetVerification()
{
    const std::scoped_lock guard(lock_);
    collectVerified_ = false;
    nativeFallbackActive_ = false;
    collectVerificationScheduled_ = false;
    pendingVerificationEvents_.clear();
}

void AnalyticsManager::scheduleVerification()
{
    routes_->queue.postFromAnyThread([weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->verifications_.start(self->verifyLater());
    });
}

/// Never cancelled, but by the end of this object: of two checks that run after switching off and on, the one that
/// comes first decides.
Task<void> AnalyticsManager::verifyLater()
{
    co_await clock_.sleep(verificationDelay);
    verificationTimedOut();
}

void AnalyticsManager::verificationTimedOut()
{
    std::vector<AnalyticsEvent> unconfirmed;
    {
        const std::scoped_lock guard(lock_);
        collectVerificationScheduled_ = false;
        unconfirmed.swap(pendingVerificationEvents_);
        if (collectVerified_ || nativeFallbackActive_)
            return;
        nativeFallbackActive_ = true;
    }
    for (const auto& event : unconfirmed)
        sendDirectly(event);
}

void AnalyticsManager::bidFarewell(std::function<void()> done)
{
    bool isDirect = false;
    bool isByPage = false;
    {
        const std::scoped_lock guard(lock_);
        isDirect = nativeFallbackActive_; // also when switched off: its own event may be on its way
        isByPage = !isDirect && enabled_ && webViewStarted_ && webViewConfigured_;
    }
    if (!isDirect && !isByPage) {
        done();
        return;
    }
    farewellDone_ = std::move(done);
    farewellLimit_ = clock_.after(longestFarewell, [this] { endFarewell(); });
    if (!isDirect)
        return; // The page does not tell which event it has sent.
    // Behind the requests, which start in turns of their own.
    farewellAnswers_ = routes_->queue.post([this] {
        farewellAnswers_ = nativeCollect().isSending().bind([this](bool isSending) {
            if (!isSending)
                endFarewell();
        });
    });
}

void AnalyticsManager::endFarewell()
{
    farewellLimit_.end();
    farewellAnswers_.end();
    if (const auto done = std::exchange(farewellDone_, nullptr))
        done();
}

} // namespace corvane

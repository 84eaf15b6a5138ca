#include "browser/WebViewCoordinator.h"

#include "analytics/AnalyticsManager.h"
#include "base/Text.h"
#include "browser/LoadableAddress.h"
#include "notifications/PushDeviceManager.h"
#include "state/AppState.h"

#include <chrono>
#include <utility>

namespace corvane {
namespace {

/// A page whose process dies again this soon is left alone.
constexpr std::chrono::seconds recoveryPause{30};

bool saysDeleted(std::string_view part)
{
    return lowercased(part).contains("deleted");
}

} // namespace

WebViewCoordinator::WebViewCoordinator(AppState& appState, PushDeviceManager& pushDevices, AnalyticsManager& analytics,
                                       const AllowedHosts& allowedHosts, MainQueue& queue, Clock& clock)
    : appState_(appState), pushDevices_(pushDevices), analytics_(analytics), allowedHosts_(allowedHosts), queue_(queue),
      clock_(clock), snapshots_(queue, [this] { takeSnapshot(); }), deadline_(clock, [this] {
          if (webView_ != nullptr && webView_->isLoading())
              webView_->stopLoading();
      })
{
}

void WebViewCoordinator::attach(WebView& webView)
{
    webView_ = &webView;
    webView.setDelegate(this);
    snapshots_.request();
}

void WebViewCoordinator::detach()
{
    dismissPanel();
    deadline_.stop();
    posted_.clear();
    if (auto* webView = std::exchange(webView_, nullptr))
        webView->setDelegate(nullptr);
}

void WebViewCoordinator::load(const Url& url, LoadPolicy policy)
{
    if (webView_ == nullptr || !isLoadable(url))
        return;
    dismissPanel();
    webView_->load(url, policy);
}

void WebViewCoordinator::takeSnapshot()
{
    if (webView_ == nullptr)
        return;
    appState_.canGoBack.set(webView_->canGoBack());
    appState_.canGoForward.set(webView_->canGoForward());
    appState_.isLoading.set(webView_->isLoading());
    appState_.currentURL.set(Url::fromEngine(webView_->address()));
    appState_.title.set(webView_->title());
}

void WebViewCoordinator::applyTheme(const std::string& appTheme)
{
    if (webView_ == nullptr)
        return;
    const std::string_view scheme = appTheme == "Light" ? "light" : appTheme == "Dark" ? "dark" : "";
    webView_->evaluate("document.documentElement.style.colorScheme = '" + std::string(scheme) + "';");
    appliedAppTheme_ = appTheme;
}

void WebViewCoordinator::stateChanged()
{
    snapshots_.request();
}

void WebViewCoordinator::loadStarted()
{
    deadline_.restart();
}

void WebViewCoordinator::loadRedirected()
{
    deadline_.restart();
}

void WebViewCoordinator::loadCommitted()
{
    deadline_.stop();
    committedURL_ = Url::fromEngine(webView_->committedAddress());
    snapshots_.request();
}

void WebViewCoordinator::loadFinished()
{
    deadline_.stop();
    snapshots_.request();
    if (const auto address = webView_->address(); !address.empty())
        analytics_.trackPageView(address);
    if (appliedAppTheme_)
        applyTheme(std::string(*appliedAppTheme_));
    checkForDeletion();
}

void WebViewCoordinator::loadFailed()
{
    deadline_.stop();
    snapshots_.request();
}

void WebViewCoordinator::webProcessEnded()
{
    deadline_.stop();
    dismissPanel();
    committedURL_.reset();
    snapshots_.request();

    const auto now = clock_.now();
    if (lastRecovery_ && now - *lastRecovery_ < recoveryPause)
        return;
    lastRecovery_ = now;
    post([this] { webView_->reload(); });
}

void WebViewCoordinator::checkForDeletion()
{
    const auto url = Url::fromEngine(webView_->address());
    if (!url || !allowedHosts_.containsHost(url->host()))
        return;
    if (saysDeleted(url->query()) || saysDeleted(url->fragment()))
        post([this] { returnToRegistration(); });
}

void WebViewCoordinator::returnToRegistration()
{
    appState_.setFirstUse(true);
    load(pushDevices_.registrationPageURL(), LoadPolicy::ignoreCaches);
}

void WebViewCoordinator::newWindowRequested(std::unique_ptr<NewWindowRequest> request)
{
    const auto requested = Url::fromEngine(request->address());
    if (requested && mayReplacePage(*requested, committedURL_))
        request->loadInSameView();
}

void WebViewCoordinator::panelRequested(std::unique_ptr<ScriptPanel> panel)
{
    dismissPanel();
    panel_.set(std::make_shared<PagePanel>(std::move(panel), committedURL_ ? committedURL_->host() : std::string()));
}

void WebViewCoordinator::dismissPanel()
{
    if (const auto open = *panel_) {
        panel_.set(nullptr);
        open->cancel();
    }
}

void WebViewCoordinator::acceptPanel(std::string_view text)
{
    if (const auto open = *panel_) {
        panel_.set(nullptr);
        open->accept(text);
    }
}

bool WebViewCoordinator::isTrusted(const PageMessage& message) const
{
    if (!allowedHosts_.trustsOrigin(message.origin))
        return false;
    if (message.isTopFrame)
        return true;
    // What a frame says last arrives when the next page has already taken the place of the one around it.
    return allowedHosts_.trustsOrigin(message.topOrigin) && committedURL_ &&
           allowedHosts_.trustsOrigin(committedURL_->origin());
}

void WebViewCoordinator::messageReceived(const PageMessage& message)
{
    if (!isTrusted(message))
        return;
    if (auto report = readPageReport(message.body))
        post([this, report = std::move(*report)] { carryOut(report); });
}

void WebViewCoordinator::carryOut(const PageReport& report)
{
    switch (report.action) {
    case PageReport::Action::success:
        appState_.setFirstUse(false);
        analytics_.trackRegistrationSuccess();
        break;
    case PageReport::Action::binddevice:
        binds_.start(pushDevices_.bind(report.bindingToken));
        break;
    case PageReport::Action::deleteProfile:
        analytics_.trackProfileDeleted();
        returnToRegistration();
        break;
    }
}

void WebViewCoordinator::post(std::move_only_function<void()> action)
{
    posted_.emplace_back();
    const auto place = std::prev(posted_.end());
    *place = queue_.post([this, place, action = std::move(action)]() mutable {
        const auto done = std::move(*place); // Lives until the action has run.
        posted_.erase(place);
        action();
    });
}

} // namespace corvane

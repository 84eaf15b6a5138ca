#pragma once

#include "async/TaskScope.h"
#include "base/Published.h"
#include "browser/AllowedHosts.h"
#include "browser/LoadDeadline.h"
#include "browser/PagePanel.h"
#include "browser/PageReport.h"
#include "ports/Clock.h"
#include "ports/MainQueue.h"
#include "ports/WebView.h"
#include "state/UpdateScheduler.h"

#include <list>
#include <memory>
#include <optional>
#include <string>

namespace corvane {

class AnalyticsManager;
class AppState;
class PushDeviceManager;

/// Receives what the main browser view tells: mirrors its state into `AppState`, shows panels, keeps every page in the
/// one view, gives each page the window's colour scheme, and acts on the registration page's messages.
class WebViewCoordinator final : public WebViewDelegate {
public:
    /// Everything must outlive this object.
    WebViewCoordinator(AppState& appState, PushDeviceManager& pushDevices, AnalyticsManager& analytics,
                       const AllowedHosts& allowedHosts, MainQueue& queue, Clock& clock);

    /// Takes the first snapshot and follows the view from now on.
    void attach(WebView& webView);

    /// The view is about to go: leaves it alone from now on.
    void detach();

    /// Loads an address in the view; an open panel is cancelled, since the engine would wait for it.
    void load(const Url& url, LoadPolicy policy);

    /// Cancels the open panel, if any.
    void dismissPanel();

    /// Answers the open panel with "OK".
    void acceptPanel(std::string_view text);

    /// Gives the page the colour scheme of an `AppTheme` value: "Light", "Dark", or anything else for none.
    void applyTheme(const std::string& appTheme);

    /// The value given to the page last.
    const std::optional<std::string>& appliedAppTheme() const { return appliedAppTheme_; }

    /// The panel that waits for an answer; one at a time.
    const Published<std::shared_ptr<PagePanel>>& panel() const { return panel_; }

    void stateChanged() override;
    void loadStarted() override;
    void loadRedirected() override;
    void loadCommitted() override;
    void loadFinished() override;
    void loadFailed() override;
    void webProcessEnded() override;
    void newWindowRequested(std::unique_ptr<NewWindowRequest> request) override;
    void panelRequested(std::unique_ptr<ScriptPanel> panel) override;
    void messageReceived(const PageMessage& message) override;

private:
    void takeSnapshot();
    void checkForDeletion();
    void returnToRegistration();
    bool isTrusted(const PageMessage& message) const;
    void carryOut(const PageReport& report);
    void post(std::move_only_function<void()> action);

    AppState& appState_;
    PushDeviceManager& pushDevices_;
    AnalyticsManager& analytics_;
    const AllowedHosts& allowedHosts_;
    MainQueue& queue_;
    Clock& clock_;
    WebView* webView_ = nullptr;
    std::optional<std::string> appliedAppTheme_;
    std::optional<Url> committedURL_; // of the page shown; empty before the first and after its process has ended
    std::optional<Clock::TimePoint> lastRecovery_;
    Published<std::shared_ptr<PagePanel>> panel_;
    UpdateScheduler snapshots_;
    LoadDeadline deadline_;
    std::list<Subscription> posted_;
    TaskScope binds_; // last: cancelled before anything it uses is destroyed
};

} // namespace corvane

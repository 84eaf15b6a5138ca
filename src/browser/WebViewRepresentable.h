#pragma once

#include "base/Published.h"
#include "browser/WebViewCoordinator.h"
#include "ports/Endpoints.h"
#include "ports/FileStore.h"
#include "ports/MainQueue.h"
#include "ports/Places.h"
#include "ports/WebView.h"
#include "settings/AppSettings.h"
#include "state/AppState.h"
#include "state/UpdateScheduler.h"

#include <memory>
#include <optional>
#include <vector>

namespace corvane {

class PushDeviceManager;

/// The browser view of the main window: made once, then carries out the requests that `AppState` holds, one on each
/// update, and clears each in a later turn.
class WebViewRepresentable {
public:
    /// What the view needs of the rest; everything must outlive it.
    struct Surroundings {
        AppState& appState;
        const Published<AppSettings>& settings;
        PushDeviceManager& pushDevices;
        const AllowedHosts& allowedHosts;
        const Endpoints& endpoints;
        FileStore& files;
        const Places& places;
        MainViewFactory& views;
        MainQueue& queue;
    };

    WebViewRepresentable(Surroundings surroundings, WebViewCoordinator& coordinator);
    ~WebViewRepresentable();

    /// Makes the engine view and starts its first load: `initialURL`, or the registration page. Called once.
    void makeView(const std::optional<Url>& initialURL);

    /// The engine view; null before `makeView`.
    WebView* view() const { return view_.get(); }

private:
    void updateView();
    void carryOut(WebViewAction action);
    Url homePage() const;

    Surroundings around_;
    WebViewCoordinator& coordinator_;
    std::unique_ptr<WebView> view_;
    UpdateScheduler updates_;
    Subscription clearingLoad_;
    Subscription clearingAction_;
    std::vector<Subscription> observations_;
};

} // namespace corvane

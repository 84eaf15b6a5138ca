#include "browser/WebViewRepresentable.h"

#include "browser/BrowserConfiguration.h"
#include "browser/LoadableAddress.h"
#include "notifications/PushDeviceManager.h"

namespace corvane {
namespace {

/// Clears a request in a later turn, unless a newer one has taken its place by then.
template <typename Request>
Subscription clearLater(MainQueue& queue, Published<std::optional<Request>>& field)
{
    return queue.post([&field, carriedOut = *field] {
        if (*field == carriedOut)
            field.set(std::nullopt);
    });
}

} // namespace

WebViewRepresentable::WebViewRepresentable(Surroundings surroundings, WebViewCoordinator& coordinator)
    : around_(surroundings), coordinator_(coordinator), updates_(surroundings.queue, [this] { updateView(); })
{
}

WebViewRepresentable::~WebViewRepresentable()
{
    coordinator_.detach();
}

void WebViewRepresentable::makeView(const std::optional<Url>& initialURL)
{
    // The engine keeps its own folders below this one; without it, it still shows pages.
    static_cast<void>(around_.files.makeFolder(around_.places.data));
    view_ = around_.views.makeMainView(mainViewConfiguration(around_.allowedHosts));
    coordinator_.attach(*view_);
    coordinator_.load(initialURL.value_or(around_.pushDevices.registrationPageURL()), LoadPolicy::useCaches);

    const auto update = [this](const auto&) { updates_.request(); };
    observations_.push_back(around_.appState.pendingLoadURL.observe(update));
    observations_.push_back(around_.appState.pendingAction.observe(update));
    observations_.push_back(around_.settings.observe(update));
    updates_.request();
}

void WebViewRepresentable::updateView()
{
    const auto& appTheme = around_.settings->AppTheme;
    if (coordinator_.appliedAppTheme() != appTheme)
        coordinator_.applyTheme(appTheme);

    if (const auto address = *around_.appState.pendingLoadURL) {
        coordinator_.load(*address, LoadPolicy::useCaches);
        clearingLoad_ = clearLater(around_.queue, around_.appState.pendingLoadURL);
    } else if (const auto action = *around_.appState.pendingAction) {
        carryOut(*action);
        clearingAction_ = clearLater(around_.queue, around_.appState.pendingAction);
    }
}

void WebViewRepresentable::carryOut(WebViewAction action)
{
    coordinator_.dismissPanel();
    switch (action) {
    case WebViewAction::goBack:
        view_->goBack();
        break;
    case WebViewAction::goForward:
        view_->goForward();
        break;
    case WebViewAction::reload:
        view_->reload();
        break;
    case WebViewAction::stop:
        view_->stopLoading();
        break;
    case WebViewAction::goHome:
        coordinator_.load(homePage(), LoadPolicy::useCaches);
        break;
    }
}

Url WebViewRepresentable::homePage() const
{
    const auto& state = around_.appState;
    if (*state.isURLMode) {
        if (auto typed = parseTyped(*state.urlModeBarText))
            return *typed;
    }
    if (*state.isFirstUse())
        return around_.pushDevices.registrationPageURL();
    if (const auto& selected = *state.selectedSiteURL)
        return *selected;
    return around_.endpoints.helpPage();
}

} // namespace corvane

#pragma once

#include "base/Published.h"
#include "base/Url.h"
#include "state/WebViewAction.h"
#include "state/WhatsNewContext.h"

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// The defaults key under which true is stored once the question for consent to analytics has been answered.
inline constexpr std::string_view analyticsConsentShownKey = "AnalyticsConsentShown";

class AnalyticsManager;
class DefaultsStore;

/// The observable state of the main window. Nobody calls the browser: whoever wants it to act sets `pendingLoadURL` or
/// `pendingAction`; the browser view carries the request out on its next update and clears the field afterwards.
/// Main thread only.
class AppState {
public:
    /// Reads the first-use flag. Both must outlive this object.
    AppState(DefaultsStore& defaults, AnalyticsManager& analytics);

    /// The browser's own state, mirrored.
    Published<bool> canGoBack{false};
    Published<bool> canGoForward{false};
    Published<bool> isLoading{false};
    Published<std::optional<Url>> currentURL;
    Published<std::string> title;

    /// Requests to the browser; an address wins over an action.
    Published<std::optional<WebViewAction>> pendingAction;
    Published<std::optional<Url>> pendingLoadURL;

    /// The chosen service's start page, where Home leads.
    Published<std::optional<Url>> selectedSiteURL;

    Published<bool> isURLMode{false};
    Published<std::string> urlModeBarText;                       // as typed
    Published<std::optional<std::string>> urlModeRestoredSiteID; // the service to return to after URL mode

    Published<bool> showAbout{false};
    Published<bool> showSettings{false};
    Published<bool> showNotifications{false};
    Published<std::optional<WhatsNewContext>> activeWhatsNew;
    Published<bool> showAnalyticsConsent{false};

    /// Opened once the notifications dialog has closed.
    std::optional<Url> pendingURLAfterNotifications;

    /// While true the registration page stands in for a service.
    const Published<bool>& isFirstUse() const { return isFirstUse_; }

    /// Begins or ends first use: stored at once; beginning forgets the chosen service, ending is recorded and may ask
    /// for consent to analytics. An equal value does nothing.
    void setFirstUse(bool value);

private:
    DefaultsStore& defaults_;
    AnalyticsManager& analytics_;
    Published<bool> isFirstUse_;
};

} // namespace corvane

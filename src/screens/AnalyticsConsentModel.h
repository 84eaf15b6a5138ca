#pragma once

#include "ports/Endpoints.h"

#include <array>
#include <string_view>

namespace corvane {

class AnalyticsManager;
class AppState;
class DefaultsStore;
class SettingsManager;

/// Decides what the question for consent to analytics says and what an answer means. Closed without an answer, it is
/// asked again the next time that first use ends.
class AnalyticsConsentModel {
public:
    static constexpr std::string_view title = "Analytics Data Collection";
    static constexpr std::string_view introduction =
        "Corvane collects anonymous usage analytics to help improve the application and provide a better user "
        "experience.";
    static constexpr std::string_view policyLink = "View Privacy Policy – Usage Data";
    static constexpr std::string_view note = "You can change this setting later in Settings.";

    struct Card {
        std::string_view icon; // a symbolic icon's name
        std::string_view heading;
        std::string_view text;
    };

    static constexpr std::array<Card, 2> cards{{
        {"corvane-list-symbolic", "What we collect",
         "Anonymous usage patterns, feature usage statistics, and application performance metrics."},
        {"corvane-privacy-symbolic", "Privacy & Control",
         "All data is anonymous and cannot identify you personally. Analytics can be changed at any time in "
         "Settings."},
    }};

    /// Everything must outlive this object.
    AnalyticsConsentModel(AppState& appState, SettingsManager& settingsManager, AnalyticsManager& analytics,
                          DefaultsStore& defaults, const Endpoints& endpoints);

    /// "Enable Analytics" or "Disable Analytics": applied and remembered at once, and the dialog closes.
    void answer(bool isEnabled);

    /// Closes the dialog without an answer and shows the policy in the main browser.
    void showPrivacyPolicy();

private:
    AppState& appState_;
    SettingsManager& settingsManager_;
    AnalyticsManager& analytics_;
    DefaultsStore& defaults_;
    const Endpoints& endpoints_;
};

} // namespace corvane

#pragma once

#include "base/Published.h"
#include "ports/Endpoints.h"
#include "state/WebViewAction.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace corvane {

class AnalyticsManager;
class AppState;
class PushDeviceManager;

/// Decides what the browser buttons and the menu do. Every command becomes a change of `AppState`.
class ToolbarModel {
public:
    /// One browser button. `trackedLabel` names it in analytics.
    struct Button {
        WebViewAction action;
        std::string_view icon; // a symbolic icon's name
        std::string_view tooltip;
        std::string_view trackedLabel;
    };

    /// In the order in which they are shown.
    static constexpr std::array<Button, 5> buttons{{
        {WebViewAction::goBack, "go-previous-symbolic", "Back", "Back"},
        {WebViewAction::goHome, "go-home-symbolic", "Home", "Home"},
        {WebViewAction::goForward, "go-next-symbolic", "Forward", "Forward"},
        {WebViewAction::reload, "view-refresh-symbolic", "Reload", "Reload"},
        {WebViewAction::stop, "process-stop-symbolic", "Stop", "Cancel"},
    }};

    enum class MenuItem : std::uint8_t { profile, help };

    struct MenuEntry {
        MenuItem item;
        std::string_view icon;
        std::string_view title;
        bool endsGroup; // a separator follows
    };

    static constexpr std::array<MenuEntry, 2> menu{{
        {MenuItem::profile, "avatar-default-symbolic", "Profile", true},
        {MenuItem::help, "dialog-question-symbolic", "Help", false},
    }};

    /// Everything must outlive this object.
    ToolbarModel(AppState& appState, const PushDeviceManager& pushDevices, const Endpoints& endpoints,
                 AnalyticsManager& analytics);

    /// Whether the button of this action can be pressed now.
    const Published<bool>& isEnabled(WebViewAction action) const;

    void press(const Button& button);
    void menuOpened();
    void choose(const MenuEntry& entry);

private:
    AppState& appState_;
    const PushDeviceManager& pushDevices_;
    const Endpoints& endpoints_;
    AnalyticsManager& analytics_;
    Published<bool> always_{true};
};

} // namespace corvane

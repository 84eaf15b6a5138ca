#include "screens/ShortcutModel.h"

#include "screens/SiteSelectorModel.h"
#include "screens/ToolbarModel.h"
#include "state/AppState.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvane {
namespace {

using Named = KeyPress::Named;
using Shortcut = ShortcutModel::Shortcut;

constexpr std::array<Shortcut, 5> navigation{{
    {"<Alt>Left", "Back"},
    {"<Alt>Right", "Forward"},
    {"<Alt>Home", "Home"},
    {"F5 <Control>r", "Reload"},
    {"Escape", "Stop"},
}};

constexpr std::array<Shortcut, 2> address{{
    {"<Control><Shift>u", "Switch URL Mode"},
    {"<Control>l", "Type an Address"},
}};

constexpr std::array<Shortcut, 6> window{{
    {"F10", "Menu"},
    {"<Control>comma", "Settings"},
    {"F1", "Help"},
    {"<Control>question", "Keyboard Shortcuts"},
    {"<Control>w", "Close"},
    {"<Control>q", "Quit"},
}};

constexpr std::array<ShortcutModel::Group, 3> allGroups{{
    {"Navigation", navigation},
    {"Address", address},
    {"Window", window},
}};

struct ActionKey {
    KeyPress key;
    WebViewAction action;
};

constexpr std::array<ActionKey, 5> actionKeys{{
    {{.named = Named::left, .alternate = true}, WebViewAction::goBack},
    {{.named = Named::right, .alternate = true}, WebViewAction::goForward},
    {{.named = Named::home, .alternate = true}, WebViewAction::goHome},
    {{.named = Named::f5}, WebViewAction::reload},
    {{.character = U'r', .control = true}, WebViewAction::reload},
}};

} // namespace

std::span<const ShortcutModel::Group> ShortcutModel::groups()
{
    return allGroups;
}

ShortcutModel::ShortcutModel(AppState& appState, ToolbarModel& toolbar, SiteSelectorModel& selector,
                             std::function<void()> toggleURLMode)
    : appState_(appState), toolbar_(toolbar), selector_(selector), toggleURLMode_(std::move(toggleURLMode))
{
}

bool ShortcutModel::press(const KeyPress& key, Place place)
{
    if (key.togglesURLMode()) {
        toggleURLMode_();
        return true;
    }
    if (place == Place::sheet)
        return false;
    if (const auto* found = std::ranges::find(actionKeys, key, &ActionKey::key); found != actionKeys.end()) {
        toolbar_.perform(found->action); // Disabled or not: a page never gets half of these keys.
        return true;
    }
    if (key == KeyPress{.named = Named::f1}) {
        toolbar_.choose(ToolbarModel::MenuItem::help);
        return true;
    }
    if (key == KeyPress{.character = U'l', .control = true} && *appState_.isURLMode) {
        selector_.beginEditing();
        return true;
    }
    // In a text field, Escape is the field's.
    if (key == KeyPress{.named = Named::escape} && place == Place::window && *appState_.isLoading) {
        toolbar_.perform(WebViewAction::stop);
        return true;
    }
    return false;
}

} // namespace corvane

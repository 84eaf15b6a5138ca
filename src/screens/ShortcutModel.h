#pragma once

#include "screens/KeyPress.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

namespace corvane {

class AppState;
class SiteSelectorModel;
class ToolbarModel;

/// Decides what the keys of the main window do. A key presses its button or chooses its menu entry: it counts as that.
class ShortcutModel {
public:
    /// One line of the window that lists them all. `accelerator` is in the toolkit's notation, several divided by
    /// blanks.
    struct Shortcut {
        std::string_view accelerator;
        std::string_view title;
    };
    struct Group {
        std::string_view title;
        std::span<const Shortcut> shortcuts;
    };

    /// Every key of the program: those of `press`, and those of the program's actions and of the toolkit.
    static std::span<const Group> groups();

    /// Where a key was pressed.
    enum class Place : std::uint8_t {
        sheet,   // in a dialog or a menu
        editing, // in a text field of the main window
        window,  // anywhere else in the main window
    };

    /// Everything must outlive this object.
    ShortcutModel(AppState& appState, ToolbarModel& toolbar, SiteSelectorModel& selector,
                  std::function<void()> toggleURLMode);

    /// Carries a key out before any control sees it; says whether it was one of ours.
    bool press(const KeyPress& key, Place place);

private:
    AppState& appState_;
    ToolbarModel& toolbar_;
    SiteSelectorModel& selector_;
    std::function<void()> toggleURLMode_;
};

} // namespace corvane

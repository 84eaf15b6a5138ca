#include "ui/TopmostWindow.h"

#include <algorithm>

namespace corvane {

Gtk::Window& topmostWindow(Gtk::Window& mainWindow)
{
    // Modal windows stack by being transient for each other.
    const auto coverOf = [](Gtk::Window* covered) {
        const auto windows = Gtk::Window::list_toplevels();
        const auto cover = std::ranges::find_if(windows, [covered](Gtk::Window* window) {
            return window->is_visible() && window->get_modal() && window->get_transient_for() == covered;
        });
        return cover == windows.end() ? nullptr : *cover;
    };
    auto* topmost = &mainWindow;
    while (auto* cover = coverOf(topmost))
        topmost = cover;
    return *topmost;
}

} // namespace corvane

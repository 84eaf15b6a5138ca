#include "ui/WindowMonitor.h"

#include <algorithm>

namespace corvane {

void WindowMonitor::watch(Gtk::Window& window)
{
    // The toolkit hears the keys of the program's actions only in windows that belong to it.
    if (auto* covered = window.get_transient_for())
        gtk_window_set_application(window.gobj(), gtk_window_get_application(covered->gobj()));
    keys_.watch(window);
    watchFocus(window);
}

void WindowMonitor::watchMainWindow(Gtk::Window& window)
{
    keys_.watchMainWindow(window);
    watchFocus(window);
}

void WindowMonitor::watchFocus(Gtk::Window& window)
{
    window.property_is_active().signal_changed().connect([this] { activation_.focusMoved(); });
}

bool WindowMonitor::isAnyWindowActive()
{
    return std::ranges::any_of(Gtk::Window::list_toplevels(), [](Gtk::Window* window) { return window->is_active(); });
}

} // namespace corvane

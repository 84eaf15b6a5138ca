#include "ui/WindowMonitor.h"

#include <algorithm>

namespace corvane {

void WindowMonitor::watch(Gtk::Window& window)
{
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

#include "ui/TopmostWindow.h"

namespace corvane {

Gtk::Window& topmostWindow(Gtk::Window& mainWindow)
{
    auto* topmost = &mainWindow;
    for (auto* window : Gtk::Window::list_toplevels()) {
        // Modal windows stack by being transient for each other.
        if (window->is_visible() && window->get_modal() && (window->is_active() || topmost == &mainWindow))
            topmost = window;
    }
    return *topmost;
}

} // namespace corvane

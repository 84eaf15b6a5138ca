#pragma once

#include <gtkmm/window.h>

namespace corvane {

/// The modal window that covers all others of the program; `mainWindow` when there is none.
Gtk::Window& topmostWindow(Gtk::Window& mainWindow);

} // namespace corvane

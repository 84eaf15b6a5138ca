#pragma once

#include <gtkmm/window.h>

namespace corvane {

/// Opens the window that lists all keys over the top-most window of the program, once. It goes by itself when it is
/// closed.
void showShortcuts(Gtk::Window& mainWindow);

} // namespace corvane

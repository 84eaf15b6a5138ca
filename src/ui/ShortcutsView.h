#pragma once

#include <gtkmm/window.h>

namespace corvane {

/// Opens the window that lists all keys over `parent`. It goes by itself when it is closed.
void showShortcuts(Gtk::Window& parent);

} // namespace corvane

#pragma once

#include <gtkmm/popover.h>

namespace corvane {

/// Gives the keyboard to the page in the window of this widget.
void focusPage(Gtk::Widget& part);

/// Closes a popover of the toolbar and gives the keyboard to the page below it, where a person goes on after a choice.
void closeAndFocusPage(Gtk::Popover& popover);

} // namespace corvane

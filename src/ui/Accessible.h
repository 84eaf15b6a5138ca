#pragma once

#include <string>

#include <gtkmm/widget.h>
#include <gtkmm/window.h>

namespace corvane {

/// Gives a widget the name that assistive technology reads. Of a menu button and of a drop-down list their inner button
/// is the one that is pressed and read, so that one is named too.
void setAccessibleName(Gtk::Widget& widget, const std::string& name);

/// The same for what is read after the name.
void setAccessibleDescription(Gtk::Widget& widget, const std::string& description);

/// Lets assistive technology announce a window as a dialog. For windows that have not been shown yet.
void setDialogRole(Gtk::Window& window);

} // namespace corvane

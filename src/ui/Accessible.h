#pragma once

#include <string>

#include <gtkmm/widget.h>

namespace corvane {

/// Gives a widget the name that assistive technology reads. Of a menu button its inner toggle button is the one that is
/// pressed and read, so that one is named too.
void setAccessibleName(Gtk::Widget& widget, const std::string& name);

} // namespace corvane

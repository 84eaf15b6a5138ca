#include "ui/PageFocus.h"

#include <gtkmm/window.h>

namespace corvane {

void focusPage(Gtk::Widget& part)
{
    auto* window = dynamic_cast<Gtk::Window*>(part.get_root());
    if (window != nullptr && window->get_child() != nullptr)
        window->get_child()->grab_focus();
}

void closeAndFocusPage(Gtk::Popover& popover)
{
    popover.popdown();
    focusPage(popover);
}

} // namespace corvane

#include "ui/PageFocus.h"

#include <gtkmm/overlay.h>
#include <gtkmm/window.h>

namespace corvane {

void focusPage(Gtk::Widget& part)
{
    auto* window = dynamic_cast<Gtk::Window*>(part.get_root());
    auto* content = window == nullptr ? nullptr : window->get_child();
    if (auto* layers = dynamic_cast<Gtk::Overlay*>(content); layers != nullptr && layers->get_child() != nullptr)
        layers->get_child()->grab_focus(); // The page is the lowest layer.
}

void closeAndFocusPage(Gtk::Popover& popover)
{
    popover.popdown();
    focusPage(popover);
}

} // namespace corvane

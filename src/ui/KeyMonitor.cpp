#include "ui/KeyMonitor.h"

#include <utility>

#include <gtkmm/editable.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/textview.h>

namespace corvane {
namespace {

KeyPress::Named named(guint key)
{
    switch (key) {
    case GDK_KEY_Left:
    case GDK_KEY_KP_Left:
        return KeyPress::Named::left;
    case GDK_KEY_Right:
    case GDK_KEY_KP_Right:
        return KeyPress::Named::right;
    case GDK_KEY_Home:
    case GDK_KEY_KP_Home:
        return KeyPress::Named::home;
    case GDK_KEY_Escape:
        return KeyPress::Named::escape;
    case GDK_KEY_F1:
        return KeyPress::Named::f1;
    case GDK_KEY_F5:
        return KeyPress::Named::f5;
    default:
        return KeyPress::Named::none;
    }
}

KeyPress keyPress(guint key, Gdk::ModifierType state)
{
    const auto has = [state](Gdk::ModifierType modifier) { return (state & modifier) == modifier; };
    const auto name = named(key);
    return {
        .character = name == KeyPress::Named::none ? gdk_keyval_to_unicode(gdk_keyval_to_lower(key)) : 0,
        .named = name,
        .shift = has(Gdk::ModifierType::SHIFT_MASK),
        .control = has(Gdk::ModifierType::CONTROL_MASK),
        .alternate = has(Gdk::ModifierType::ALT_MASK),
        .command = has(Gdk::ModifierType::SUPER_MASK) || has(Gdk::ModifierType::META_MASK) ||
                   has(Gdk::ModifierType::HYPER_MASK),
    };
}

bool isEditable(const Gtk::Widget* focus)
{
    return dynamic_cast<const Gtk::Editable*>(focus) != nullptr || dynamic_cast<const Gtk::TextView*>(focus) != nullptr;
}

} // namespace

KeyMonitor::KeyMonitor(Handler handler) : handler_(std::move(handler)) {}

void KeyMonitor::watch(Gtk::Widget& root)
{
    watch(root, [] { return Place::sheet; });
}

void KeyMonitor::watchMainWindow(Gtk::Window& window)
{
    watch(window, [&window] { return isEditable(window.get_focus()) ? Place::editing : Place::window; });
}

void KeyMonitor::watch(Gtk::Widget& root, std::function<Place()> place)
{
    const auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this, place = std::move(place)](guint key, guint /*code*/, Gdk::ModifierType state) {
            return handler_(keyPress(key, state), place());
        },
        false);
    root.add_controller(keys);
}

} // namespace corvane

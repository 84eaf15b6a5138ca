#include "ui/KeyMonitor.h"

#include "screens/KeyPress.h"

#include <utility>

#include <gtkmm/eventcontrollerkey.h>

namespace corvane {
namespace {

KeyPress keyPress(guint key, Gdk::ModifierType state)
{
    const auto has = [state](Gdk::ModifierType modifier) { return (state & modifier) == modifier; };
    return {
        .character = gdk_keyval_to_unicode(gdk_keyval_to_lower(key)),
        .shift = has(Gdk::ModifierType::SHIFT_MASK),
        .control = has(Gdk::ModifierType::CONTROL_MASK),
        .alternate = has(Gdk::ModifierType::ALT_MASK),
        .command = has(Gdk::ModifierType::SUPER_MASK) || has(Gdk::ModifierType::META_MASK) ||
                   has(Gdk::ModifierType::HYPER_MASK),
    };
}

} // namespace

KeyMonitor::KeyMonitor(std::function<void()> toggleURLMode) : toggleURLMode_(std::move(toggleURLMode)) {}

void KeyMonitor::watch(Gtk::Widget& root)
{
    const auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this](guint key, guint /*code*/, Gdk::ModifierType state) {
            if (!keyPress(key, state).togglesURLMode())
                return false;
            toggleURLMode_();
            return true;
        },
        false);
    root.add_controller(keys);
}

} // namespace corvane

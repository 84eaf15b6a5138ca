#pragma once

#include "screens/ActivationModel.h"
#include "ui/KeyMonitor.h"

#include <gtkmm/window.h>

namespace corvane {

/// What every window of the program is watched for: its keys and its focus.
class WindowMonitor {
public:
    /// Both must outlive this object, which must outlive the windows it watches.
    WindowMonitor(KeyMonitor& keys, ActivationModel& activation) : keys_(keys), activation_(activation) {}

    /// A dialog.
    void watch(Gtk::Window& window);

    void watchMainWindow(Gtk::Window& window);

    KeyMonitor& keys() const { return keys_; }

    /// Whether a window of this program has the focus now.
    static bool isAnyWindowActive();

private:
    void watchFocus(Gtk::Window& window);

    KeyMonitor& keys_;
    ActivationModel& activation_;
};

} // namespace corvane

#pragma once

#include "screens/ToolbarModel.h"
#include "ui/KeyMonitor.h"

#include <vector>

#include <gtkmm/box.h>
#include <gtkmm/image.h>
#include <gtkmm/menubutton.h>
#include <gtkmm/overlay.h>
#include <gtkmm/popover.h>

namespace corvane {

/// Draws the menu button with its red dot, and the menu.
class ToolbarMenuView : public Gtk::MenuButton {
public:
    /// The model must outlive this object.
    ToolbarMenuView(ToolbarModel& model, KeyMonitor& keys);

private:
    void buildFace();
    void addEntry(const ToolbarModel::MenuEntry& entry);

    ToolbarModel& model_;
    Gtk::Overlay face_;
    Gtk::Image icon_;
    Gtk::Box dot_;
    Gtk::Popover popover_;
    Gtk::Box entries_{Gtk::Orientation::VERTICAL};
    std::vector<Subscription> observations_;
};

} // namespace corvane

#pragma once

#include "screens/SiteSelectorModel.h"
#include "screens/ToolbarModel.h"
#include "ui/SiteSelectorView.h"
#include "ui/ToolbarMenuView.h"

#include <vector>

#include <gtkmm/box.h>
#include <gtkmm/headerbar.h>

namespace corvane {

/// Draws the toolbar of the main window: browser buttons, service selector, menu button.
class ToolbarView : public Gtk::HeaderBar {
public:
    /// Everything must outlive this object.
    ToolbarView(ToolbarModel& model, SiteSelectorModel& selector, AppState& appState, KeyMonitor& keys);

private:
    void addButton(ToolbarModel& model, const ToolbarModel::Button& button);

    Gtk::Box buttons_{Gtk::Orientation::HORIZONTAL, 4};
    SiteSelectorView selector_;
    ToolbarMenuView menu_;
    std::vector<Subscription> observations_;
};

} // namespace corvane

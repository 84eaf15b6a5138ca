#pragma once

#include "screens/SiteSelectorModel.h"
#include "ui/KeyMonitor.h"
#include "ui/SitePickerView.h"

#include <vector>

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/entry.h>
#include <gtkmm/label.h>
#include <gtkmm/stack.h>

namespace corvane {

/// Draws the service selector: a label and the picker, or in URL mode the address field or the box standing in for it.
class SiteSelectorView : public Gtk::Box {
public:
    /// Both must outlive this object.
    SiteSelectorView(SiteSelectorModel& model, AppState& appState, KeyMonitor& keys);

private:
    void buildField();
    void showMode();
    void focusField();

    SiteSelectorModel& model_;
    AppState& appState_;
    Gtk::Label label_;
    Gtk::Stack stack_;
    SitePickerView picker_;
    Gtk::Entry field_;
    Gtk::Button box_;
    Subscription focusing_;
    std::vector<Subscription> observations_;
};

} // namespace corvane

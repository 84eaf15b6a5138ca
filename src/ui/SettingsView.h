#pragma once

#include "screens/SettingsModel.h"
#include "ui/SheetFrame.h"

#include <array>

#include <gtkmm/dropdown.h>
#include <gtkmm/switch.h>
#include <gtkmm/togglebutton.h>

namespace corvane {

/// Draws the settings dialog.
class SettingsView : public SheetFrame {
public:
    /// Everything must outlive this object.
    SettingsView(SettingsModel& model, Gtk::Window& mainWindow, WindowMonitor& windows);

private:
    Gtk::Box& addSection(const std::string& title);
    static void addRow(Gtk::Box& section, const std::string& title, Gtk::Widget& control);
    void buildWindowTheme(Gtk::Box& section);
    void buildDialogTheme(Gtk::Box& section);
    void buildSwitch(Gtk::Box& section, const std::string& title, Gtk::Switch& control,
                     std::function<void(bool)> switched);
    void buildPolicyLink(Gtk::Box& section);
    void showDraft();

    SettingsModel& model_;
    Gtk::Box segments_{Gtk::Orientation::HORIZONTAL};
    std::array<Gtk::ToggleButton, SettingsModel::windowThemes.size()> windowThemes_;
    Gtk::DropDown dialogTheme_;
    Gtk::Switch analytics_;
    Gtk::Switch listUpdates_;
    bool isShowing_ = false; // the controls take the draft's values and report nothing
    Subscription draftChanges_;
};

} // namespace corvane

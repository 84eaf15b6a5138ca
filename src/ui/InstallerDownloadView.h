#pragma once

#include "screens/DMGDownloadOutcome.h"
#include "screens/InstallerDownloadModel.h"
#include "ui/MessageDialog.h"

#include <memory>
#include <vector>

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/progressbar.h>

namespace corvane {

/// Draws a running installer download over the browser, and the alert that reports how it ended.
class InstallerDownloadView : public Gtk::Box {
public:
    /// Everything must outlive this object.
    InstallerDownloadView(InstallerDownloadModel& model, Gtk::Window& mainWindow, WindowMonitor& windows);

private:
    void buildPanel();
    void showRunning(bool isRunning);
    void showProgress(const InstallerDownloadModel::Progress& progress);
    void showOutcome(const std::optional<DMGDownloadOutcome>& outcome);

    InstallerDownloadModel& model_;
    Gtk::Window& mainWindow_;
    WindowMonitor& windows_;
    Gtk::Box panel_{Gtk::Orientation::VERTICAL, 12};
    Gtk::ProgressBar bar_;
    Gtk::Label sizes_;
    Gtk::Button cancel_{"Cancel"};
    std::unique_ptr<MessageDialog> alert_;
    std::vector<Subscription> observations_;
};

} // namespace corvane

#pragma once

#include "screens/MainWindowModel.h"
#include "ui/InstallerDownloadView.h"
#include "ui/MessageDialog.h"
#include "ui/PagePanelView.h"
#include "ui/SheetsView.h"
#include "ui/ToolbarView.h"
#include "ui/WindowMonitor.h"

#include <memory>
#include <optional>
#include <vector>

#include <gtkmm/applicationwindow.h>
#include <gtkmm/overlay.h>

namespace corvane {

class WebView;

/// Draws the main window: the toolbar above the browser view, which fills the rest; the dialogs lie over it.
class MainWindowView : public Gtk::ApplicationWindow {
public:
    /// What the window shows; everything must outlive it.
    struct Models {
        MainWindowModel& window;
        ToolbarModel& toolbar;
        SiteSelectorModel& selector;
        WebViewCoordinator& coordinator;
        WebView& browser;
        WindowMonitor& windows;
        SheetsView::Models sheets;
    };

    explicit MainWindowView(const Models& models);
    ~MainWindowView() override;

    /// The widget that shows the pages.
    Gtk::Widget& browser() { return *layers_.get_child(); }

private:
    void showAlert(const std::optional<Alert>& alert);

    MainWindowModel& model_;
    ToolbarModel& toolbarModel_;
    WindowMonitor& windows_;
    ToolbarView toolbar_;
    Gtk::Overlay layers_; // the browser view and what lies over it
    InstallerDownloadView download_;
    PagePanelView panels_;
    SheetsView sheets_;
    std::unique_ptr<MessageDialog> alert_;
    std::vector<Subscription> observations_;
};

} // namespace corvane

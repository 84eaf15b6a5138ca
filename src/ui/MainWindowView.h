#pragma once

#include "screens/MainWindowModel.h"
#include "ui/PagePanelView.h"
#include "ui/ToolbarView.h"
#include "ui/WindowMonitor.h"

#include <vector>

#include <gtkmm/applicationwindow.h>

namespace corvane {

class WebView;

/// Draws the main window: the toolbar above the browser view, which fills the rest.
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
    };

    explicit MainWindowView(const Models& models);
    ~MainWindowView() override;

private:
    MainWindowModel& model_;
    ToolbarView toolbar_;
    PagePanelView panels_;
    std::vector<Subscription> observations_;
};

} // namespace corvane

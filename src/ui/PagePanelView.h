#pragma once

#include "base/Subscription.h"
#include "browser/WebViewCoordinator.h"
#include "ui/MessageDialog.h"

#include <memory>

#include <gtkmm/entry.h>
#include <gtkmm/window.h>

namespace corvane {

/// Shows the panel that waits in the coordinator as a modal dialog over the top-most window of the application.
class PagePanelView {
public:
    /// Everything must outlive this object.
    PagePanelView(WebViewCoordinator& coordinator, Gtk::Window& mainWindow, WindowMonitor& windows);
    ~PagePanelView();
    PagePanelView(const PagePanelView&) = delete;
    PagePanelView& operator=(const PagePanelView&) = delete;

private:
    void show(const std::shared_ptr<PagePanel>& panel);
    void open(const PagePanel& panel);
    static Gtk::Widget* messageOf(const PagePanel& panel);
    Gtk::Widget* answerField(const PagePanel& panel);
    void close();
    void answered(MessageDialog::Answer answer);

    WebViewCoordinator& coordinator_;
    Gtk::Window& mainWindow_;
    WindowMonitor& windows_;
    std::unique_ptr<MessageDialog> dialog_;
    Gtk::Entry* answer_ = nullptr; // of a prompt, part of the dialog
    Subscription panels_;
};

} // namespace corvane

#pragma once

#include "base/Subscription.h"
#include "browser/WebViewCoordinator.h"
#include "ui/WindowMonitor.h"

#include <memory>

#include <adwaita.h>
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
    void answered(const char* response);
    Gtk::Window& topmostWindow() const;

    WebViewCoordinator& coordinator_;
    Gtk::Window& mainWindow_;
    WindowMonitor& windows_;
    GtkWindow* dialog_ = nullptr;  // owned by the toolkit until it is destroyed
    Gtk::Entry* answer_ = nullptr; // of a prompt, part of the dialog
    Subscription panels_;
};

} // namespace corvane

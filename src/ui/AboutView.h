#pragma once

#include "screens/AboutModel.h"
#include "ui/SheetFrame.h"

namespace corvane {

/// Draws the About dialog.
class AboutView : public SheetFrame {
public:
    /// Everything must outlive this object.
    AboutView(AboutModel& model, Gtk::Window& mainWindow, WindowMonitor& windows);

private:
    void addLine(const std::string& text, const char* style);
    void addSupport();
    void addLinks();

    AboutModel& model_;
};

} // namespace corvane

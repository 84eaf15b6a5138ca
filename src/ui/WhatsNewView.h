#pragma once

#include "screens/WhatsNewModel.h"
#include "ui/DocumentPane.h"
#include "ui/SheetFrame.h"

#include <vector>

namespace corvane {

/// Draws the release-notes dialog.
class WhatsNewView : public SheetFrame {
public:
    /// Everything must outlive this object.
    WhatsNewView(WhatsNewModel& model, DocumentViewFactory& documents, Gtk::Window& mainWindow, WindowMonitor& windows);

private:
    void buildNavigation();
    void buildButtons();
    void showEntry();

    WhatsNewModel& model_;
    Gtk::Box statusRow_{Gtk::Orientation::HORIZONTAL};
    Gtk::Label status_;
    Gtk::Button older_;
    Gtk::Button newer_;
    DocumentPane document_;
    std::vector<Subscription> observations_;
};

} // namespace corvane

#pragma once

#include "screens/AnalyticsConsentModel.h"
#include "ui/SheetFrame.h"

namespace corvane {

/// Draws the question for consent to analytics.
class AnalyticsConsentView : public SheetFrame {
public:
    /// Everything must outlive this object. `dismissed` is called when the window is closed without an answer.
    AnalyticsConsentView(AnalyticsConsentModel& model, Gtk::Window& mainWindow, WindowMonitor& windows,
                         std::function<void()> dismissed);

private:
    void addText(std::string_view text, const char* style);
    void addCard(const AnalyticsConsentModel::Card& card);

    AnalyticsConsentModel& model_;
};

} // namespace corvane

#pragma once

#include "screens/SheetsModel.h"
#include "ui/DialogTheme.h"
#include "ui/SheetFrame.h"

#include <memory>
#include <optional>

namespace corvane {

class AboutModel;
class AnalyticsConsentModel;
class DocumentViewFactory;
class NotificationsModel;
class SettingsModel;
class WhatsNewModel;

/// Opens and closes the dialogs as their model says.
class SheetsView {
public:
    /// What the dialogs show; everything must outlive the view.
    struct Models {
        SheetsModel& sheets;
        AboutModel& about;
        SettingsModel& settings;
        NotificationsModel& notifications;
        WhatsNewModel& whatsNew;
        AnalyticsConsentModel& consent;
        const ThemeManager& themes;
        const SettingsManager& settingsManager;
        DocumentViewFactory& documents;
    };

    SheetsView(const Models& models, Gtk::Window& mainWindow, WindowMonitor& windows);

private:
    void show(const std::optional<SheetsModel::Presentation>& presentation);
    void closeSheet();
    std::unique_ptr<SheetFrame> makeSheet(Sheet sheet);

    Models models_;
    Gtk::Window& mainWindow_;
    WindowMonitor& windows_;
    std::optional<DialogTheme> theme_; // from the first dialog on
    std::optional<Sheet> shown_;
    std::unique_ptr<SheetFrame> sheet_;
    Subscription presentations_;
};

} // namespace corvane

#include "ui/SheetsView.h"

#include "ui/AboutView.h"
#include "ui/AnalyticsConsentView.h"
#include "ui/NotificationsView.h"
#include "ui/SettingsView.h"
#include "ui/WhatsNewView.h"

#include <utility>

namespace corvane {

SheetsView::SheetsView(const Models& models, Gtk::Window& mainWindow, WindowMonitor& windows)
    : models_(models), mainWindow_(mainWindow), windows_(windows)
{
    presentations_ = models_.sheets.shown().bind(
        [this](const std::optional<SheetsModel::Presentation>& presentation) { show(presentation); });
}

void SheetsView::show(const std::optional<SheetsModel::Presentation>& presentation)
{
    closeSheet();
    if (!presentation)
        return;
    if (!theme_)
        theme_.emplace(models_.themes, models_.settingsManager);
    theme_->refresh();
    shown_ = presentation->sheet;
    sheet_ = makeSheet(presentation->sheet);
    sheet_->present();
}

void SheetsView::closeSheet()
{
    sheet_.reset();
    const auto closed = std::exchange(shown_, std::nullopt);
    if (closed == Sheet::whatsNew)
        models_.whatsNew.disappear();
    if (closed == Sheet::notifications)
        models_.notifications.disappear();
}

std::unique_ptr<SheetFrame> SheetsView::makeSheet(Sheet sheet)
{
    switch (sheet) {
    case Sheet::about:
        break;
    case Sheet::settings:
        models_.settings.appear();
        return std::make_unique<SettingsView>(models_.settings, mainWindow_, windows_);
    case Sheet::notifications:
        models_.notifications.appear();
        return std::make_unique<NotificationsView>(models_.notifications, models_.documents, mainWindow_, windows_);
    case Sheet::whatsNew:
        models_.whatsNew.appear();
        return std::make_unique<WhatsNewView>(models_.whatsNew, models_.documents, mainWindow_, windows_);
    case Sheet::analyticsConsent:
        return std::make_unique<AnalyticsConsentView>(models_.consent, mainWindow_, windows_,
                                                      [this] { models_.sheets.close(Sheet::analyticsConsent); });
    }
    return std::make_unique<AboutView>(models_.about, mainWindow_, windows_);
}

} // namespace corvane

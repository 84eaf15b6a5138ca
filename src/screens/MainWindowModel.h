#pragma once

#include "base/NotificationCenter.h"
#include "base/Published.h"
#include "base/Url.h"
#include "catalogue/Site.h"
#include "ports/Desktop.h"
#include "ports/Endpoints.h"
#include "ports/MainQueue.h"
#include "screens/SheetsModel.h"
#include "state/WhatsNewContext.h"

#include <optional>
#include <string>
#include <vector>

namespace corvane {

class AnalyticsManager;
class AppState;
class AppUpdateManager;
class DefaultsStore;
class InstallerDownloadModel;
class PushDeviceManager;
class SiteListManager;

/// Decides what the main window shows: its first page, its title, its badges, when URL mode can be switched, and what
/// follows a dialog.
class MainWindowModel {
public:
    static constexpr std::string_view applicationName = "Corvane";

    struct Services {
        AppState& appState;
        SiteListManager& siteListManager;
        AppUpdateManager& appUpdateManager;
        const PushDeviceManager& pushDevices;
        const DefaultsStore& defaults;
        AnalyticsManager& analytics;
        const SheetsModel& sheets;
        InstallerDownloadModel& installer;
        Desktop& desktop;
        const Endpoints& endpoints;
        MainQueue& queue;
    };

    /// Everything must outlive this object.
    explicit MainWindowModel(const Services& services);

    /// The page that the window opens with: the remembered service, or the registration page during first use and
    /// whenever no service is remembered or its address cannot be loaded.
    Url initialURL() const;

    /// Control+Shift+U; during first use nothing happens.
    void toggleURLMode();

    /// Hears the notifications that are meant for the window.
    void observe(NotificationCenter& notifications);

    /// The page's title, fit for a title bar; the application's name for a page without one.
    std::string windowTitle() const;

    /// The window's content is there for the first time.
    void created();

    /// The user asks for the update that a release-notes dialog offers: the catalogue is applied, the installer
    /// fetched, or the download page or store page opened.
    void update(const WhatsNewContext& context);

    const Published<bool>& showSiteUpdateBadge() const { return showSiteUpdateBadge_; }
    const Published<bool>& showAppUpdateBadge() const { return showAppUpdateBadge_; }
    const Published<bool>& showNotificationBadge() const { return showNotificationBadge_; }

    AppState& appState() { return services_.appState; }
    InstallerDownloadModel& installer() { return services_.installer; }

private:
    void sheetChanged(const std::optional<SheetsModel::Presentation>& shown);
    void sheetShown(const SheetsModel::Presentation& presentation);
    void sheetClosed(const SheetsModel::Presentation& presentation);
    void handOverNotificationURL();
    void updateApp(const WhatsNewContext& context);

    Services services_;
    Published<bool> showSiteUpdateBadge_{false};
    Published<bool> showAppUpdateBadge_{false};
    Published<bool> showNotificationBadge_{false};
    std::optional<SheetsModel::Presentation> shown_;
    bool lastWhatsNewWasSiteUpdate_ = false;
    bool lastWhatsNewWasAppUpdate_ = false;
    Subscription handOver_;
    std::vector<Subscription> observations_;
};

} // namespace corvane

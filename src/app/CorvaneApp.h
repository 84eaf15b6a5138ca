#pragma once

#include "analytics/AnalyticsManager.h"
#include "analytics/AnalyticsWebViewRepresentable.h"
#include "base/NotificationCenter.h"
#include "browser/AllowedHosts.h"
#include "browser/WebViewCoordinator.h"
#include "browser/WebViewRepresentable.h"
#include "catalogue/SiteListManager.h"
#include "notifications/PushDeviceManager.h"
#include "platform/FolderResources.h"
#include "platform/GioDesktop.h"
#include "platform/GlibHostInfo.h"
#include "platform/GlibMainQueue.h"
#include "platform/JsonDefaultsStore.h"
#include "platform/LogindWake.h"
#include "platform/PosixFileStore.h"
#include "platform/PosixIncomingFiles.h"
#include "platform/RendererChoice.h"
#include "platform/SoupHttpClient.h"
#include "platform/SystemClock.h"
#include "platform/WebKitViewFactory.h"
#include "ports/AppInfo.h"
#include "ports/Endpoints.h"
#include "ports/LoopbackServer.h"
#include "ports/Places.h"
#include "refresh/StatusRefreshCoordinator.h"
#include "screens/AboutModel.h"
#include "screens/ActivationModel.h"
#include "screens/AnalyticsConsentModel.h"
#include "screens/InstallerDownloadModel.h"
#include "screens/MainWindowModel.h"
#include "screens/NotificationsModel.h"
#include "screens/SettingsModel.h"
#include "screens/SheetsModel.h"
#include "screens/ShortcutModel.h"
#include "screens/SiteSelectorModel.h"
#include "screens/ToolbarModel.h"
#include "screens/WhatsNewModel.h"
#include "settings/SettingsManager.h"
#include "settings/ThemeManager.h"
#include "state/AppNotifications.h"
#include "state/AppState.h"
#include "ui/MainWindowView.h"
#include "ui/WindowMonitor.h"
#include "updates/AppUpdateManager.h"
#include "updates/DMGDownloadHelper.h"

#include <functional>
#include <memory>
#include <optional>

namespace corvane {

/// Builds and owns every object of the program, in the order in which they need each other. GTK must have been started;
/// its style and its C++ binding are started with the window.
class CorvaneApp {
public:
    /// `quit` ends the program in the ordinary way.
    CorvaneApp(Endpoints endpoints, Places places, const RendererChoice& renderer, std::function<void()> quit);
    ~CorvaneApp();

    /// Makes the browser view and starts the first load, before there is a window to show it.
    void startFirstLoad();

    /// The main window; built at the first call, which also runs the launch sequence.
    MainWindowView& window();

    AppState& state() { return appState_; }
    SiteSelectorModel& selector() { return selectorModel_; }
    SiteListManager& siteList() { return *siteListManager_; }
    AppUpdateManager& appUpdates() { return *appUpdateManager_; }
    PushDeviceManager& pushDevices() { return pushDevices_; }

    /// The program's own actions, by key or by menu.
    void showAbout() { notifications_.post(showAboutNotification); }
    void showSettings();

    /// The program ends: records it and calls `ready` when the last events have had a moment to leave, which is at once
    /// while analytics is off. To be called once.
    void willTerminate(std::function<void()> ready);

private:
    static void startToolkit();
    MainWindowView::Models models();
    void launch();
    void refreshAfterFirstPage();
    void startRefreshing();
    void startAnalytics();
    void activated();
    static void applyAppearance(const std::string& appTheme);

    AppInfo info_;
    Endpoints endpoints_;
    Places places_;
    GlibHostInfo host_;
    WebKitViewFactory views_; // early: the engine starts beside the reading of the files
    PosixFileStore files_;
    JsonDefaultsStore defaults_;
    FolderResources resources_;
    SystemClock clock_;
    GlibMainQueue queue_;
    SoupHttpClient http_;
    LogindWake wake_;
    PosixIncomingFiles incoming_;
    GioDesktop desktop_;

    // The schedule holds these three weakly.
    std::shared_ptr<SettingsManager> settingsManager_;
    std::shared_ptr<SiteListManager> siteListManager_;
    std::shared_ptr<AppUpdateManager> appUpdateManager_;
    std::unique_ptr<LoopbackServer> analyticsServer_; // null until analytics starts
    std::shared_ptr<AnalyticsManager> analytics_;
    PushDeviceManager pushDevices_;
    StatusRefreshCoordinator refresh_;
    ThemeManager themeManager_;
    DMGDownloadHelper installers_;
    AppState appState_;

    AllowedHosts allowedHosts_;
    WebViewCoordinator coordinator_;
    WebViewRepresentable browser_;

    SheetsModel sheetsModel_;
    InstallerDownloadModel installerModel_;
    MainWindowModel windowModel_;
    ToolbarModel toolbarModel_;
    SiteSelectorModel selectorModel_;

    AboutModel aboutModel_;
    SettingsModel settingsModel_;
    NotificationsModel notificationsModel_;
    WhatsNewModel whatsNewModel_;
    AnalyticsConsentModel consentModel_;

    NotificationCenter notifications_;
    ShortcutModel shortcuts_;
    KeyMonitor keys_;
    ActivationModel activation_;
    WindowMonitor windows_;

    bool isRefreshing_ = false;
    bool hasSettled_ = false; // the first page is there, and has had a moment
    Subscription firstPage_;
    Subscription firstPageLimit_;
    Subscription settingsChanges_;
    Subscription sweeping_;
    Subscription settling_;
    std::optional<AnalyticsWebViewRepresentable> analyticsView_; // empty until analytics is on and the program settled
    std::unique_ptr<MainWindowView> window_;                     // last: it shows everything above
};

} // namespace corvane

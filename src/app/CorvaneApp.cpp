#include "app/CorvaneApp.h"

#include "base/RandomBits.h"
#include "platform/AnalyticsLocalHTTPServer.h"
#include "ui/IconTheme.h"
#include "ui/StyleSheet.h"

#include <chrono>
#include <utility>

#include <adwaita.h>
#include <gtkmm/init.h>

namespace corvane {
namespace {

/// A first page that takes longer than this keeps nobody waiting.
constexpr std::chrono::seconds longestFirstPage{5};

/// The hidden page has an engine process of its own, which must not take time from the page that the user waits for.
constexpr std::chrono::seconds settlingTime{1};

} // namespace

CorvaneApp::CorvaneApp(Endpoints endpoints, Places places, const RendererChoice& renderer, std::function<void()> quit)
    : info_(AppInfo::ofThisBuild()), endpoints_(std::move(endpoints)), places_(std::move(places)),
      views_(places_, host_.localeIdentifier(), renderer.renderer), defaults_(files_, places_.defaults),
      resources_(FolderResources::ofThisProgram()), http_(info_.shortVersion),
      desktop_(std::move(quit), renderer.ownVariables),
      settingsManager_(std::make_shared<SettingsManager>(files_, places_)),
      siteListManager_(
          std::make_shared<SiteListManager>(files_, resources_, places_, SiteListFetcher(http_, clock_, endpoints_))),
      appUpdateManager_(std::make_shared<AppUpdateManager>(http_, clock_, endpoints_, info_)),
      analytics_(std::make_shared<AnalyticsManager>(defaults_, host_, clock_, info_)),
      pushDevices_(http_, defaults_, endpoints_, info_),
      refresh_(pushDevices_, clock_, queue_, wake_, systemRandomBits), themeManager_(resources_),
      installers_(http_, files_, incoming_, desktop_, clock_, places_), appState_(defaults_, *analytics_),
      allowedHosts_(endpoints_.notification),
      coordinator_(appState_, pushDevices_, *analytics_, allowedHosts_, queue_, clock_),
      browser_({.appState = appState_,
                .settings = settingsManager_->settings(),
                .pushDevices = pushDevices_,
                .allowedHosts = allowedHosts_,
                .endpoints = endpoints_,
                .files = files_,
                .places = places_,
                .views = views_,
                .queue = queue_},
               coordinator_),
      sheetsModel_(appState_, queue_), installerModel_(installers_),
      windowModel_({.appState = appState_,
                    .siteListManager = *siteListManager_,
                    .appUpdateManager = *appUpdateManager_,
                    .pushDevices = pushDevices_,
                    .defaults = defaults_,
                    .analytics = *analytics_,
                    .sheets = sheetsModel_,
                    .installer = installerModel_,
                    .desktop = desktop_,
                    .endpoints = endpoints_,
                    .queue = queue_}),
      toolbarModel_({.appState = appState_,
                     .siteListManager = *siteListManager_,
                     .appUpdateManager = *appUpdateManager_,
                     .settingsManager = *settingsManager_,
                     .pushDevices = pushDevices_,
                     .analytics = *analytics_,
                     .endpoints = endpoints_},
                    {.siteUpdate = windowModel_.showSiteUpdateBadge(),
                     .appUpdate = windowModel_.showAppUpdateBadge(),
                     .notification = windowModel_.showNotificationBadge()}),
      selectorModel_(appState_, siteListManager_->sites(), defaults_, *analytics_),
      aboutModel_({.appState = appState_,
                   .settingsManager = *settingsManager_,
                   .analytics = *analytics_,
                   .resources = resources_,
                   .desktop = desktop_,
                   .endpoints = endpoints_,
                   .app = info_}),
      settingsModel_(appState_, *settingsManager_, *analytics_, endpoints_),
      notificationsModel_({.appState = appState_,
                           .manager = pushDevices_,
                           .settingsManager = *settingsManager_,
                           .themeManager = themeManager_,
                           .desktop = desktop_,
                           .clock = clock_}),
      whatsNewModel_({.appState = appState_,
                      .settingsManager = *settingsManager_,
                      .themeManager = themeManager_,
                      .resources = resources_,
                      .app = info_,
                      .http = http_,
                      .clock = clock_,
                      .desktop = desktop_},
                     [this](const WhatsNewContext& context) { windowModel_.update(context); }),
      consentModel_(appState_, *settingsManager_, *analytics_, defaults_, endpoints_),
      shortcuts_(appState_, toolbarModel_, selectorModel_, [this] { notifications_.post(toggleURLModeNotification); }),
      keys_([this](const KeyPress& key, KeyMonitor::Place place) { return shortcuts_.press(key, place); }),
      activation_(queue_, WindowMonitor::isAnyWindowActive, [this] { activated(); }), windows_(keys_, activation_)
{
    windowModel_.observe(notifications_);
}

CorvaneApp::~CorvaneApp() = default;

void CorvaneApp::startFirstLoad()
{
    browser_.makeView(windowModel_.initialURL());
}

MainWindowView& CorvaneApp::window()
{
    if (!window_) {
        startToolkit();
        launch();
        addStyleSheet();
        addIcons(resources_.folders());
        window_ = std::make_unique<MainWindowView>(models());
        selectorModel_.appear();
        windowModel_.created();
    }
    return *window_;
}

MainWindowView::Models CorvaneApp::models()
{
    return {.window = windowModel_,
            .toolbar = toolbarModel_,
            .selector = selectorModel_,
            .coordinator = coordinator_,
            .browser = *browser_.view(),
            .windows = windows_,
            .sheets = {.sheets = sheetsModel_,
                       .about = aboutModel_,
                       .settings = settingsModel_,
                       .notifications = notificationsModel_,
                       .whatsNew = whatsNewModel_,
                       .consent = consentModel_,
                       .themes = themeManager_,
                       .settingsManager = *settingsManager_,
                       .documents = views_}};
}

void CorvaneApp::startToolkit()
{
    adw_init();
    Gtk::init_gtkmm_internals();
}

void CorvaneApp::launch()
{
    const auto& settings = *settingsManager_->settings();
    applyAppearance(settings.AppTheme);
    analytics_->adoptEnabled(settings.AnalyticsEnabled == "On");
    analytics_->trackAppStart();

    settingsChanges_ =
        settingsManager_->settings().observe([this, previous = settings](const AppSettings& now) mutable {
            const auto before = std::exchange(previous, now);
            if (now.AppTheme != before.AppTheme)
                applyAppearance(now.AppTheme);
            if (now.AnalyticsEnabled != before.AnalyticsEnabled) {
                analytics_->setEnabled(now.AnalyticsEnabled == "On");
                startAnalytics();
            }
        });
    refreshAfterFirstPage();
}

/// The checks use the network, so they wait until the first page has had it to itself.
void CorvaneApp::refreshAfterFirstPage()
{
    firstPage_ = appState_.isLoading.observe([this](bool isLoading) {
        if (!isLoading)
            startRefreshing();
    });
    firstPageLimit_ = clock_.after(longestFirstPage, [this] { startRefreshing(); });
}

void CorvaneApp::startRefreshing()
{
    firstPage_.end();
    firstPageLimit_.end();
    isRefreshing_ = true;
    refresh_.start(siteListManager_, appUpdateManager_, settingsManager_);
    sweeping_ = queue_.post([this] { files_.sweepAll(places_); });
    settling_ = clock_.after(settlingTime, [this] {
        hasSettled_ = true;
        startAnalytics();
    });
}

/// Does nothing before the program has settled, while analytics is off, and once it has been done.
void CorvaneApp::startAnalytics()
{
    if (analyticsView_ || !hasSettled_ || settingsManager_->settings()->AnalyticsEnabled != "On")
        return;
    analyticsServer_ = std::make_unique<AnalyticsLocalHTTPServer>();
    auto page = std::make_shared<AnalyticsWebView>(AnalyticsWebView::Parts{.views = views_,
                                                                           .server = *analyticsServer_,
                                                                           .resources = resources_,
                                                                           .endpoints = endpoints_,
                                                                           .queue = queue_});
    const auto makeNativeCollect = [this] {
        return std::make_shared<AnalyticsNativeCollect>(http_, queue_, clock_, host_, endpoints_);
    };
    analyticsView_.emplace(*analytics_, AnalyticsRoutes{std::move(page), makeNativeCollect, queue_});
}

void CorvaneApp::activated()
{
    if (isRefreshing_)
        refresh_.forceKick();
}

/// Not while another dialog is there: the key would open one more after it.
void CorvaneApp::showSettings()
{
    if (!*sheetsModel_.shown())
        appState_.showSettings.set(true);
}

void CorvaneApp::willTerminate(std::function<void()> ready)
{
    analytics_->trackAppEnd();
    analytics_->bidFarewell(std::move(ready));
}

void CorvaneApp::applyAppearance(const std::string& appTheme)
{
    const auto scheme = appTheme == "Light"  ? ADW_COLOR_SCHEME_FORCE_LIGHT
                        : appTheme == "Dark" ? ADW_COLOR_SCHEME_FORCE_DARK
                                             : ADW_COLOR_SCHEME_DEFAULT;
    adw_style_manager_set_color_scheme(adw_style_manager_get_default(), scheme);
}

} // namespace corvane

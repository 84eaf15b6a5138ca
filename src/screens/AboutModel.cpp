#include "screens/AboutModel.h"

#include "analytics/AnalyticsManager.h"
#include "base/Text.h"
#include "settings/SettingsManager.h"
#include "state/AppState.h"

namespace corvane {

std::string AboutModel::versionLine() const
{
    return "Version " + services_.app.currentAppVersion() + "  |  " + services_.app.buildDateText;
}

bool AboutModel::hasWhiteSupportAddress() const
{
    const auto theme = lowercased(services_.settingsManager.settings()->DialogTheme);
    return theme == "default" || theme == "dark";
}

void AboutModel::writeToSupport()
{
    if (const auto mail =
            Url::parse("mailto:" + supportAddress() + "?subject=Corvane%20App:%20Support%20and%20Feedback"))
        services_.desktop.open(*mail);
}

void AboutModel::showPrivacyPolicy()
{
    showPage(services_.endpoints.privacyPage());
}

void AboutModel::showSoftwareLicense()
{
    if (const auto file = services_.resources.locate("SoftwareLicense", "html"))
        showPage(Url::ofFile(*file));
}

void AboutModel::donate()
{
    services_.analytics.trackDonationClick();
    showPage(services_.endpoints.donationPage());
}

void AboutModel::close()
{
    services_.appState.showAbout.set(false);
}

void AboutModel::showPage(const Url& page)
{
    services_.appState.pendingLoadURL.set(page);
    close();
}

} // namespace corvane

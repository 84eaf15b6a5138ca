#pragma once

#include "ports/AppInfo.h"
#include "ports/Desktop.h"
#include "ports/Endpoints.h"
#include "ports/Resources.h"

#include <string>
#include <string_view>

namespace corvane {

class AnalyticsManager;
class AppState;
class SettingsManager;

/// Decides what the About dialog says and where its buttons lead.
class AboutModel {
public:
    static constexpr std::string_view productName = "Corvane";
    static constexpr std::string_view tagline = "Your gateway to the world's most powerful Large Language Models.";
    static constexpr std::string_view copyright = "© 2026 Hollisward";
    static constexpr std::string_view supportPrompt = "Support, Feedback or Questions:";

    struct Services {
        AppState& appState;
        const SettingsManager& settingsManager;
        AnalyticsManager& analytics;
        const Resources& resources;
        Desktop& desktop;
        const Endpoints& endpoints;
        const AppInfo& app;
    };

    /// Everything must outlive this object.
    explicit AboutModel(const Services& services) : services_(services) {}

    std::string versionLine() const;
    const std::string& supportAddress() const { return services_.endpoints.supportMail; }

    /// Whether the support address is white instead of the theme's text colour.
    bool hasWhiteSupportAddress() const;

    /// Opens the mail program; the dialog stays.
    void writeToSupport();

    /// These close the dialog and show a page in the main browser; without a licence resource its button does nothing.
    void showPrivacyPolicy();
    void showSoftwareLicense();
    void donate();

    void close();

private:
    void showPage(const Url& page);

    Services services_;
};

} // namespace corvane

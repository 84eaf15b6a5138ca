#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// What the user has chosen. The fields bear the names of their keys in the settings file. A switch is on only when its
/// text is exactly "On"; any other text reads as off.
struct AppSettings {
    std::string AllowSiteListUpdates = "On";
    std::string AnalyticsEnabled = "On";
    std::string AppTheme = "System";     // "Light", "Dark" or "System"
    std::string DialogTheme = "default"; // the name of a dialog theme

    /// Where the catalogue is published instead of the usual place; absent and empty mean the usual place.
    std::optional<std::string> SitesSourceUrl;

    bool operator==(const AppSettings&) const = default;
};

/// Reads a settings file: a JSON object with the fields as strings, of which only the last may be missing; other keys
/// are ignored. Empty when anything else is found.
std::optional<AppSettings> decodeSettings(std::string_view bytes);

/// The record as a settings file: one key per line in sorted order, "/" written as "\/". Empty when a text is not
/// UTF-8.
std::optional<std::string> encodeSettings(const AppSettings& settings);

} // namespace corvane

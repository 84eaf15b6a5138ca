#include "settings/AppSettings.h"

#include "base/Json.h"

namespace corvane {
namespace {

bool readText(const Json& document, std::string_view key, std::string& field)
{
    const auto* text = textOf(member(document, key));
    if (text == nullptr)
        return false;
    field = *text;
    return true;
}

std::string withEscapedSlashes(std::string_view json)
{
    std::string escaped;
    for (const char c : json) {
        if (c == '/')
            escaped += '\\';
        escaped += c;
    }
    return escaped;
}

} // namespace

std::optional<AppSettings> decodeSettings(std::string_view bytes)
{
    const auto document = parseJson(bytes);
    if (!document)
        return std::nullopt;

    AppSettings settings;
    const bool isComplete = readText(*document, "AllowSiteListUpdates", settings.AllowSiteListUpdates) &&
                            readText(*document, "AnalyticsEnabled", settings.AnalyticsEnabled) &&
                            readText(*document, "AppTheme", settings.AppTheme) &&
                            readText(*document, "DialogTheme", settings.DialogTheme);
    if (!isComplete)
        return std::nullopt;
    if (member(*document, "SitesSourceUrl") != nullptr &&
        !readText(*document, "SitesSourceUrl", settings.SitesSourceUrl.emplace()))
        return std::nullopt;
    return settings;
}

std::optional<std::string> encodeSettings(const AppSettings& settings)
{
    Json document = {
        {"AllowSiteListUpdates", settings.AllowSiteListUpdates},
        {"AnalyticsEnabled", settings.AnalyticsEnabled},
        {"AppTheme", settings.AppTheme},
        {"DialogTheme", settings.DialogTheme},
    };
    if (settings.SitesSourceUrl)
        document["SitesSourceUrl"] = *settings.SitesSourceUrl;
    try {
        return withEscapedSlashes(document.dump(2)) + '\n';
    } catch (const Json::type_error&) {
        return std::nullopt; // A text that is not UTF-8.
    }
}

} // namespace corvane

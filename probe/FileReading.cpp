#include "FileReading.h"

#include "Answer.h"
#include "Environment.h"
#include "RunToEnd.h"
#include "catalogue/ArchiveIndex.h"
#include "catalogue/RedirectDocument.h"
#include "catalogue/SiteDocument.h"
#include "notifications/PendingNotification.h"
#include "platform/FolderResources.h"
#include "platform/PosixFileStore.h"
#include "settings/AppSettings.h"
#include "settings/DialogThemeColors.h"
#include "settings/ThemeStyle.h"
#include "updates/HostedVersion.h"

#include <algorithm>
#include <array>

namespace corvane::probe {
namespace {

using Path = std::filesystem::path;

std::optional<std::string> bytesOf(const Path& file)
{
    return PosixFileStore().read(file);
}

std::optional<std::string> shipped(std::string_view name)
{
    return FolderResources::ofThisProgram().read(name, "json");
}

Json color(const Color& value)
{
    return {value.red, value.green, value.blue, value.opacity};
}

Json catalogue(const Path& file)
{
    auto sites = bytesOf(file).and_then(decodeSites);
    const bool isReadable = sites.has_value();
    if (!isReadable)
        sites = shipped("sites").and_then(decodeSites);
    auto list = Json::array();
    for (const auto& [service, url, description] : sites.value_or(std::vector<Site>()))
        list.push_back({{"service", service}, {"url", url}, {"description", description}});
    return {{"readable", isReadable}, {"sites", std::move(list)}};
}

Json pending(const Path& file)
{
    const auto notifications = bytesOf(file).and_then(decodePending);
    if (!notifications)
        return {{"notifications", nullptr}};
    auto list = Json::array();
    for (const auto& [recipient, campaign, title, body, url] : *notifications)
        list.push_back(
            {{"recipientId", recipient}, {"campaignId", campaign}, {"title", title}, {"body", body}, {"url", url}});
    return {{"notifications", std::move(list)}};
}

Json settings(const Path& file)
{
    const auto read = bytesOf(file).and_then(decodeSettings);
    const auto used = read.value_or(AppSettings());
    return {{"readable", read.has_value()},
            {"settings",
             {{"AllowSiteListUpdates", used.AllowSiteListUpdates},
              {"AnalyticsEnabled", used.AnalyticsEnabled},
              {"AppTheme", used.AppTheme},
              {"DialogTheme", used.DialogTheme},
              {"SitesSourceUrl", orNull(used.SitesSourceUrl)}}}};
}

Json theme(const Path& file)
{
    const auto read = bytesOf(file).and_then(decodeTheme);
    const auto used = read ? read : shipped("default").and_then(decodeTheme);
    const auto colors = used ? resolvedDialogColors(*used) : defaultDialogColors();
    return {{"readable", read.has_value()},
            {"colors",
             {{"background", {color(colors.background1), color(colors.background2), color(colors.background3)}},
              {"card", {color(colors.card1), color(colors.card2), color(colors.card3)}},
              {"text", color(colors.text)},
              {"textMuted", color(colors.textMuted)},
              {"headingText", color(colors.headingText)},
              {"link", color(colors.link)},
              {"buttonPrimary", color(colors.buttonPrimary)},
              {"buttonDonate", color(colors.buttonDonate)},
              {"buttonDonateText", color(colors.buttonDonateText)},
              {"cornerRadius", colors.cornerRadius},
              {"buttonCornerRadius", colors.buttonCornerRadius}}},
            {"css", themeStyleBlock(used.value_or(ThemeJSON()))}};
}

Json versionFile(const Path& file)
{
    const auto hosted = bytesOf(file).and_then(decodeHostedVersion);
    if (!hosted)
        return {{"version", nullptr}};
    return {{"version", hosted->version},
            {"downloadURL", hosted->downloadURL ? Json(hosted->downloadURL->text()) : Json()},
            {"sha256", orNull(hosted->sha256)}};
}

/// As if it had been found beside the published catalogue.
Json archive(const Path& file)
{
    const auto catalogueAddress = endpoints().defaultSitesURL().text();
    const auto folder = catalogueAddress.substr(0, catalogueAddress.rfind('/') + 1) + "archive/";
    auto list = Json::array();
    for (const auto& [url, title] : decodeArchiveIndex(bytesOf(file).value_or(""), folder))
        list.push_back({{"url", url.text()}, {"title", title}});
    return {{"archives", std::move(list)}};
}

Json redirect(const Path& file)
{
    const auto bytes = bytesOf(file).value_or("");
    return {{"address", orNull(runToEnd(decodeRedirectInTurns(bytes)))}};
}

constexpr std::array<FileKind, 7> kinds{{{"catalogue", catalogue},
                                         {"pending", pending},
                                         {"settings", settings},
                                         {"theme", theme},
                                         {"version-file", versionFile},
                                         {"archive", archive},
                                         {"redirect", redirect}}};

} // namespace

const FileKind* fileKindNamed(std::string_view name)
{
    const auto* const found = std::ranges::find(kinds, name, &FileKind::name);
    return found == kinds.end() ? nullptr : found;
}

} // namespace corvane::probe

#include "screens/SiteSelectorModel.h"

#include "analytics/AnalyticsManager.h"
#include "base/Text.h"
#include "browser/LoadableAddress.h"
#include "catalogue/SavedSite.h"
#include "ports/DefaultsStore.h"
#include "screens/SiteFilter.h"
#include "state/AppState.h"

#include <utility>

namespace corvane {

SiteSelectorModel::SiteSelectorModel(AppState& appState, const Published<std::vector<Site>>& sites,
                                     DefaultsStore& defaults, AnalyticsManager& analytics)
    : appState_(appState), sites_(sites), defaults_(defaults), analytics_(analytics)
{
    urlModeChanges_ = appState_.isURLMode.observe([this](bool isOn) {
        if (isOn)
            enterURLMode();
        else
            restoreService();
    });
    firstUseChanges_ = appState_.isFirstUse().observe([this](bool isFirstUse) {
        if (isFirstUse) {
            select(std::nullopt);
            includeServicePlaceholder.set(true);
        }
    });
}

void SiteSelectorModel::appear()
{
    if (auto saved = savedSiteID(defaults_, *sites_)) {
        includeServicePlaceholder.set(false);
        appState_.selectedSiteURL.set(addressOf(*saved));
        selectedSiteID.set(std::move(saved));
        return;
    }
    includeServicePlaceholder.set(true);
    if (*appState_.isFirstUse())
        select(std::nullopt);
}

void SiteSelectorModel::choose(std::string_view service)
{
    select(std::string(service));
}

void SiteSelectorModel::select(std::optional<std::string> service)
{
    if (service == *selectedSiteID)
        return;
    selectedSiteID.set(service);
    if (!service)
        return;
    includeServicePlaceholder.set(false);
    defaults_.setString(siteIndexKey, *service);
    const auto address = addressOf(*service);
    if (!address)
        return;
    analytics_.trackServiceSelected(*service);
    appState_.selectedSiteURL.set(address);
    appState_.pendingLoadURL.set(address);
}

std::optional<Url> SiteSelectorModel::addressOf(std::string_view service) const
{
    const auto* site = findSite(*sites_, service);
    return site == nullptr ? std::nullopt : parseLoadable(site->url);
}

void SiteSelectorModel::enterURLMode()
{
    appState_.urlModeRestoredSiteID.set(*selectedSiteID);
    appState_.urlModeBarText.set({});
    urlBarEditing.set(true);
    urlFieldFocusRequested.set(true);
}

void SiteSelectorModel::beginEditing()
{
    urlBarEditing.set(true);
    urlFieldFocusRequested.set(true);
}

void SiteSelectorModel::submitAddress()
{
    if (const auto address = parseTyped(*appState_.urlModeBarText))
        appState_.pendingLoadURL.set(address);
}

void SiteSelectorModel::leaveURLMode()
{
    appState_.isURLMode.set(false); // The observer does the rest, as for every other way out.
}

void SiteSelectorModel::restoreService()
{
    urlBarEditing.set(false);
    appState_.urlModeBarText.set({});
    const auto restored = *appState_.urlModeRestoredSiteID;
    appState_.urlModeRestoredSiteID.set(std::nullopt);
    select(restored);
    const auto address = restored ? addressOf(*restored) : std::nullopt;
    if (address) {
        appState_.selectedSiteURL.set(address);
        appState_.pendingLoadURL.set(address);
    }
}

std::string_view SiteSelectorModel::shownChoice() const
{
    if (const auto* site = *selectedSiteID ? findSite(*sites_, **selectedSiteID) : nullptr)
        return site->service;
    return *includeServicePlaceholder ? placeholderEntry : std::string_view();
}

std::vector<SiteSelectorModel::Row> SiteSelectorModel::rows(std::string_view search) const
{
    std::vector<Row> rows;
    if (*includeServicePlaceholder && trimmed(search).empty())
        rows.push_back({std::nullopt, placeholderEntry, {}});
    for (const auto place : filteredSites(*sites_, search)) {
        const auto& site = (*sites_)[place];
        rows.push_back({site.service, site.service, site.description});
    }
    return rows;
}

bool SiteSelectorModel::chooseFirst(std::string_view search)
{
    const auto found = trimmed(search).empty() ? std::vector<Row>() : rows(search);
    if (found.empty())
        return false;
    choose(found.front().title);
    return true;
}

SiteSelectorModel::Shown SiteSelectorModel::shown() const
{
    if (!*appState_.isURLMode)
        return Shown::picker;
    return *urlBarEditing ? Shown::field : Shown::box;
}

std::string_view SiteSelectorModel::label() const
{
    return *appState_.isURLMode ? "Service/URL:" : "Service:";
}

} // namespace corvane

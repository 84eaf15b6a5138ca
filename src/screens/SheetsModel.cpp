#include "screens/SheetsModel.h"

#include <algorithm>

namespace corvane {

SheetsModel::SheetsModel(AppState& appState, MainQueue& queue)
    : appState_(appState), updates_(queue, [this] { update(); })
{
    follow(appState_.showAbout, Sheet::about);
    follow(appState_.showSettings, Sheet::settings);
    follow(appState_.showNotifications, Sheet::notifications);
    observations_.push_back(appState_.activeWhatsNew.bind([this](const auto&) { changed(Sheet::whatsNew); }));
    follow(appState_.showAnalyticsConsent, Sheet::analyticsConsent);
}

void SheetsModel::follow(const Published<bool>& isAsked, Sheet sheet)
{
    observations_.push_back(isAsked.bind([this, sheet](bool) { changed(sheet); }));
}

/// Keeps the queue; what is shown follows in a later turn.
void SheetsModel::changed(Sheet sheet)
{
    const auto presentation = wanted(sheet);
    const auto place = std::ranges::find(waiting_, sheet);
    if (!presentation || presentation == *shown_) {
        if (place != waiting_.end())
            waiting_.erase(place);
    } else if (place == waiting_.end()) {
        const bool replacesShown = *shown_ && (*shown_)->sheet == sheet;
        waiting_.insert(replacesShown ? waiting_.begin() : waiting_.end(), sheet);
    }
    if (*shown_ || !waiting_.empty())
        updates_.request();
}

std::optional<SheetsModel::Presentation> SheetsModel::wanted(Sheet sheet) const
{
    const auto when = [sheet](bool isAsked) {
        return isAsked ? std::optional(Presentation{.sheet = sheet, .context = {}}) : std::nullopt;
    };
    switch (sheet) {
    case Sheet::about:
        return when(*appState_.showAbout);
    case Sheet::settings:
        return when(*appState_.showSettings);
    case Sheet::notifications:
        return when(*appState_.showNotifications);
    case Sheet::analyticsConsent:
        return when(*appState_.showAnalyticsConsent);
    case Sheet::whatsNew:
        break;
    }
    const auto& notes = *appState_.activeWhatsNew;
    return notes ? std::optional(Presentation{.sheet = sheet, .context = notes->id}) : std::nullopt;
}

void SheetsModel::update()
{
    if (*shown_) {
        if (wanted((*shown_)->sheet) == *shown_)
            return;
        shown_.set(std::nullopt);
        if (!waiting_.empty())
            updates_.request();
    } else if (!waiting_.empty()) {
        const auto next = waiting_.front();
        waiting_.erase(waiting_.begin());
        shown_.set(wanted(next));
    }
}

void SheetsModel::close(Sheet sheet)
{
    switch (sheet) {
    case Sheet::about:
        return appState_.showAbout.set(false);
    case Sheet::settings:
        return appState_.showSettings.set(false);
    case Sheet::notifications:
        return appState_.showNotifications.set(false);
    case Sheet::analyticsConsent:
        return appState_.showAnalyticsConsent.set(false);
    case Sheet::whatsNew:
        break;
    }
    const bool isReplaced = *shown_ && (*shown_)->sheet == sheet && wanted(sheet) != *shown_;
    if (!isReplaced)
        appState_.activeWhatsNew.set(std::nullopt);
}

} // namespace corvane

#include "screens/NotificationsModel.h"

#include "base/Text.h"
#include "notifications/NotificationText.h"
#include "notifications/PushDeviceManager.h"
#include "screens/DialogStyleSheet.h"
#include "settings/SettingsManager.h"
#include "settings/ThemeManager.h"
#include "state/AppState.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvane {

NotificationsModel::NotificationsModel(const Services& services)
    : services_(services), pendingChanges_(pending().observe([this](const auto& changed) { pendingChanged(changed); }))
{
}

void NotificationsModel::appear()
{
    isShown_ = true;
    ++presentation_;
    selected_.reset();
    copiedHide_.end();
    showCopied_.set(false);
    updateSelection();
}

void NotificationsModel::disappear()
{
    isShown_ = false;
    selected_.reset();
    copiedHide_.end();
}

const Published<std::vector<PendingNotification>>& NotificationsModel::pending() const
{
    return services_.manager.pending();
}

std::string NotificationsModel::headline() const
{
    return *effectiveSelection_ ? shownTitle(**effectiveSelection_) : "Notifications";
}

bool NotificationsModel::hasBack() const
{
    return *effectiveSelection_ && pending()->size() >= 2;
}

std::string NotificationsModel::page() const
{
    if (!*effectiveSelection_)
        return {};
    return bodyHTML(**effectiveSelection_,
                    services_.themeManager.themeCSS(services_.settingsManager.settings()->DialogTheme));
}

std::string NotificationsModel::readerStyle() const
{
    return notificationReaderStyle(
        services_.themeManager.dialogColors(services_.settingsManager.settings()->DialogTheme));
}

void NotificationsModel::select(const PendingNotification& notification)
{
    selected_ = notification;
    updateSelection();
}

void NotificationsModel::back()
{
    selected_.reset();
    updateSelection();
}

void NotificationsModel::dismissAll()
{
    acknowledgements_.start(services_.manager.acknowledgeAll());
}

void NotificationsModel::close()
{
    if (*effectiveSelection_)
        acknowledgements_.start(markAsRead((*effectiveSelection_)->recipientId, presentation_));
    else
        closeSheet();
}

void NotificationsModel::copySelected()
{
    if (*effectiveSelection_)
        copyToClipboard(copyText(**effectiveSelection_));
}

void NotificationsModel::copyPreview(const PendingNotification& notification)
{
    copyToClipboard(titleAndPreview(notification));
}

bool NotificationsModel::followsLink(const DocumentLink& link)
{
    static constexpr std::array<std::string_view, 3> handedOver{"mailto", "itms-apps", "itms-appss"};
    const auto url = Url::fromEngine(link.address);
    if (!url)
        return false;
    if (std::ranges::find(handedOver, url->scheme()) != handedOver.end() || (url->isHttp() && link.asksForNewWindow))
        services_.desktop.open(*url);
    else if (url->isHttp())
        openInApp(*url);
    return false;
}

void NotificationsModel::pendingChanged(const std::vector<PendingNotification>& pending)
{
    if (!isShown_)
        return;
    if (pending.empty()) {
        closeSheet(); // which goes as it looks
        return;
    }
    const bool isGone = selected_ && std::ranges::find(pending, selected_->recipientId,
                                                       &PendingNotification::recipientId) == pending.end();
    if (isGone)
        selected_.reset(); // an only one that is left opens by itself
    updateSelection();
}

void NotificationsModel::updateSelection()
{
    if (!selected_ && pending()->size() == 1)
        effectiveSelection_.set(pending()->front());
    else
        effectiveSelection_.set(selected_);
}

void NotificationsModel::closeSheet()
{
    services_.appState.showNotifications.set(false);
}

void NotificationsModel::copyToClipboard(std::string_view text)
{
    const auto copied = trimmed(text);
    if (copied.empty())
        return;
    services_.desktop.copyText(copied);
    showCopied_.set(true);
    copiedHide_ = services_.clock.after(copiedShows, [this] { showCopied_.set(false); });
}

void NotificationsModel::openInApp(const Url& url)
{
    if (!*effectiveSelection_)
        return;
    services_.appState.pendingURLAfterNotifications = url;
    acknowledgements_.start(acknowledgeThenClose((*effectiveSelection_)->recipientId, presentation_));
}

Task<void> NotificationsModel::markAsRead(std::int64_t recipientId, Presentation presentation)
{
    co_await services_.manager.acknowledge({recipientId});
    if (!isShown(presentation))
        co_return;
    if (pending()->empty())
        closeSheet();
    else if (selected_ && selected_->recipientId == recipientId) // not one that was opened meanwhile
        back();
}

Task<void> NotificationsModel::acknowledgeThenClose(std::int64_t recipientId, Presentation presentation)
{
    co_await services_.manager.acknowledge({recipientId});
    if (isShown(presentation))
        closeSheet();
}

} // namespace corvane

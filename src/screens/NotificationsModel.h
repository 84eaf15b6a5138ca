#pragma once

#include "async/TaskScope.h"
#include "base/Published.h"
#include "base/Subscription.h"
#include "notifications/PendingNotification.h"
#include "ports/Clock.h"
#include "ports/Desktop.h"
#include "ports/DocumentView.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

class AppState;
class PushDeviceManager;
class SettingsManager;
class ThemeManager;

/// Decides what the notifications dialog shows: the list of what waits, or one notification opened. An acknowledgement
/// that is under way when the dialog closes is carried out all the same.
class NotificationsModel {
public:
    static constexpr std::chrono::milliseconds copiedShows{1200};

    struct Services {
        AppState& appState;
        PushDeviceManager& manager;
        const SettingsManager& settingsManager;
        const ThemeManager& themeManager;
        Desktop& desktop;
        Clock& clock;
    };

    /// Everything must outlive this object.
    explicit NotificationsModel(const Services& services);

    /// The dialog is shown, with nothing opened by the user yet, and has gone.
    void appear();
    void disappear();

    const Published<std::vector<PendingNotification>>& pending() const;

    /// The notification that is open: the one selected, or the only one that waits. Empty while the list is shown.
    const Published<std::optional<PendingNotification>>& effectiveSelection() const { return effectiveSelection_; }

    std::string headline() const;

    /// Whether "Back" is offered while a notification is open.
    bool hasBack() const;

    /// The document of the open notification; empty while the list is shown.
    std::string page() const;

    /// What the document view adds so that the text stays readable on the theme's background.
    std::string readerStyle() const;

    /// "Copied" is shown for a moment.
    const Published<bool>& showCopied() const { return showCopied_; }

    void select(const PendingNotification& notification);
    void back();
    void dismissAll();

    /// "Close" and Escape: of the list nothing is acknowledged; what is open is marked as read.
    void close();

    /// The window was closed: nothing is acknowledged.
    void closeSheet();

    /// "Copy", and the copy button of a line.
    void copySelected();
    void copyPreview(const PendingNotification& notification);

    /// Whether the document view may follow the link in itself: never. Web addresses open in the main browser, those
    /// that ask for a new window in the user's own.
    bool followsLink(const DocumentLink& link);

private:
    /// Counts the times that the dialog is shown, so that what ends late leaves a later showing alone.
    using Presentation = std::uint64_t;

    bool isShown(Presentation presentation) const { return isShown_ && presentation == presentation_; }
    void pendingChanged(const std::vector<PendingNotification>& pending);
    void updateSelection();
    void copyToClipboard(std::string_view text);
    void openInApp(const Url& url);
    Task<void> markAsRead(std::int64_t recipientId, Presentation presentation);
    Task<void> acknowledgeThenClose(std::int64_t recipientId, Presentation presentation);

    Services services_;
    bool isShown_ = false;
    Presentation presentation_ = 0;
    std::optional<PendingNotification> selected_;
    Published<std::optional<PendingNotification>> effectiveSelection_;
    Published<bool> showCopied_{false};
    Subscription copiedHide_;
    Subscription pendingChanges_;
    TaskScope acknowledgements_;
};

} // namespace corvane

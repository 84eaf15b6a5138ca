#pragma once

#include "base/Published.h"
#include "state/AppState.h"
#include "state/UpdateScheduler.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// A dialog over the main window.
enum class Sheet : std::uint8_t { about, settings, notifications, whatsNew, analyticsConsent };

/// Decides which dialog covers the main window. Each is asked for in `AppState`; one is shown at a time, and one that
/// is asked for while another is there waits until that one has closed, but other release notes take the place of those
/// that are shown. A dialog comes and goes in a turn of its own, so whoever closes it may go on using what belongs to
/// it until that turn ends.
class SheetsModel {
public:
    /// One showing of a dialog. Other release notes are another showing.
    struct Presentation {
        Sheet sheet;
        std::string context; // the id of the release notes; empty for other dialogs

        bool operator==(const Presentation&) const = default;
    };

    /// Both must outlive this object.
    SheetsModel(AppState& appState, MainQueue& queue);

    const Published<std::optional<Presentation>>& shown() const { return shown_; }

    /// The window of a dialog was closed: it is not asked for any more. Release notes that are to take the place of
    /// the closed ones stay asked for.
    void close(Sheet sheet);

private:
    void follow(const Published<bool>& isAsked, Sheet sheet);
    void changed(Sheet sheet);
    std::optional<Presentation> wanted(Sheet sheet) const;
    void update();

    AppState& appState_;
    Published<std::optional<Presentation>> shown_;
    std::vector<Sheet> waiting_; // asked for and not shown, the earliest first
    UpdateScheduler updates_;
    std::vector<Subscription> observations_;
};

} // namespace corvane

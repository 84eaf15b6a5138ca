#pragma once

#include "base/Published.h"
#include "base/Url.h"
#include "catalogue/Site.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

class AnalyticsManager;
class AppState;
class DefaultsStore;

/// Decides what choosing a service and typing an address mean. Shows either the picker, with or without its
/// placeholder entry, or in URL mode the address field or the box that stands in for it.
class SiteSelectorModel {
public:
    static constexpr std::string_view placeholderEntry = "Select a service…";
    static constexpr std::string_view fieldPlaceholder = "Type URL and press Enter";

    /// Of the picker, the field and the box.
    static constexpr int smallestWidth = 320;

    /// Catalogues at least this long get a search field.
    static constexpr std::size_t longCatalogue = 10;

    /// One line of the picker's list. The texts belong to the catalogue and last until it changes.
    struct Row {
        std::optional<std::string_view> service; // none for the placeholder entry
        std::string_view title;
        std::string_view description;
    };

    /// Everything must outlive this object.
    SiteSelectorModel(AppState& appState, const Published<std::vector<Site>>& sites, DefaultsStore& defaults,
                      AnalyticsManager& analytics);

    /// Restores the remembered choice. Called once, when the selector is first shown; loads nothing.
    void appear();

    /// A person picks the service of this name.
    void choose(std::string_view service);

    /// A click on the box that stands in for the address field.
    void beginEditing();

    /// Enter in the address field.
    void submitAddress();

    /// Escape in the address field.
    void leaveURLMode();

    /// "Service:" or "Service/URL:".
    std::string_view label() const;

    enum class Shown : std::uint8_t { picker, field, box };

    /// What stands beside the label.
    Shown shown() const;

    const Published<std::vector<Site>>& sites() const { return sites_; }

    /// What the closed picker shows: the chosen service if the catalogue still holds it, else the placeholder entry if
    /// that is offered, else nothing.
    std::string_view shownChoice() const;

    bool hasSearch() const { return sites_->size() >= longCatalogue; }

    /// The picker's list while `search` stands in its search field.
    std::vector<Row> rows(std::string_view search) const;

    /// Return in the search field: picks the first service found. With nothing to search for nothing is picked; says
    /// whether something was.
    bool chooseFirst(std::string_view search);

    /// The service shown as chosen; the catalogue may not hold it any more.
    Published<std::optional<std::string>> selectedSiteID;

    /// Whether the picker offers `placeholderEntry`, which stands for no choice.
    Published<bool> includeServicePlaceholder{false};

    /// Whether URL mode shows the field instead of the box.
    Published<bool> urlBarEditing{false};

    /// One-shot request to give the field the focus; the view sets it back.
    Published<bool> urlFieldFocusRequested{false};

private:
    void select(std::optional<std::string> service);
    void enterURLMode();
    void restoreService();
    std::optional<Url> addressOf(std::string_view service) const;

    AppState& appState_;
    const Published<std::vector<Site>>& sites_;
    DefaultsStore& defaults_;
    AnalyticsManager& analytics_;
    Subscription urlModeChanges_;
    Subscription firstUseChanges_;
};

} // namespace corvane

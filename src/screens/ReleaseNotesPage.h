#pragma once

#include <string>
#include <string_view>

namespace corvane {

/// Bodies that stand in for one that is still on its way, that could not be fetched, or that does not exist.
inline constexpr std::string_view loadingBody =
    "<p style=\"text-align:center; padding-top: 40px; color: var(--text-muted, #888);\">Loading…</p>";
inline constexpr std::string_view failedBody =
    "<p style=\"color: var(--text-muted, #888);\">Archive could not be loaded.</p>";
inline constexpr std::string_view missingBody = "<p>What's New content is not available.</p>";

/// The whole document around a body of release notes. `themeCSS` is the theme's style element.
std::string releaseNotesPage(std::string_view body, std::string_view themeCSS);

} // namespace corvane

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// Fills in a page of release notes: every "{{VERSION}}", then every "{{BUILD_DATE}}". Plain text, nothing is escaped.
/// Empty when the page would grow past the largest page that is fetched.
std::optional<std::string> filledReleaseNotes(std::string_view page, std::string_view version,
                                              std::string_view buildDate);

} // namespace corvane

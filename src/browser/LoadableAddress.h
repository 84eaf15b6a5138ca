#pragma once

#include "base/Url.h"

#include <optional>
#include <string_view>

namespace corvane {

/// An address from the catalogue or another list, as the main view may load it.
std::optional<Url> parseLoadable(std::string_view text);

/// An address as a person types it: trimmed, "https://" put in front unless it begins with "http://" or "https://" in
/// any case. Empty when nothing is left or the result is no address.
std::optional<Url> parseTyped(std::string_view text);

/// Whether a page's request for a new window is loaded in the view that shows `shown`. Scripts, data and local files
/// are not: a page of the network must not lead there.
bool mayReplacePage(const Url& requested, const std::optional<Url>& shown);

} // namespace corvane

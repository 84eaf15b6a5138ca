#pragma once

#include "catalogue/Site.h"

#include <optional>
#include <string_view>
#include <vector>

namespace corvane {

/// Reads a catalogue document: a JSON array of objects with the strings "service", "url" and "description"; other keys
/// are ignored. Empty when the document is malformed, too deep, or a single entry is incomplete.
std::optional<std::vector<Site>> decodeSites(std::string_view bytes);

} // namespace corvane

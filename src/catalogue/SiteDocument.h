#pragma once

#include "async/Task.h"
#include "catalogue/JsonSlices.h"
#include "catalogue/Site.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace corvane {

/// Reads a catalogue document: a JSON array of objects with the strings "service", "url" and "description"; other keys
/// are ignored. Empty when the document is malformed, too deep, or a single entry is incomplete.
std::optional<std::vector<Site>> decodeSites(std::string_view bytes);

/// The same with idle turns of the main loop between the slices of a long document; one slice needs no turn. An entry
/// is read in one piece. `bytes` must outlive the task.
Task<std::optional<std::vector<Site>>> decodeSitesInTurns(std::string_view bytes, std::size_t sliceSize);

} // namespace corvane

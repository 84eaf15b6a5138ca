#pragma once

#include "async/Task.h"

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// The address that a document names in place of a catalogue: the text "source_url" of a JSON object; of several, as
/// with every JSON object, the last. Empty for every other document. Between the slices of a long one there are idle
/// turns of the main loop. `bytes` must outlive the task.
Task<std::optional<std::string>> decodeRedirectInTurns(std::string_view bytes);

} // namespace corvane

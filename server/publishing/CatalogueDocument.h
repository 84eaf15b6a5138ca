#pragma once

#include "base/Error.h"

#include <string>
#include <string_view>

namespace corvane::server {

/// Checks a catalogue before it is published: a JSON array of objects whose "service", "url" and "description" are
/// text, with a name of its own and an http or https address for every service; or one object whose "source_url" is
/// the address of the real catalogue. What it is, in a few words, or what is wrong with it.
Result<std::string> checkedCatalogue(std::string_view text);

} // namespace corvane::server

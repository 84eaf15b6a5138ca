#pragma once

#include "api/Now.h"
#include "base/Error.h"
#include "commands/CommandLine.h"

#include <string>

namespace corvane::server {

/// Publishes a new catalogue and, when given, new notes, after which the notes before are in the archive. What it did,
/// as a line to print. A failure leaves the publish folder as it was.
Result<std::string> publishCatalogue(const CommandLine& line, const Now& now);

} // namespace corvane::server

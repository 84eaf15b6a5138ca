#pragma once

#include "api/Now.h"
#include "base/Error.h"
#include "commands/CommandLine.h"

#include <string>

namespace corvane::server {

/// Publishes the new version of the application that the command line describes: notes, image and version file; the
/// notes before go to the archive. What it did, as lines to print. A failure leaves the publish folder as it was.
Result<std::string> release(const CommandLine& line, const Now& now);

} // namespace corvane::server

#pragma once

#include "api/Now.h"
#include "base/Error.h"
#include "commands/CommandLine.h"
#include "data/Database.h"

#include <string>

namespace corvane::server {

/// Sends the notification that the command line describes. What it did, as a line to print.
Result<std::string> notify(const CommandLine& line, Database& database, const Now& now);

} // namespace corvane::server

#pragma once

#include "base/Error.h"
#include "commands/CommandLine.h"

#include <string>

namespace corvane::server {

/// Sets the version that the store look-up answers with, or none. What it did, as a line to print.
Result<std::string> setStoreVersion(const CommandLine& line);

} // namespace corvane::server

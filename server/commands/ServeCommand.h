#pragma once

#include "base/Error.h"
#include "commands/CommandLine.h"

#include <filesystem>

namespace corvane::server {

/// Runs the server until SIGTERM or SIGINT. A failure is why it could not start.
Result<void> serve(const CommandLine& line, const std::filesystem::path& publishFolder);

} // namespace corvane::server

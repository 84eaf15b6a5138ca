#pragma once

#include "base/Error.h"

#include <filesystem>
#include <string>

namespace corvane::server {

/// Makes a copy of the sample documents that may be changed. `target` must be missing or an empty folder; a failure
/// leaves it as it was. What it did, as lines to print.
Result<std::string> copyPublishFolder(const std::filesystem::path& samples, const std::filesystem::path& target);

} // namespace corvane::server

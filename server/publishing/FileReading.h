#pragma once

#include "base/Error.h"
#include "publishing/OpenFile.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace corvane::server {

/// The largest text file that a command takes: what the server still adapts when it publishes it.
inline constexpr std::uint64_t largestText = std::uint64_t{4} * 1024 * 1024;

/// Opens a regular file, also through a symbolic link. The failure names the file.
Result<std::shared_ptr<OpenFile>> openFile(const std::filesystem::path& file);

/// The whole file, which must be UTF-8, hold more than white space, and be no longer than `largestText`.
Result<std::string> readText(const std::filesystem::path& file);

/// The same, or nothing when there is no such file.
Result<std::optional<std::string>> readTextIfThere(const std::filesystem::path& file);

} // namespace corvane::server

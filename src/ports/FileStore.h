#pragma once

#include "base/Error.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// The small files of the program, read and written whole. Synchronous.
class FileStore {
public:
    /// Larger files are not read.
    static constexpr std::size_t largestFile = std::size_t{4} << 20U;

    virtual ~FileStore() = default;

    /// The bytes of a regular file (through symbolic links) of at most `largestFile` bytes; empty for anything else.
    virtual std::optional<std::string> read(const std::filesystem::path& file) const = 0;

    /// Replaces the file as a whole: after a failure or a crash either the old bytes stand or the new ones. A symbolic
    /// link is followed to its target.
    virtual Result<void> write(const std::filesystem::path& file, std::string_view bytes) = 0;

    /// Creates the folder and its missing parents, for this user only (0700).
    virtual Result<void> makeFolder(const std::filesystem::path& folder) = 0;

    /// Whether anything bears this name.
    virtual bool exists(const std::filesystem::path& file) const = 0;

    /// Removes a file; a folder is left alone and is a failure.
    virtual Result<void> remove(const std::filesystem::path& file) = 0;
};

} // namespace corvane

#pragma once

#include "ports/FileStore.h"

#include <map>
#include <set>

namespace corvane::testing {

/// Files that live in memory; single operations can be made to fail.
class MemoryFileStore final : public FileStore {
public:
    std::optional<std::string> read(const std::filesystem::path& file) const override
    {
        const auto found = files.find(file);
        return found == files.end() ? std::nullopt : std::optional(found->second);
    }
    Result<void> write(const std::filesystem::path& file, std::string_view bytes) override
    {
        ++writes;
        if (failsToWrite || unwritable.contains(file))
            return std::unexpected(Error{"No space left on device"});
        files[file] = bytes;
        return {};
    }
    Result<void> makeFolder(const std::filesystem::path& folder) override
    {
        if (failsToMakeFolders)
            return std::unexpected(Error{"Not a directory"});
        folders.insert(folder);
        return {};
    }
    bool exists(const std::filesystem::path& file) const override
    {
        return files.contains(file) || unremovable.contains(file);
    }
    Result<void> remove(const std::filesystem::path& file) override
    {
        if (unremovable.contains(file))
            return std::unexpected(Error{"Is a directory"});
        if (files.erase(file) == 0)
            return std::unexpected(Error{"No such file"});
        return {};
    }

    std::map<std::filesystem::path, std::string> files;
    std::set<std::filesystem::path> folders;
    std::set<std::filesystem::path> unwritable;
    std::set<std::filesystem::path> unremovable; // exist and stay
    bool failsToWrite = false;
    bool failsToMakeFolders = false;
    int writes = 0;
};

} // namespace corvane::testing

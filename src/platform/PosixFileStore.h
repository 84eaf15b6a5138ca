#pragma once

#include "ports/FileStore.h"
#include "ports/Places.h"

#include <set>

namespace corvane {

/// Small files on a POSIX file system. A file is replaced by renaming a complete, synchronised temporary file over it;
/// where its folder cannot be written it is rewritten in place, after its space has been secured.
///
/// Temporary files that a killed run left behind are swept when they are older than a minute: after the first write to
/// their folder in this run, and by `sweep`, which the program calls once it has started.
class PosixFileStore final : public FileStore {
public:
    std::optional<std::string> read(const std::filesystem::path& file) const override;

    /// A new file is for this user only (0600), an old one keeps its mode, whatever the umask.
    Result<void> write(const std::filesystem::path& file, std::string_view bytes) override;

    Result<void> makeFolder(const std::filesystem::path& folder) override;
    bool exists(const std::filesystem::path& file) const override;
    Result<void> remove(const std::filesystem::path& file) override;

    /// Removes old temporary files of ours from a folder, once in this run.
    void sweep(const std::filesystem::path& folder);

    /// The same for every folder that the program writes to.
    void sweepAll(const Places& places);

private:
    std::set<std::filesystem::path> swept_;
};

} // namespace corvane

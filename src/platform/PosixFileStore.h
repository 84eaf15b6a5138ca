#pragma once

#include "ports/FileStore.h"

#include <set>

namespace corvane {

/// Small files on a POSIX file system. A file is replaced by renaming a complete, synchronised temporary file over it;
/// where its folder cannot be written it is rewritten in place, after its space has been secured.
///
/// Temporary files that a killed run left behind are swept from a folder after the first write to it in this run, when
/// they are older than a minute: starting costs nothing.
class PosixFileStore final : public FileStore {
public:
    std::optional<std::string> read(const std::filesystem::path& file) const override;

    /// A new file is for this user only (0600), an old one keeps its mode, whatever the umask.
    Result<void> write(const std::filesystem::path& file, std::string_view bytes) override;

    Result<void> makeFolder(const std::filesystem::path& folder) override;
    bool exists(const std::filesystem::path& file) const override;
    Result<void> remove(const std::filesystem::path& file) override;

private:
    void sweepOnce(const std::filesystem::path& folder);

    std::set<std::filesystem::path> swept_;
};

} // namespace corvane

#pragma once

#include "ports/Resources.h"

#include <vector>

namespace corvane {

/// Resources in one of several folders; for each name the first folder that has it counts.
class FolderResources final : public Resources {
public:
    explicit FolderResources(std::vector<std::filesystem::path> folders);

    /// The folder that belongs to the running program, in an installation as in a build.
    static FolderResources ofThisProgram();

    /// Where a program at `executable` looks: share/corvane beside its bin folder. A build tree has that shape too.
    static std::vector<std::filesystem::path> foldersFor(const std::filesystem::path& executable);

    /// Where it looks, the folder that counts most first.
    const std::vector<std::filesystem::path>& folders() const { return folders_; }

    std::optional<std::filesystem::path> locate(std::string_view name, std::string_view extension) const override;
    std::optional<std::string> read(std::string_view name, std::string_view extension) const override;

private:
    std::vector<std::filesystem::path> folders_;
};

} // namespace corvane

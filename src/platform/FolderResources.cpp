#include "platform/FolderResources.h"

#include "platform/FileDescriptor.h"
#include "ports/FileStore.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace corvane {
namespace {

namespace fs = std::filesystem;

bool isNamePart(std::string_view text)
{
    return !text.empty() && !text.contains('/') && !text.contains("..") && !text.contains('\0');
}

} // namespace

FolderResources::FolderResources(std::vector<fs::path> folders) : folders_(std::move(folders)) {}

FolderResources FolderResources::ofThisProgram()
{
    std::error_code error;
    return FolderResources(foldersFor(fs::read_symlink("/proc/self/exe", error)));
}

std::vector<fs::path> FolderResources::foldersFor(const fs::path& executable)
{
    return {executable.parent_path().parent_path() / "share" / "corvane"};
}

std::optional<fs::path> FolderResources::locate(std::string_view name, std::string_view extension) const
{
    if (!isNamePart(name) || !isNamePart(extension))
        return std::nullopt;
    const auto file = std::string(name) + "." + std::string(extension);
    for (const auto& folder : folders_) {
        std::error_code error;
        if (fs::is_regular_file(folder / file, error))
            return folder / file;
    }
    return std::nullopt;
}

std::optional<std::string> FolderResources::read(std::string_view name, std::string_view extension) const
{
    const auto file = locate(name, extension);
    return file ? readRegularFile(*file, FileStore::largestFile) : std::nullopt;
}

} // namespace corvane

#include "platform/PosixFileStore.h"

#include "platform/FileDescriptor.h"
#include "platform/TemporaryFile.h"

#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;

constexpr auto cannotWrite = "Cannot write";

/// How an attempt to replace a file by renaming ended.
enum class Replacement { done, folderRefuses, failed };

fs::path folderOf(const fs::path& file)
{
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

/// The file behind a chain of symbolic links, which need not exist. Empty where the chain is endless or cannot be
/// followed, and errno says why: a link must not be taken for the file that is to be replaced.
std::optional<fs::path> linkTarget(fs::path file)
{
    static constexpr int longestChain = 40; // as the kernel
    for (int links = 0; links < longestChain; ++links) {
        struct stat status{};
        const bool isFound = ::lstat(file.c_str(), &status) == 0;
        if (!isFound && errno != ENOENT)
            return std::nullopt;
        if (!isFound || !S_ISLNK(status.st_mode))
            return file;
        std::error_code error;
        const auto next = fs::read_symlink(file, error);
        if (error) {
            errno = error.value();
            return std::nullopt;
        }
        file = folderOf(file) / next; // an absolute target replaces the folder
    }
    errno = ELOOP;
    return std::nullopt;
}

bool isRefusal(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == EBUSY;
}

void syncFolder(const fs::path& folder)
{
    // The new file stands already; some file systems cannot synchronise a folder.
    if (FileDescriptor opened(folder, O_RDONLY | O_DIRECTORY); opened)
        opened.sync();
}

Replacement replace(const fs::path& target, std::string_view bytes, mode_t mode)
{
    TemporaryFile temporary(folderOf(target), O_WRONLY);
    if (temporary && temporary.setMode(mode) && temporary.file().writeAll(bytes) && temporary.file().sync() &&
        temporary.becomes(target)) {
        syncFolder(folderOf(target));
        return Replacement::done;
    }
    return isRefusal(errno) ? Replacement::folderRefuses : Replacement::failed;
}

/// Not safe against a crash, but nothing is overwritten before there is room for all of it.
bool rewriteInPlace(const fs::path& target, std::string_view bytes, off_t oldSize)
{
    FileDescriptor file(target, O_WRONLY | O_NONBLOCK | O_NOCTTY);
    if (!file)
        return false;
    const auto size = static_cast<off_t>(bytes.size());
    if (size > oldSize) {
        errno = ::posix_fallocate(file.number(), oldSize, size - oldSize);
        if (const int error = errno; error != 0) {
            [[maybe_unused]] const int shrunk = ::ftruncate(file.number(), oldSize);
            errno = error;
            return false;
        }
    }
    return file.writeAll(bytes) && ::ftruncate(file.number(), size) == 0 && file.sync();
}

} // namespace

std::optional<std::string> PosixFileStore::read(const fs::path& file) const
{
    return readRegularFile(file, largestFile);
}

Result<void> PosixFileStore::write(const fs::path& file, std::string_view bytes)
{
    const auto target = linkTarget(file);
    if (!target)
        return std::unexpected(systemError(cannotWrite, file));

    struct stat status{};
    const bool isNew = ::stat(target->c_str(), &status) != 0;
    if (isNew && errno != ENOENT) // what stands there cannot be told
        return std::unexpected(systemError(cannotWrite, file));
    if (!isNew && !S_ISREG(status.st_mode)) {
        errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
        return std::unexpected(systemError(cannotWrite, file));
    }

    const mode_t mode = isNew ? 0600 : status.st_mode & 0777;
    const auto outcome = replace(*target, bytes, mode);
    if (outcome == Replacement::failed || (outcome == Replacement::folderRefuses && isNew))
        return std::unexpected(systemError(cannotWrite, file));
    if (outcome == Replacement::folderRefuses && !rewriteInPlace(*target, bytes, status.st_size))
        return std::unexpected(systemError(cannotWrite, file));
    sweep(folderOf(*target));
    return {};
}

Result<void> PosixFileStore::makeFolder(const fs::path& folder)
{
    std::error_code ignored;
    std::vector<fs::path> missing;
    for (auto path = folder.has_filename() ? folder : folder.parent_path(); // "a/b/" is "a/b"
         !path.empty() && !fs::exists(path, ignored); path = path.parent_path())
        missing.push_back(path);

    for (auto path = missing.rbegin(); path != missing.rend(); ++path) {
        const bool isMade = ::mkdir(path->c_str(), 0700) == 0 && ::chmod(path->c_str(), 0700) == 0;
        if (!isMade && errno != EEXIST) // somebody else may have been faster
            return std::unexpected(systemError("Cannot create the folder", *path));
    }
    if (fs::is_directory(folder, ignored))
        return {};
    errno = ENOTDIR;
    return std::unexpected(systemError("Cannot create the folder", folder));
}

bool PosixFileStore::exists(const fs::path& file) const
{
    struct stat status{};
    return ::lstat(file.c_str(), &status) == 0;
}

Result<void> PosixFileStore::remove(const fs::path& file)
{
    if (::unlink(file.c_str()) != 0)
        return std::unexpected(systemError("Cannot remove", file));
    return {};
}

void PosixFileStore::sweep(const fs::path& folder)
{
    if (swept_.insert(folder).second)
        sweepTemporaryFiles(folder);
}

void PosixFileStore::sweepAll(const Places& places)
{
    for (const auto& folder : {places.settings(), places.sites(), places.defaults.parent_path(), places.updates()})
        sweep(folder);
    if (places.downloads)
        sweep(*places.downloads);
}

} // namespace corvane

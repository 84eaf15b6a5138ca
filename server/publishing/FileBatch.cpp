#include "publishing/FileBatch.h"

#include "publishing/Sha256.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ranges>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace corvane::server {

namespace fs = std::filesystem;

namespace {

std::unexpected<Error> failure(std::string_view what, const fs::path& file, int reason = errno)
{
    return std::unexpected(
        Error{fmt::format("cannot {} {}: {}", what, file.string(), std::generic_category().message(reason))});
}

bool writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

void syncFolder(const fs::path& folder)
{
    const FileDescriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.get() >= 0)
        fsync(opened.get());
}

} // namespace

Result<FileBatch> FileBatch::open(const fs::path& folder)
{
    FileDescriptor lock(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (lock.get() < 0)
        return failure("open the publish folder", folder);
    if (flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
        return std::unexpected(Error{fmt::format("another command is changing {}", folder.string())});
    return FileBatch(folder, std::move(lock));
}

FileBatch::~FileBatch()
{
    for (const auto& change : changes_) {
        unlink(change.fresh.c_str());
        if (!change.previous.empty())
            unlink(change.previous.c_str());
    }
    if (committed_)
        return;
    std::error_code ignored;
    for (const auto& made : madeFolders_ | std::views::reverse)
        fs::remove(made, ignored);
}

Result<void> FileBatch::put(const fs::path& place, std::string_view bytes)
{
    const auto file = addFresh(place);
    if (!file)
        return std::unexpected(file.error());
    if (!writeAll(file->get(), bytes) || fsync(file->get()) != 0)
        return failure("write", folder_ / place);
    return {};
}

Result<std::string> FileBatch::put(const fs::path& place, const ByteSource& source)
{
    const auto file = addFresh(place);
    if (!file)
        return std::unexpected(file.error());
    errno = EIO;
    auto digest = sha256Of(source, [&](std::string_view piece) { return writeAll(file->get(), piece); });
    if (!digest || fsync(file->get()) != 0)
        return failure("write", folder_ / place);
    return *std::move(digest);
}

Result<void> FileBatch::commit()
{
    for (std::size_t i = 0; i < changes_.size(); ++i) {
        auto& change = changes_[i];
        auto previous = change.fresh;
        previous += ".previous";
        // The second name keeps the old file within reach, while its place is never empty.
        if (link(change.place.c_str(), previous.c_str()) == 0)
            change.previous = previous;
        const bool isReady = !change.previous.empty() || errno == ENOENT;
        if (!isReady || rename(change.fresh.c_str(), change.place.c_str()) != 0) {
            const int reason = errno;
            undo(i);
            return failure("replace", change.place, reason);
        }
    }
    for (const auto& change : changes_)
        syncFolder(change.place.parent_path());
    committed_ = true;
    return {};
}

void FileBatch::undo(std::size_t count)
{
    for (std::size_t i = count; i-- > 0;) {
        const auto& change = changes_[i];
        if (change.previous.empty())
            unlink(change.place.c_str());
        else
            rename(change.previous.c_str(), change.place.c_str());
    }
}

Result<FileDescriptor> FileBatch::addFresh(const fs::path& place)
{
    const auto target = folder_ / place;
    if (auto made = makeFolder(target.parent_path()); !made)
        return std::unexpected(made.error());
    auto name = (target.parent_path() / ".corvane-XXXXXX").string();
    FileDescriptor file(mkostemp(name.data(), O_CLOEXEC));
    if (file.get() < 0)
        return failure("write into", target.parent_path());
    changes_.push_back({target, name, {}});
    fchmod(file.get(), S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH);
    return file;
}

Result<void> FileBatch::makeFolder(const fs::path& folder)
{
    std::error_code failed;
    std::vector<fs::path> missing;
    for (auto path = folder; !fs::exists(path, failed) && !failed && path != folder_; path = path.parent_path())
        missing.push_back(path);
    for (const auto& path : missing | std::views::reverse) {
        if (!fs::create_directory(path, failed))
            return failure("make the folder", path, failed.value());
        madeFolders_.push_back(path);
    }
    return {};
}

} // namespace corvane::server

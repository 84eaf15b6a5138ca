#include "platform/TemporaryFile.h"

#include "base/Uuid.h"

#include <chrono>
#include <cstdio>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view prefix = ".corvane-";
constexpr std::string_view suffix = ".tmp";

/// Whether a TemporaryFile could bear this name. Its folder may be full of other people's files.
bool isTemporaryName(std::string_view name)
{
    static constexpr std::size_t uuidLength = 36;
    if (name.size() != prefix.size() + uuidLength + suffix.size() || !name.starts_with(prefix) ||
        !name.ends_with(suffix))
        return false;
    return name.substr(prefix.size(), uuidLength).find_first_not_of("0123456789abcdef-") == std::string_view::npos;
}

/// Whether the file is of this user, older than a minute and in nobody's hands. The age alone could deceive, after a
/// step of the clock or a sleep of the machine.
bool isAbandoned(const FileDescriptor& file)
{
    struct stat status{};
    if (!file || ::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_uid != ::geteuid())
        return false;
    const auto written = std::chrono::system_clock::from_time_t(status.st_mtime);
    return std::chrono::system_clock::now() - written > std::chrono::minutes(1) &&
           ::flock(file.number(), LOCK_SH | LOCK_NB) == 0;
}

} // namespace

TemporaryFile::TemporaryFile(const fs::path& folder, int access)
    : path_(temporaryName(folder)), file_(path_, access | O_CREAT | O_EXCL | O_NOFOLLOW, 0600)
{
    if (file_)
        static_cast<void>(::flock(file_.number(), LOCK_EX | LOCK_NB)); // nothing is swept where there are no locks
}

TemporaryFile::~TemporaryFile()
{
    if (!file_ || path_.empty())
        return;
    const int error = errno;
    ::unlink(path_.c_str());
    errno = error;
}

bool TemporaryFile::setMode(mode_t mode)
{
    return ::fchmod(file_.number(), mode) == 0;
}

bool TemporaryFile::becomes(const fs::path& target)
{
    if (::rename(path_.c_str(), target.c_str()) != 0)
        return false;
    path_.clear();
    return true;
}

fs::path temporaryName(const fs::path& folder)
{
    return folder / (std::string(prefix) + randomUuid() + std::string(suffix));
}

void sweepTemporaryFiles(const fs::path& folder)
{
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        const auto& path = entry->path();
        if (!isTemporaryName(path.filename().native()))
            continue;
        if (isAbandoned(FileDescriptor(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY)))
            ::unlink(path.c_str());
    }
}

} // namespace corvane

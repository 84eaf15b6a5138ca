#include "platform/TemporaryFile.h"

#include "base/Uuid.h"

#include <chrono>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view prefix = ".corvane-";
constexpr std::string_view suffix = ".tmp";

bool isOldTemporary(const fs::path& file)
{
    const auto name = file.filename().string();
    struct stat status{};
    if (!name.starts_with(prefix) || !name.ends_with(suffix) || ::lstat(file.c_str(), &status) != 0 ||
        !S_ISREG(status.st_mode) || status.st_uid != ::geteuid())
        return false;
    const auto written = std::chrono::system_clock::from_time_t(status.st_mtime);
    return std::chrono::system_clock::now() - written > std::chrono::minutes(1);
}

} // namespace

TemporaryFile::TemporaryFile(const fs::path& folder, int access)
    : path_(folder / (std::string(prefix) + randomUuid() + std::string(suffix))),
      file_(path_, access | O_CREAT | O_EXCL | O_NOFOLLOW, 0600)
{
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

void sweepTemporaryFiles(const fs::path& folder)
{
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        if (isOldTemporary(entry->path()))
            ::unlink(entry->path().c_str());
    }
}

} // namespace corvane

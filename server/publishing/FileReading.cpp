#include "publishing/FileReading.h"

#include "base/Text.h"
#include "publishing/FileDescriptor.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>

namespace corvane::server {
namespace {

std::unexpected<Error> refused(const std::filesystem::path& file, const std::string& reason)
{
    return std::unexpected(Error{fmt::format("cannot use {}: {}", file.string(), reason)});
}

} // namespace

Result<std::shared_ptr<OpenFile>> openFile(const std::filesystem::path& file)
{
    // Without O_NONBLOCK a pipe would hold the program.
    FileDescriptor opened(open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status{};
    if (opened.get() < 0 || fstat(opened.get(), &status) != 0)
        return refused(file, std::generic_category().message(errno));
    if (!S_ISREG(status.st_mode))
        return refused(file, "it is not a regular file");
    const auto changed = OpenFile::TimePoint(std::chrono::seconds(status.st_mtim.tv_sec) +
                                             std::chrono::nanoseconds(status.st_mtim.tv_nsec));
    return std::make_shared<OpenFile>(opened.release(), static_cast<std::uint64_t>(status.st_size), changed);
}

Result<std::string> readText(const std::filesystem::path& file)
{
    const auto opened = openFile(file);
    if (!opened)
        return std::unexpected(opened.error());
    if ((*opened)->size() > largestText)
        return refused(file, fmt::format("it is longer than {} bytes", largestText));
    auto text = (*opened)->read(0, largestText);
    if (text.size() != (*opened)->size())
        return refused(file, "it cannot be read whole");
    if (trimmed(text).empty())
        return refused(file, "it is empty");
    if (!isValidUtf8(text) || text.contains('\0'))
        return refused(file, "it is not UTF-8 text");
    return text;
}

Result<std::optional<std::string>> readTextIfThere(const std::filesystem::path& file)
{
    std::error_code failed;
    if (std::filesystem::symlink_status(file, failed).type() == std::filesystem::file_type::not_found)
        return std::nullopt;
    auto text = readText(file);
    if (!text)
        return std::unexpected(text.error());
    return *std::move(text);
}

} // namespace corvane::server

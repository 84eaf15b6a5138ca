#include "platform/FileDescriptor.h"

#include <array>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

Error systemError(std::string_view what, const std::filesystem::path& file)
{
    const auto reason = std::generic_category().message(errno);
    return {fmt::format("{} “{}”: {}.", what, file.filename().string(), reason)};
}

FileDescriptor::FileDescriptor(const std::filesystem::path& file, int flags, unsigned mode)
    : number_(uninterrupted([&] { return ::open(file.c_str(), flags | O_CLOEXEC, mode); }))
{
}

FileDescriptor::~FileDescriptor()
{
    if (number_ >= 0)
        ::close(number_);
}

bool FileDescriptor::writeAll(std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto written = uninterrupted([&] { return ::write(number_, bytes.data(), bytes.size()); });
        if (written < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool FileDescriptor::sync()
{
    return uninterrupted([&] { return ::fsync(number_); }) == 0;
}

std::optional<std::string> readRegularFile(const std::filesystem::path& file, std::size_t largest)
{
    // Without O_NONBLOCK the opening of a pipe would wait for its other end.
    const FileDescriptor opened(file, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat status{};
    if (!opened || ::fstat(opened.number(), &status) != 0 || !S_ISREG(status.st_mode) ||
        static_cast<std::size_t>(status.st_size) > largest)
        return std::nullopt;

    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(status.st_size));
    std::array<char, 16384> chunk{};
    while (true) {
        const auto count = uninterrupted([&] { return ::read(opened.number(), chunk.data(), chunk.size()); });
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            return bytes;
        bytes.append(chunk.data(), static_cast<std::size_t>(count));
        if (bytes.size() > largest) // it grew meanwhile
            return std::nullopt;
    }
}

} // namespace corvane

#pragma once

#include "base/Error.h"

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace corvane {

/// Repeats a system call while signals interrupt it. Its answer is negative on failure, and errno says why.
template <typename Call>
auto uninterrupted(Call call)
{
    while (true) {
        const auto answer = call();
        if (answer >= 0 || errno != EINTR)
            return answer;
    }
}

/// The failure that errno stands for at this moment, as a sentence about `file`.
Error systemError(std::string_view what, const std::filesystem::path& file);

/// An open file of POSIX; closed when this object goes.
class FileDescriptor {
public:
    /// Opens with `flags` of open(2) and close-on-exec; when that fails the object is empty and errno says why.
    FileDescriptor(const std::filesystem::path& file, int flags, unsigned mode = 0);
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&&) = delete;
    ~FileDescriptor();

    explicit operator bool() const { return number_ >= 0; }
    int number() const { return number_; }

    /// Writes every byte from the file's position on. False when that fails, and errno says why.
    bool writeAll(std::string_view bytes);

    /// Brings the file's bytes to the disk. False when that fails, and errno says why.
    bool sync();

private:
    int number_ = -1;
};

/// The bytes of a regular file (through symbolic links) of at most `largest` bytes; empty for anything else. Never
/// waits for a pipe or a device.
std::optional<std::string> readRegularFile(const std::filesystem::path& file, std::size_t largest);

} // namespace corvane

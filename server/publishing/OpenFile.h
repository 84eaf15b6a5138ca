#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace corvane::server {

/// A regular file that is open for reading, with what was known of it when it was opened.
class OpenFile {
public:
    using TimePoint = std::chrono::sys_time<std::chrono::nanoseconds>;

    /// Takes over a file descriptor.
    OpenFile(int descriptor, std::uint64_t size, TimePoint changedAt)
        : descriptor_(descriptor), size_(size), changedAt_(changedAt)
    {
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile();

    std::uint64_t size() const { return size_; }
    TimePoint changedAt() const { return changedAt_; }

    /// At most `count` bytes from `offset` on; empty at the end and on failure.
    std::string read(std::uint64_t offset, std::size_t count) const;

private:
    int descriptor_;
    std::uint64_t size_;
    TimePoint changedAt_;
};

} // namespace corvane::server

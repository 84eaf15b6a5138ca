#pragma once

#include "publishing/ByteSource.h"

#include <chrono>

namespace corvane::server {

/// A regular file that is open for reading, with what was known of it when it was opened.
class OpenFile final : public ByteSource {
public:
    using TimePoint = std::chrono::sys_time<std::chrono::nanoseconds>;

    /// Takes over a file descriptor.
    OpenFile(int descriptor, std::uint64_t size, TimePoint changedAt)
        : descriptor_(descriptor), size_(size), changedAt_(changedAt)
    {
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile() override;

    std::uint64_t size() const override { return size_; }
    std::string read(std::uint64_t offset, std::size_t count) const override;
    TimePoint changedAt() const { return changedAt_; }

private:
    int descriptor_;
    std::uint64_t size_;
    TimePoint changedAt_;
};

} // namespace corvane::server

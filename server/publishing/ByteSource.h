#pragma once

#include <cstdint>
#include <string>

namespace corvane::server {

/// Bytes of a known number that are read piece by piece, so that they need not lie in memory.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    virtual std::uint64_t size() const = 0;

    /// At most `count` bytes from `offset` on; empty at the end and on failure.
    virtual std::string read(std::uint64_t offset, std::size_t count) const = 0;
};

} // namespace corvane::server

#pragma once

#include "ports/ByteSink.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace corvane {

/// Undoes the chunks of an HTTP/1.1 body (RFC 9112, 7.1): takes it as it travels and hands on what is in the chunks.
/// Extensions and trailers are left out. Bytes after the end are ignored.
class ChunkedSink final : public ByteSink {
public:
    static constexpr std::size_t longestLine = 4096;
    static constexpr std::size_t longestTrailers = std::size_t{64} << 10U;

    /// `next` must outlive this object.
    explicit ChunkedSink(ByteSink& next) : next_(next) {}

    Result<void> write(std::string_view bytes) override;

    /// Whether the last chunk and the trailers have passed: nothing more belongs to this body.
    bool isComplete() const { return state_ == State::complete; }

private:
    enum class State : std::uint8_t { size, data, dataEnd, trailers, complete };

    Result<void> takeLine();
    Result<void> takeSize();

    ByteSink& next_;
    State state_ = State::size;
    std::string line_;         // as far as it has arrived
    std::uint64_t left_ = 0;   // bytes of the chunk
    std::size_t trailers_ = 0; // bytes
};

} // namespace corvane

#include "platform/ChunkedSink.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>

namespace corvane {
namespace {

std::unexpected<Error> broken()
{
    return std::unexpected(Error{"The answer of the server has broken chunks."});
}

/// The size at the start of a line, which an extension may follow.
std::optional<std::uint64_t> sizeOf(std::string_view line)
{
    std::uint64_t size = 0;
    const auto [rest, error] = std::from_chars(line.data(), line.data() + line.size(), size, 16);
    if (error != std::errc() || size > std::numeric_limits<std::int64_t>::max())
        return std::nullopt;
    const bool isOver = rest == line.data() + line.size() || *rest == ';' || *rest == ' ' || *rest == '\t';
    return isOver ? std::optional(size) : std::nullopt;
}

} // namespace

Result<void> ChunkedSink::write(std::string_view bytes)
{
    while (!bytes.empty() && !isComplete()) {
        Result<void> taken;
        if (state_ == State::data) {
            const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(left_, bytes.size()));
            taken = next_.write(bytes.substr(0, size));
            left_ -= size;
            bytes.remove_prefix(size);
            if (left_ == 0)
                state_ = State::dataEnd;
        } else {
            const auto end = bytes.find('\n');
            line_ += bytes.substr(0, std::min(end, longestLine + 1));
            bytes.remove_prefix(std::min(end == std::string_view::npos ? end : end + 1, bytes.size()));
            if (line_.size() > longestLine)
                return broken();
            if (end != std::string_view::npos)
                taken = takeLine();
        }
        if (!taken)
            return taken;
    }
    return {};
}

Result<void> ChunkedSink::takeLine()
{
    if (line_.ends_with('\r'))
        line_.pop_back();
    Result<void> taken;
    if (state_ == State::size) {
        taken = takeSize();
    } else if (state_ == State::dataEnd) {
        if (!line_.empty())
            return broken();
        state_ = State::size;
    } else if (line_.empty()) {
        state_ = State::complete;
    } else {
        trailers_ += line_.size();
        if (trailers_ > longestTrailers)
            return broken();
    }
    line_.clear();
    return taken;
}

Result<void> ChunkedSink::takeSize()
{
    const auto size = sizeOf(line_);
    if (!size)
        return broken();
    left_ = *size;
    state_ = left_ == 0 ? State::trailers : State::data;
    return {};
}

} // namespace corvane

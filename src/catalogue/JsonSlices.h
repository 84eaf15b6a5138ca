#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// Cuts a JSON array or object into short documents of the same kind, which hold its elements in their order, so that a
/// long one can be read with pauses. An element is never cut. The text is a well-formed array or object exactly when
/// every slice is one and `isComplete` holds after the last.
class JsonSlices {
public:
    /// In bytes; reading that much takes about half a millisecond.
    static constexpr std::size_t usualSize = std::size_t{64} << 10U;

    /// A slice holds at least `size` bytes, but for the last one. `text` must outlive this object.
    JsonSlices(std::string_view text, std::size_t size);

    bool isObject() const { return opening_ == '{'; }

    /// The next slice; empty after the last one and where the text is malformed.
    std::optional<std::string> next();

    /// Whether the last slice has been taken and nothing stands behind it.
    bool isComplete() const { return state_ == State::complete; }

private:
    enum class State : std::uint8_t { open, complete, malformed };

    std::size_t sliceEnd() const;
    char closing() const { return isObject() ? '}' : ']'; }

    std::string_view text_;
    std::size_t size_;
    std::size_t position_ = 0; // behind the opening bracket or a comma
    char opening_ = '\0';
    State state_ = State::malformed;
};

} // namespace corvane

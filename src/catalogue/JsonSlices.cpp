#include "catalogue/JsonSlices.h"

namespace corvane {
namespace {

constexpr std::string_view blanks = " \t\n\r";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF"; // the parser skips one at the very beginning

} // namespace

JsonSlices::JsonSlices(std::string_view text, std::size_t size) : text_(text), size_(size)
{
    const auto start = text.find_first_not_of(blanks, text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
    if (start == std::string_view::npos || (text[start] != '[' && text[start] != '{'))
        return;
    opening_ = text[start];
    position_ = start + 1;
    // The parser would take a null byte for the end of the text.
    if (!text.contains('\0'))
        state_ = State::open;
}

std::optional<std::string> JsonSlices::next()
{
    if (state_ != State::open)
        return std::nullopt;
    const auto end = sliceEnd();
    const auto elements = text_.substr(position_, end - position_);
    const bool isFirst = text_[position_ - 1] == opening_;
    const bool isLast = end == text_.size() || text_[end] != ',';
    const bool isBlank = elements.find_first_not_of(blanks) == std::string_view::npos;
    const bool isClosed = end < text_.size() && text_[end] == closing() &&
                          text_.find_first_not_of(blanks, end + 1) == std::string_view::npos;

    // Between two commas, or a comma and a bracket, there must be something.
    const bool isMalformed = (isLast && !isClosed) || (isBlank && !(isFirst && isLast));
    if (isMalformed || isLast)
        state_ = isMalformed ? State::malformed : State::complete;
    if (isMalformed)
        return std::nullopt;
    position_ = end + 1;

    std::string slice;
    slice.reserve(elements.size() + 2);
    return (slice += opening_).append(elements) += closing();
}

/// The place of the comma or bracket behind the slice that begins at `position_`; the size of the text without one.
/// Brackets of both kinds count alike: a slice whose own do not match is for the parser to refuse.
std::size_t JsonSlices::sliceEnd() const
{
    std::size_t depth = 1;
    bool inString = false;
    for (auto i = position_; i < text_.size(); ++i) {
        const char c = text_[i];
        if (inString) {
            if (c == '\\')
                ++i;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            ++depth;
        } else if (c == ']' || c == '}') {
            if (--depth == 0)
                return i;
        } else if (c == ',' && depth == 1 && i - position_ >= size_) {
            return i;
        }
    }
    return text_.size();
}

} // namespace corvane

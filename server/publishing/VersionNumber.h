#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace corvane::server {

/// A version as it is published: one to four numbers with dots between them. A missing number counts as 0.
class VersionNumber {
public:
    static std::optional<VersionNumber> parse(std::string_view text);

    std::strong_ordering operator<=>(const VersionNumber& other) const { return numbers_ <=> other.numbers_; }
    bool operator==(const VersionNumber& other) const = default;

private:
    std::vector<std::int64_t> numbers_; // without zeros at the end
};

} // namespace corvane::server

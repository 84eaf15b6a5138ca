#include "updates/VersionOrder.h"

#include "base/Text.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace corvane {
namespace {

/// Reads the numbers of a version one by one.
class VersionNumbers {
public:
    explicit VersionNumbers(std::string_view version) : rest_(version) {}

    /// The next number; empty after the last one.
    std::optional<std::int64_t> next()
    {
        while (!rest_.empty()) {
            const auto piece = rest_.substr(0, rest_.find('.'));
            rest_.remove_prefix(std::min(piece.size() + 1, rest_.size()));
            if (const auto number = strictInteger(piece))
                return number;
        }
        return std::nullopt;
    }

private:
    std::string_view rest_;
};

} // namespace

bool isVersionNewer(std::string_view version, std::string_view than)
{
    VersionNumbers left(version);
    VersionNumbers right(than);
    while (true) {
        const auto a = left.next();
        const auto b = right.next();
        if (!a && !b)
            return false;
        if (a.value_or(0) != b.value_or(0))
            return a.value_or(0) > b.value_or(0);
    }
}

} // namespace corvane

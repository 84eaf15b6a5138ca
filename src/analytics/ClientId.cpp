#include "analytics/ClientId.h"

#include <chrono>
#include <cstdint>
#include <string_view>

#include <fmt/format.h>

namespace corvane {
namespace {

constexpr std::string_view clientIdKey = "AnalyticsClientId";
constexpr std::string_view releaseEnding = "_rel";
constexpr std::string_view debugEnding = "_dbg";

/// Bernstein's hash, djb2, in 64 bits.
std::uint64_t djb2(std::string_view bytes)
{
    std::uint64_t hash = 5381;
    for (const char c : bytes)
        hash = hash * 33 + static_cast<unsigned char>(c);
    return hash;
}

/// Two runs of digits with a dot between them, as client identifiers of the collection service look.
std::string derivedBase(const HostInfo& host, const Clock& clock)
{
    static constexpr std::size_t fewestDigitsToSplit = 11;
    const auto digits = fmt::to_string(djb2(host.hostName() + "_" + host.loginName()));
    if (digits.size() >= fewestDigitsToSplit) {
        const auto half = digits.size() / 2;
        return digits.substr(0, half) + "." + digits.substr(half);
    }
    const auto now = std::chrono::floor<std::chrono::seconds>(clock.now().time_since_epoch());
    return fmt::format("{}.{}", digits, now.count() % 1'000'000'000);
}

} // namespace

std::string makeClientId(DefaultsStore& defaults, const HostInfo& host, const Clock& clock)
{
    auto base = defaults.string(clientIdKey);
    if (!base) {
        base = derivedBase(host, clock);
        defaults.setString(clientIdKey, *base);
    }
    if (base->ends_with(releaseEnding))
        return *base;
    if (base->ends_with(debugEnding))
        base->resize(base->size() - debugEnding.size());
    *base += releaseEnding;
    return *base;
}

} // namespace corvane

#pragma once

#include <cstdint>
#include <functional>

namespace corvane {

/// Gives 64 random bits at each call.
using RandomBits = std::function<std::uint64_t()>;

/// 64 bits from the system's random source.
std::uint64_t systemRandomBits();

} // namespace corvane

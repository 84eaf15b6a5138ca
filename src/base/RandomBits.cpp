#include "base/RandomBits.h"

#include <random>

namespace corvane {

std::uint64_t systemRandomBits()
{
    static_assert(std::random_device::max() == 0xFFFFFFFFU);
    std::random_device source;
    const std::uint64_t high = source();
    return (high << 32U) | source();
}

} // namespace corvane

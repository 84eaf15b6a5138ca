#include "refresh/Jitter.h"

#include <algorithm>

namespace corvane {
namespace {

constexpr double smallest = 0.85;
constexpr double largest = 1.15;

/// An integer from 0 to 2^53, both included, each as likely as any other: draws above are thrown away.
std::uint64_t evenDraw(const RandomBits& randomBits)
{
    static constexpr std::uint64_t last = std::uint64_t{1} << 53U;
    static constexpr std::uint64_t mask = (last << 1U) - 1;
    while (true) {
        const auto draw = randomBits() & mask;
        if (draw <= last)
            return draw;
    }
}

double randomFactor(const RandomBits& randomBits)
{
    const double part = static_cast<double>(evenDraw(randomBits)) * 0x1p-53;
    return part == 1.0 ? largest : smallest + part * (largest - smallest);
}

} // namespace

std::chrono::duration<double> jittered(std::chrono::duration<double> base, const RandomBits& randomBits)
{
    return std::max<std::chrono::duration<double>>(base * randomFactor(randomBits), std::chrono::seconds(1));
}

} // namespace corvane

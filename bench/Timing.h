#pragma once

#include <algorithm>
#include <chrono>
#include <limits>

namespace corvane::bench {

using Nanoseconds = std::chrono::duration<double, std::nano>;

/// Keeps the compiler from leaving out work whose result nobody reads.
template <typename T>
void keep(const T& value)
{
    asm volatile("" : : "g"(&value) : "memory");
}

/// The fastest of many runs: what the work costs when nothing else disturbs it. Runs for about 0.4 s.
template <typename Work>
Nanoseconds fastest(Work work)
{
    using Clock = std::chrono::steady_clock;
    auto best = Nanoseconds(std::numeric_limits<double>::max());
    const auto end = Clock::now() + std::chrono::milliseconds(400);
    int runs = 0;
    while (runs < 3 || Clock::now() < end) {
        const auto start = Clock::now();
        work();
        best = std::min(best, Nanoseconds(Clock::now() - start));
        ++runs;
    }
    return best;
}

} // namespace corvane::bench

#include "Target.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include <fmt/format.h>

namespace corvane::fuzz {

void require(bool holds, std::string_view claim)
{
    if (holds)
        return;
    fmt::print(stderr, "fuzz: does not hold: {}\n", claim);
    std::abort();
}

} // namespace corvane::fuzz

/// What libFuzzer calls with each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // A null pointer stands for the empty input.
    corvane::fuzz::readInput(size == 0 ? std::string_view()
                                       : std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}

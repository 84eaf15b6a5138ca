#include "base/Uuid.h"

#include <array>
#include <random>

#include <fmt/format.h>

namespace corvane {

std::string randomUuid()
{
    std::random_device source;
    std::array<std::uint32_t, 4> words{source(), source(), source(), source()};
    words[1] = (words[1] & 0xFFFF0FFFU) | 0x00004000U;
    words[2] = (words[2] & 0x3FFFFFFFU) | 0x80000000U;
    return fmt::format("{:08x}-{:04x}-{:04x}-{:04x}-{:04x}{:08x}", words[0], words[1] >> 16U, words[1] & 0xFFFFU,
                       words[2] >> 16U, words[2] & 0xFFFFU, words[3]);
}

} // namespace corvane

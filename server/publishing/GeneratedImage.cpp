#include "publishing/GeneratedImage.h"

#include "base/Json.h"
#include "store/Secret.h"

#include <algorithm>
#include <cassert>

namespace corvane::server {
namespace {

constexpr std::uint64_t bytesInWord = 8;

/// The word at `index` of the sequence that `seed` begins (SplitMix64: Steele, Lea and Flood, 2014).
std::uint64_t wordAt(std::uint64_t seed, std::uint64_t index)
{
    std::uint64_t word = seed + (index + 1) * 0x9e3779b97f4a7c15;
    word = (word ^ (word >> 30)) * 0xbf58476d1ce4e5b9;
    word = (word ^ (word >> 27)) * 0x94d049bb133111eb;
    return word ^ (word >> 31);
}

} // namespace

GeneratedImage::GeneratedImage(std::string_view name, std::uint64_t size)
    : seed_(std::stoull(digestOf(name).substr(0, 16), nullptr, 16)), size_(size)
{
    assert(size > 0 && size <= largest);
}

std::optional<GeneratedImage> GeneratedImage::fromNote(std::string_view name, std::string_view note)
{
    const auto document = parseJson(note);
    const auto* size = document ? member(*document, "size") : nullptr;
    const auto bytes = size != nullptr && size->is_number_integer() ? integerOf(*size) : std::nullopt;
    if (!bytes || *bytes < 1 || static_cast<std::uint64_t>(*bytes) > largest)
        return std::nullopt;
    return GeneratedImage(name, static_cast<std::uint64_t>(*bytes));
}

std::string GeneratedImage::note() const
{
    return compactJson({{"size", size_}}) + "\n";
}

std::string GeneratedImage::read(std::uint64_t offset, std::size_t count) const
{
    if (offset >= size_)
        return {};
    std::string bytes(static_cast<std::size_t>(std::min<std::uint64_t>(count, size_ - offset)), '\0');
    std::uint64_t word = wordAt(seed_, offset / bytesInWord);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto position = offset + i;
        if (position % bytesInWord == 0)
            word = wordAt(seed_, position / bytesInWord);
        bytes[i] = static_cast<char>(word >> (position % bytesInWord * 8));
    }
    return bytes;
}

} // namespace corvane::server

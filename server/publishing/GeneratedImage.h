#pragma once

#include "publishing/ByteSource.h"

#include <optional>
#include <string_view>

namespace corvane::server {

/// An installer image that lies nowhere: its bytes follow from its name and its size, so that a download of any length
/// can be tried. It is published where a file "NAME" is missing and a file "NAME.generated.json" says {"size": BYTES}.
class GeneratedImage final : public ByteSource {
public:
    static constexpr std::string_view noteSuffix = ".generated.json";
    static constexpr std::uint64_t largest = std::uint64_t{16} * 1024 * 1024 * 1024;

    /// `name` is the file name without folders, `size` between 1 and `largest`.
    GeneratedImage(std::string_view name, std::uint64_t size);

    /// The image that a note describes; nothing when the note does not name a size in range.
    static std::optional<GeneratedImage> fromNote(std::string_view name, std::string_view note);

    /// What the note of this image holds.
    std::string note() const;

    std::uint64_t size() const override { return size_; }
    std::string read(std::uint64_t offset, std::size_t count) const override;

private:
    std::uint64_t seed_;
    std::uint64_t size_;
};

} // namespace corvane::server

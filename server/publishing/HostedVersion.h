#pragma once

#include "base/Error.h"

#include <filesystem>
#include <optional>
#include <string>

namespace corvane::server {

/// What the version file of a publish folder says: {"version", "released", "downloadURL", "sha256"}. All but the
/// version may be empty and is then left out.
struct HostedVersion {
    std::string version;
    std::string released; // a day as release notes write it
    std::string downloadUrl;
    std::string sha256; // of the image at the link, in hexadecimal

    /// Nothing when there is no such file; a failure when its version cannot be read.
    static Result<std::optional<HostedVersion>> read(const std::filesystem::path& file);

    std::string document() const;
};

} // namespace corvane::server

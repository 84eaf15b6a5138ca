#pragma once

#include "base/Url.h"

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// What the version file of the publishing server says.
struct HostedVersion {
    std::string version;            // never empty
    std::optional<Url> downloadURL; // loadable

    /// What the file at `downloadURL` must hash to, as hexadecimal text. A value that is neither text nor null is kept
    /// as an empty one, which nothing matches.
    std::optional<std::string> sha256;

    bool operator==(const HostedVersion&) const = default;
};

/// Reads a version file: a JSON object with "version" and, optional, "downloadURL" and "sha256". Empty when there is no
/// version in it; a link of another form, or to a script, counts as absent.
std::optional<HostedVersion> decodeHostedVersion(std::string_view bytes);

/// Reads a store's look-up answer: the "version" of the first of its "results". Empty for any other form.
std::optional<std::string> decodeStoreVersion(std::string_view bytes);

} // namespace corvane

#pragma once

#include <filesystem>
#include <optional>

namespace corvane {

/// Where this program's files lie.
struct Places {
    std::filesystem::path data;     // sites/, settings/, Updates/, web/
    std::filesystem::path cache;    // the web engine's cache
    std::filesystem::path defaults; // the file of the defaults store

    /// The user's folder for downloads, where there is one.
    std::optional<std::filesystem::path> downloads = std::nullopt;

    std::filesystem::path sites() const { return data / "sites"; }
    std::filesystem::path settings() const { return data / "settings"; }
    std::filesystem::path updates() const { return data / "Updates"; }
    std::filesystem::path webData() const { return data / "web"; }
};

} // namespace corvane

#pragma once

#include <filesystem>

namespace corvane {

/// Where this program's files lie.
struct Places {
    std::filesystem::path data;     // sites/, settings/, Updates/, web/
    std::filesystem::path cache;    // the web engine's cache
    std::filesystem::path defaults; // the file of the defaults store

    std::filesystem::path webData() const { return data / "web"; }
};

} // namespace corvane

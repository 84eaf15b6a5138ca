#pragma once

#include <string>

namespace corvane {

/// One service of the catalogue.
struct Site {
    std::string service; // the name, which is also the identity
    std::string url;     // of the start page, as text: read as an address only when the service is chosen
    std::string description;

    bool operator==(const Site&) const = default;
};

} // namespace corvane

#pragma once

#include <string>

namespace corvane::server {

/// One installation of the application as it describes itself.
struct Device {
    std::string installId; // a UUID in lower case
    std::string platform;
    std::string product;
    std::string appVersion; // empty when unknown
};

} // namespace corvane::server

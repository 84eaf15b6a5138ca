#pragma once

#include "ports/Endpoints.h"

#include <map>
#include <string>

namespace corvane::testing {

/// The endpoints of a build whose notification and publishing servers stand at these addresses.
inline Endpoints endpointsAt(const std::string& notification = "http://127.0.0.1:3002/",
                             const std::string& publishing = "http://127.0.0.1:3002/")
{
    std::vector<std::string> refused;
    const std::map<std::string, std::string, std::less<>> environment{{"CORVANE_NOTIFICATION_URL", notification},
                                                                      {"CORVANE_PUBLISHING_URL", publishing}};
    return Endpoints::read(
        [&](const char* name) -> std::optional<std::string> {
            const auto found = environment.find(std::string_view(name));
            return found == environment.end() ? std::nullopt : std::optional(found->second);
        },
        refused);
}

} // namespace corvane::testing

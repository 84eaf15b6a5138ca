#include "Environment.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <optional>
#include <vector>

#include <fmt/format.h>

namespace corvane::probe {

Endpoints endpoints()
{
    std::vector<std::string> refused;
    auto read = Endpoints::read(
        [](const char* name) {
            const char* value = std::getenv(name);
            return value == nullptr ? std::nullopt : std::optional<std::string>(value);
        },
        refused);
    for (const auto& name : refused)
        fmt::print(stderr, "corvane-probe: {} is no http or https address; the built-in one is used.\n", name);
    return read;
}

std::string standardInput()
{
    return {std::istreambuf_iterator(std::cin), {}};
}

} // namespace corvane::probe

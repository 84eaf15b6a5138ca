#pragma once

#include <span>
#include <string>
#include <string_view>

namespace corvane::probe {

/// What is done once on request. Each prints its answer and gives the exit status: 0 when it was done, else 1.
struct Command {
    std::string_view name;
    std::size_t fewest; // arguments
    std::size_t most;
    int (*run)(std::span<const std::string> arguments);
};

/// Null for a name that is no command.
const Command* commandNamed(std::string_view name);

} // namespace corvane::probe

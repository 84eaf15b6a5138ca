#pragma once

#include "ports/Endpoints.h"

#include <string>

namespace corvane::probe {

/// The servers' addresses of this build, with the overrides of the environment.
Endpoints endpoints();

/// Everything that can be read from the standard input.
std::string standardInput();

} // namespace corvane::probe

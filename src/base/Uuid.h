#pragma once

#include <string>

namespace corvane {

/// A new random UUID (RFC 4122, version 4) in its canonical lower-case text form, from the system's random source.
std::string randomUuid();

} // namespace corvane

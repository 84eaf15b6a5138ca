#pragma once

#include "base/RandomBits.h"

#include <chrono>

namespace corvane {

/// `base` times a factor drawn evenly from 0.85 to 1.15, both included, and at least a second: so that many
/// installations do not ask their servers in step.
std::chrono::duration<double> jittered(std::chrono::duration<double> base, const RandomBits& randomBits);

} // namespace corvane

#pragma once

#include <string_view>

namespace corvane::fuzz {

/// Hands bytes from outside to readers of the program and requires of the outcome what must hold for any bytes. Every
/// fuzz program has its own.
void readInput(std::string_view bytes);

/// Ends the program unless `holds`: the input is a find. `claim` says what is broken then.
void require(bool holds, std::string_view claim);

} // namespace corvane::fuzz

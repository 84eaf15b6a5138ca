#pragma once

#include <span>
#include <string>

namespace corvane::probe {

/// PATH: the standard input becomes that file.
int save(std::span<const std::string> arguments);

/// HOME: the standard input is the published catalogue that the user of that home accepts.
int apply(std::span<const std::string> arguments);

/// HOME: what a start of the program clears away there.
int sweep(std::span<const std::string> arguments);

/// KEY VALUE: keeps a text in the defaults of this user. VALUE "-" is the standard input.
int setDefault(std::span<const std::string> arguments);

/// KEY: the text that this user's defaults hold, or null.
int getDefault(std::span<const std::string> arguments);

} // namespace corvane::probe

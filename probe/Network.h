#pragma once

#include <span>
#include <string>

namespace corvane::probe {

/// KIND URL: one request within the limits of its kind, "json" or "page".
int fetch(std::span<const std::string> arguments);

/// URL FOLDER [SHA256]: the installer image at an address, with FOLDER for the user's downloads.
int download(std::span<const std::string> arguments);

/// FILE: shows the file to this machine until the standard input ends.
int servePage(std::span<const std::string> arguments);

} // namespace corvane::probe

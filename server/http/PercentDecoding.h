#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvane::server {

/// The text behind `encoded`, whose every "%" must begin a well-formed %XX. Nothing when it is malformed, holds a NUL
/// or is not UTF-8.
std::optional<std::string> percentDecoded(std::string_view encoded);

} // namespace corvane::server

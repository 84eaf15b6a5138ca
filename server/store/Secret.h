#pragma once

#include <string>
#include <string_view>

namespace corvane::server {

/// `byteCount` bytes from the system's random source in lower-case hexadecimal.
std::string randomSecret(std::size_t byteCount);

/// What is stored of a secret: its SHA-256 digest in lower-case hexadecimal.
std::string digestOf(std::string_view secret);

} // namespace corvane::server

#pragma once

#include "publishing/ByteSource.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace corvane::server {

/// Hands all bytes of `source` to `take`, piece by piece, and gives their SHA-256 in lower-case hexadecimal. Nothing
/// when the source ends early or `take` says false.
std::optional<std::string> sha256Of(const ByteSource& source, const std::function<bool(std::string_view)>& take);

} // namespace corvane::server

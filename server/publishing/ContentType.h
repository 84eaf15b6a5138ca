#pragma once

#include <string_view>

namespace corvane::server {

/// The media type for a file of this name, by its extension in any case; "application/octet-stream" when unknown.
std::string_view contentTypeOf(std::string_view fileName);

} // namespace corvane::server

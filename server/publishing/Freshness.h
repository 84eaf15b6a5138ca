#pragma once

#include "http/HttpRequest.h"
#include "publishing/OpenFile.h"

#include <string>

namespace corvane::server {

/// The strong entity tag of a file in its present state (RFC 9110, 8.8.3).
std::string entityTag(const OpenFile& file);

/// A time as HTTP writes it, in whole seconds (RFC 9110, 5.6.7).
std::string httpDate(OpenFile::TimePoint time);

/// Whether the client's copy is still good: by If-None-Match when it was sent, else by If-Modified-Since.
bool isFresh(const HttpRequest& request, const OpenFile& file);

} // namespace corvane::server

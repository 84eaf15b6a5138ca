#pragma once

#include "ports/HttpClient.h"

#include <string_view>

namespace corvane {

/// Whether an answer with this status sends the client on to its Location.
bool isRedirect(int status);

/// The request that follows a redirect of `request` to `location`, an absolute address or a reference relative to the
/// request's own (RFC 9110, 10.2.2). A 301, 302 or 303 turns POST into GET; credentials stay with their origin.
/// Fails for what the strict reader refuses, for every scheme but http and https, and from https to http.
Result<HttpRequest> redirected(HttpRequest request, int status, std::string_view location);

} // namespace corvane

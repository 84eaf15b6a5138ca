#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvane::server {

/// What this server looks at of a request. A header that was not sent is empty.
struct HttpRequest {
    std::string method;
    std::string path;  // percent-encoded as sent, begins with "/"
    std::string query; // percent-encoded, without the "?"
    std::string body;

    std::string host;
    std::string origin;
    std::string contentType;
    std::string cookie;
    std::string ifNoneMatch;
    std::string ifModifiedSince;
    std::string userAgent;

    bool isReading() const { return method == "GET" || method == "HEAD"; }

    /// The decoded value of a query item that occurs exactly once; nothing when it is missing, repeated or malformed.
    std::optional<std::string> queryValue(std::string_view name) const;

    /// The value of the first cookie of this name; empty when there is none.
    std::string cookieValue(std::string_view name) const;
};

} // namespace corvane::server

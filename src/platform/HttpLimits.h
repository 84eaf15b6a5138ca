#pragma once

#include "ports/HttpClient.h"

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace corvane {

/// How long and how much an HTTP client waits for. Past a limit the request has failed.
struct HttpLimits {
    std::chrono::seconds silence{60};
    std::chrono::milliseconds total{std::chrono::minutes(2)}; // of a document; a download may take longer
    std::size_t jsonBody = bytesOf(BodyLimit::json);          // bytes, decoded
    std::size_t pageBody = bytesOf(BodyLimit::page);          // bytes, decoded
    std::uint64_t download = std::uint64_t{4} << 30U;         // bytes, decoded
    int redirects = 20;

    std::size_t body(BodyLimit limit) const { return limit == BodyLimit::json ? jsonBody : pageBody; }
};

} // namespace corvane

#pragma once

#include "async/Task.h"
#include "base/Error.h"
#include "base/Url.h"
#include "ports/ByteSink.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace corvane {

enum class HttpMethod : std::uint8_t { get, post };

/// How large a decoded body may grow before the request counts as failed.
enum class BodyLimit : std::uint8_t { json, page };

constexpr std::size_t bytesOf(BodyLimit limit)
{
    return std::size_t{limit == BodyLimit::json ? 4U : 8U} << 20U;
}

struct HttpRequest {
    Url url;
    HttpMethod method = HttpMethod::get;
    std::vector<std::pair<std::string, std::string>> headers = {};
    std::string body = {};
    BodyLimit limit = BodyLimit::json;
};

struct HttpResponse {
    int status = 0;
    std::string body; // decoded

    bool isSuccess() const { return status >= 200 && status < 300; }
};

/// How far a download has come, in bytes as they are stored.
struct DownloadProgress {
    std::uint64_t received = 0;
    std::optional<std::uint64_t> total; // as the server announced it
};

using DownloadObserver = std::function<void(const DownloadProgress&)>;

/// The one way to the network. Requests carry no cookies and are never answered from a cache. Follows at most 20
/// redirects, never from https to http. A request fails after 60 seconds of silence, after 120 seconds in all, past its
/// body limit, on a certificate that does not hold, and for every scheme but http and https.
class HttpClient {
public:
    virtual ~HttpClient() = default;

    /// A 4xx or 5xx status is an answer, not a failure. Destroying the task cancels the request.
    virtual Task<Result<HttpResponse>> send(HttpRequest request) = 0;

    /// Fetches a body of at most 4 GiB into `sink` and answers with the status; of an answer that is no success nothing
    /// is written. There is no limit to the time in all. A sink that fails fails the download in its own words. `sink`
    /// must outlive the task; `observer` may be empty.
    virtual Task<Result<int>> download(Url url, ByteSink* sink, DownloadObserver observer) = 0;
};

} // namespace corvane

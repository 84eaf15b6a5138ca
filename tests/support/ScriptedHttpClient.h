#pragma once

#include "ports/HttpClient.h"

#include <coroutine>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace corvane::testing {

/// A network whose answers a test writes: each request waits until the test answers it, or is answered at once by the
/// `respond` rule when that is set.
class ScriptedHttpClient final : public HttpClient {
public:
    using Answer = Result<HttpResponse>;

    Task<Answer> send(HttpRequest request) override;

    /// A download waits like any other request. The body of a successful answer goes to its sink in two pieces.
    Task<Result<int>> download(Url url, ByteSink* sink, DownloadObserver observer) override;

    /// Answers every later request at once.
    std::function<Answer(const HttpRequest&)> respond;

    /// Every request so far, answered or not, cancelled or not.
    const std::vector<HttpRequest>& requests() const { return requests_; }

    /// Answers the request with this number in `requests()`. False when it was cancelled or answered before.
    bool answer(std::size_t index, Answer answer);

    /// Requests that still wait.
    std::size_t waiting() const { return waiting_.size(); }

private:
    class UntilAnswered;

    std::vector<HttpRequest> requests_;
    std::vector<UntilAnswered*> waiting_;
};

} // namespace corvane::testing

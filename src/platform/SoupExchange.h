#pragma once

#include "async/Task.h"
#include "platform/GLibHandle.h"
#include "ports/HttpClient.h"

#include <cstdint>
#include <optional>

#include <libsoup/soup.h>

namespace corvane {

/// The answer that a request has led to after all redirects. Its headers have arrived, its body has not.
struct SoupAnswer {
    GObjectPtr<SoupMessage> message;
    GObjectPtr<GInputStream> body;            // as it travels
    bool isChunked = false;                   // the body
    std::optional<std::uint64_t> length = {}; // of the body, as announced

    int status() const;
    bool isCompressed() const;
};

/// Sends `request` and follows at most `redirects` redirects.
Task<Result<SoupAnswer>> finalAnswer(GObjectPtr<SoupSession> session, HttpRequest request, int redirects,
                                     GObjectPtr<GCancellable> cancellable);

/// Hands the decoded body of `answer` to `sink` in small pieces and tells `observer`, which may be empty, after each.
/// Fails past `largest` bytes, at once where the answer announces more.
Task<Result<void>> receive(SoupAnswer answer, ByteSink* sink, std::uint64_t largest, DownloadObserver observer,
                           GObjectPtr<GCancellable> cancellable);

} // namespace corvane

#pragma once

#include "platform/GLibHandle.h"
#include "platform/HttpLimits.h"
#include "ports/HttpClient.h"

#include <string_view>

#include <libsoup/soup.h>

namespace corvane {

/// HTTP by libsoup on the main loop of the calling thread. Tasks that still run when the client goes fail.
class SoupHttpClient final : public HttpClient {
public:
    /// Names itself "Corvane/`version`" to servers.
    explicit SoupHttpClient(std::string_view version, HttpLimits limits = {});
    SoupHttpClient(const SoupHttpClient&) = delete;
    SoupHttpClient& operator=(const SoupHttpClient&) = delete;
    ~SoupHttpClient() override;

    Task<Result<HttpResponse>> send(HttpRequest request) override;
    Task<Result<int>> download(Url url, ByteSink* sink, DownloadObserver observer) override;

private:
    HttpLimits limits_;
    GObjectPtr<SoupSession> session_;
};

} // namespace corvane

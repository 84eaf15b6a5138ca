#pragma once

#include <string>
#include <thread>

#include <libsoup/soup.h>

namespace corvane::bench {

/// Serves one document at every address on 127.0.0.1, from a thread and a main loop of its own.
class LoopbackServer {
public:
    explicit LoopbackServer(std::string document);
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;
    ~LoopbackServer();

    /// The address of `path`; empty when the server could not be started.
    std::string url(std::string_view path) const;

private:
    std::string document_;
    GMainContext* context_ = g_main_context_new();
    GMainLoop* loop_ = g_main_loop_new(context_, FALSE);
    std::string base_;
    std::thread thread_;
};

} // namespace corvane::bench

#pragma once

#include <cstddef>

#include <libsoup/soup.h>

namespace corvane::server {

/// Watches the body of one request while it arrives: past `longest` bytes nothing more is kept, and a sender who goes
/// on and on is cut off. Lives as long as the message.
class BodyLimit {
public:
    /// Called when the headers have come. A body that is announced too long is answered at once.
    static void watch(SoupServerMessage* message, std::size_t longest);

    /// Whether more has come than the limit allows.
    static bool isExceeded(SoupServerMessage* message);

private:
    explicit BodyLimit(std::size_t longest) : longest_(longest) {}

    static void onChunk(SoupServerMessage* message, GBytes* chunk, void* self);

    std::size_t longest_;
    std::size_t received_ = 0;
};

} // namespace corvane::server

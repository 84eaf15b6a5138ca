#pragma once

#include "platform/GLibHandle.h"
#include "platform/SignalConnection.h"

#include <cstdint>
#include <optional>

#include <libsoup/soup.h>

namespace corvane {

/// Reads how the body of an answer is delimited, before libsoup does: libsoup takes an answer that was cut off for a
/// whole one where the server closes the connection or breaks off between two chunks, and odd numbers for others.
/// Chunks are left for `ChunkedSink` to undo. Holds the message weakly.
class AnswerHead {
public:
    /// `cancellable` ends the request when interim answers never end.
    AnswerHead(SoupMessage* message, GObjectPtr<GCancellable> cancellable);
    AnswerHead(const AnswerHead&) = delete;
    AnswerHead& operator=(const AnswerHead&) = delete;

    /// To be called once the answer's stream is there: HTTP/2 tells the status before the other headers.
    void arrived();

    /// Whether it contradicts itself, says what nobody can mean, or never comes; no body is to be read then.
    bool isBroken() const { return isBroken_; }

    /// Whether the body arrives in chunks (RFC 9112, 7.1).
    bool isChunked() const { return isChunked_; }

    /// The length of the body as it travels, in bytes, where it is announced.
    std::optional<std::uint64_t> length() const { return length_; }

private:
    static constexpr int mostInterimAnswers = 100;

    void statusChanged(GParamSpec* property);
    bool isFramed() const; // as HTTP/2 is: no chunks, and the engine of the protocol compares the length
    void readLength(SoupMessageHeaders* headers);

    SoupMessage* message_; // valid whenever a signal of its own arrives
    GObjectPtr<GCancellable> cancellable_;
    bool isBroken_ = false;
    bool isChunked_ = false;
    std::optional<std::uint64_t> length_;
    int interimAnswers_ = 0;
    SignalConnection statusChanged_;
};

} // namespace corvane

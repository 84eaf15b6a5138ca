#pragma once

#include "platform/GLibHandle.h"
#include "ports/ByteSink.h"

#include <gio/gio.h>

namespace corvane {

/// Undoes gzip (RFC 1952), members one after another: takes the compressed bytes and hands on the others in pieces.
/// Never holds more than one of these.
class GzipSink final : public ByteSink {
public:
    /// `next` must outlive this object.
    explicit GzipSink(ByteSink& next);

    Result<void> write(std::string_view bytes) override;

    /// Whether no member has begun that has not ended.
    bool isComplete() const { return isComplete_; }

private:
    ByteSink& next_;
    GObjectPtr<GConverter> decompressor_;
    bool isComplete_ = true;
};

} // namespace corvane

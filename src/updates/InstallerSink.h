#pragma once

#include "ports/FileStore.h"
#include "ports/IncomingFile.h"
#include "ports/Places.h"

#include <memory>
#include <string_view>

namespace corvane {

/// Takes an installer image as it arrives, near where it is likely to be stored. No file exists before there are bytes
/// for it, so that a failed request is told before any trouble with folders.
class InstallerSink final : public ByteSink {
public:
    /// All must outlive this object.
    InstallerSink(FileStore& files, IncomingFiles& incoming, const Places& places)
        : files_(files), incoming_(incoming), places_(places)
    {
    }

    Result<void> write(std::string_view bytes) override;

    /// The file with all bytes so far; an image without any is an empty file.
    Result<IncomingFile*> file();

private:
    Result<std::unique_ptr<IncomingFile>> create();

    FileStore& files_;
    IncomingFiles& incoming_;
    const Places& places_;
    std::unique_ptr<IncomingFile> file_;
};

} // namespace corvane

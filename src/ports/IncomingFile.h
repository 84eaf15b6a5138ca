#pragma once

#include "async/Task.h"
#include "ports/ByteSink.h"

#include <filesystem>
#include <memory>
#include <string>

namespace corvane {

/// A large file that arrives piece by piece. It is temporary, and goes with this object, until it has been moved to its
/// place.
class IncomingFile : public ByteSink {
public:
    /// The SHA-256 of all bytes so far, in lower-case hexadecimal.
    virtual std::string sha256() const = 0;

    /// Makes it the file `target`, which everybody may read and nobody may execute (0644), on whatever file system that
    /// lies. After a failure it can be moved elsewhere. The object outlives the task.
    virtual Task<Result<void>> moveTo(std::filesystem::path target) = 0;
};

/// Makes incoming files.
class IncomingFiles {
public:
    virtual ~IncomingFiles() = default;

    /// A new, empty one in an existing folder.
    virtual Result<std::unique_ptr<IncomingFile>> create(const std::filesystem::path& folder) = 0;
};

} // namespace corvane

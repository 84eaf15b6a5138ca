#pragma once

#include "platform/FileDescriptor.h"

#include <filesystem>

#include <sys/types.h>

namespace corvane {

/// A new file under a name of its own, for this user only (0600), locked against being swept. It is removed when this
/// object goes, unless it has been given its place. errno is kept by that.
class TemporaryFile {
public:
    /// Opens with `access` of open(2); when that fails the object is empty and errno says why.
    TemporaryFile(const std::filesystem::path& folder, int access);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    explicit operator bool() const { return static_cast<bool>(file_); }
    FileDescriptor& file() { return file_; }

    /// Sets the mode whatever the umask. False when that fails, and errno says why.
    bool setMode(mode_t mode);

    /// Becomes the file `target` of the same file system, in place of what bears that name. False when that fails, and
    /// errno says why; the file is then temporary as before.
    bool becomes(const std::filesystem::path& target);

private:
    std::filesystem::path path_; // empty once the file has its place
    FileDescriptor file_;
};

/// A new name in `folder` that is swept when a killed run leaves it there.
std::filesystem::path temporaryName(const std::filesystem::path& folder);

/// Removes temporary files that a killed run of this user left in `folder` more than a minute ago. A file that is still
/// open in any process stays, however old it looks.
void sweepTemporaryFiles(const std::filesystem::path& folder);

} // namespace corvane

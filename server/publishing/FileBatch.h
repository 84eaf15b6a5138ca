#pragma once

#include "base/Error.h"
#include "publishing/ByteSource.h"
#include "publishing/FileDescriptor.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::server {

/// A change of several files of a published folder that happens whole or not at all. What is put lies beside its place
/// under a name that is not published, until `commit` renames it there; a failure puts everything back. A program that
/// is killed in the middle of `commit` leaves the files that were put first, each of them whole. While a batch exists,
/// no other one can be made for the same folder.
class FileBatch {
public:
    static Result<FileBatch> open(const std::filesystem::path& folder);

    FileBatch(FileBatch&&) = default;
    FileBatch& operator=(FileBatch&&) = delete;
    ~FileBatch();

    const std::filesystem::path& folder() const { return folder_; }

    /// `place` is relative to the folder; folders on the way to it are made.
    Result<void> put(const std::filesystem::path& place, std::string_view bytes);

    /// The same with the bytes of a source; gives their SHA-256 in hexadecimal.
    Result<std::string> put(const std::filesystem::path& place, const ByteSource& source);

    /// Puts everything in its place, in the order in which it was put.
    Result<void> commit();

private:
    struct Change {
        std::filesystem::path place;
        std::filesystem::path fresh;    // the new file until it is in its place
        std::filesystem::path previous; // a second name of the old file; empty when there was none
    };

    FileBatch(std::filesystem::path folder, FileDescriptor lock) : folder_(std::move(folder)), lock_(std::move(lock)) {}
    Result<FileDescriptor> addFresh(const std::filesystem::path& place);
    Result<void> makeFolder(const std::filesystem::path& folder);
    void undo(std::size_t count);

    std::filesystem::path folder_;
    FileDescriptor lock_;
    std::vector<Change> changes_;
    std::vector<std::filesystem::path> madeFolders_;
    bool committed_ = false;
};

} // namespace corvane::server

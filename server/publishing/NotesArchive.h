#pragma once

#include "base/Error.h"
#include "publishing/FileBatch.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace corvane::server {

/// Earlier release notes, and the index.json that lists them with the newest first:
/// {"archives": [{"file": "name.html", "title": "Text"}]}.
class NotesArchive {
public:
    /// `place` is the archive's folder, relative to the folder of `batch`, which must outlive this object.
    NotesArchive(FileBatch& batch, std::filesystem::path place) : batch_(batch), place_(std::move(place)) {}

    /// Puts a page and the index that begins with it into the batch. A page of that name is replaced and listed once.
    /// Fails when the present index cannot be understood.
    Result<void> add(const std::string& file, std::string_view title, std::string_view page);

    /// A page name made of `stem` that the archive does not have yet.
    std::string unusedName(std::string_view stem) const;

private:
    FileBatch& batch_;
    std::filesystem::path place_;
};

} // namespace corvane::server

#pragma once

#include "catalogue/ArchiveEntry.h"

#include <string_view>
#include <vector>

namespace corvane {

/// Reads the index of earlier release notes: a JSON object whose "archives" is an array of objects with the strings
/// "file", relative to `folder`, and "title". `folder` is the text of an address that ends in "/". An entry without
/// both, or whose address does not parse, is left out; a document of another form has no entries.
std::vector<ArchiveEntry> decodeArchiveIndex(std::string_view bytes, std::string_view folder);

} // namespace corvane

#pragma once

#include "async/Task.h"
#include "catalogue/ArchiveEntry.h"
#include "catalogue/CacheBusting.h"
#include "ports/HttpClient.h"

#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// Fetches documents from a publishing server, past every cache. The status of an answer is not looked at: an error
/// page is a document that does not read. Every failure is an empty answer. Outlives its tasks.
class PublishingClient {
public:
    explicit PublishingClient(HttpClient& http) : http_(http) {}

    /// The bytes at an address, which is given as a text that need not parse.
    Task<std::optional<std::string>> fetch(std::string address, CheckTime time, BodyLimit limit) const;

    /// A page that is well-formed UTF-8 and not empty.
    Task<std::optional<std::string>> fetchPage(std::string address, CheckTime time) const;

    /// The earlier release notes that the "index.json" of a folder lists. `folder` ends in "/".
    Task<std::vector<ArchiveEntry>> fetchArchives(std::string folder, CheckTime time) const;

private:
    HttpClient& http_;
};

} // namespace corvane

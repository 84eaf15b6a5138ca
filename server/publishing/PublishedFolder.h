#pragma once

#include "http/HttpAnswer.h"
#include "http/HttpRequest.h"
#include "publishing/ByteSource.h"
#include "publishing/OpenFile.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace corvane::server {

/// The folder whose files this server publishes as they are. A path is followed one name at a time and never through a
/// symbolic link, so nothing outside the folder can be reached; names that begin with a dot are not published. In JSON
/// and HTML files the text `sampleBase` is replaced by the server's own base, so that the samples work on every port.
class PublishedFolder {
public:
    static constexpr std::string_view sampleBase = "http://127.0.0.1:3002/";

    explicit PublishedFolder(std::filesystem::path folder) : folder_(std::move(folder)) {}

    /// The base under which clients see this server, ending in "/".
    void setBase(std::string base) { base_ = std::move(base); }

    /// Answers a request for a file, a generated image, or a folder that holds an index.html.
    HttpAnswer answer(const HttpRequest& request) const;

    /// The content of a published file of at most `longest` bytes, not adapted. `path` begins with "/".
    std::optional<std::string> text(std::string_view path, std::size_t longest) const;

private:
    struct Found {
        std::shared_ptr<OpenFile> file; // none when a folder was asked for without its final "/"
        std::string name;
    };

    std::optional<Found> find(std::string_view path) const;
    std::shared_ptr<const ByteSource> generatedImage(std::string_view path) const;
    HttpAnswer answerFile(const HttpRequest& request, const Found& found) const;

    std::filesystem::path folder_;
    std::string base_{sampleBase};
};

} // namespace corvane::server

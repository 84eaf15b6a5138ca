#pragma once

#include "http/HttpAnswer.h"
#include "http/HttpRequest.h"
#include "http/Router.h"
#include "publishing/PublishedFolder.h"

#include <string_view>

namespace corvane::server {

/// Answers a store look-up in the form of the iTunes Search API. The one application that this store has is found
/// under every identifier, in the version that the publish folder names, or not at all.
class StoreApi {
public:
    /// A file {"version": "0.76.0"} of the publish folder.
    static constexpr std::string_view versionPath = "/store/version.json";

    /// `published` must outlive this object.
    explicit StoreApi(const PublishedFolder& published) : published_(published) {}

    void addTo(Router& router);

private:
    HttpAnswer lookUp(const HttpRequest& request) const;

    const PublishedFolder& published_;
};

} // namespace corvane::server

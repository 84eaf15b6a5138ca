#pragma once

#include "ports/HttpClient.h"

#include <map>
#include <string>

namespace corvane::testing {

/// A rule for ScriptedHttpClient: answers with these documents, by whole address. Any other address does not answer.
class PublishedDocuments {
public:
    explicit PublishedDocuments(const std::map<std::string, std::string>* documents) : documents_(documents) {}

    Result<HttpResponse> operator()(const HttpRequest& request) const
    {
        const auto found = documents_->find(request.url.text());
        if (found == documents_->end())
            return std::unexpected(Error{"Nobody answers."});
        return HttpResponse{.status = found->second.starts_with("<!DOCTYPE") ? 404 : 200, .body = found->second};
    }

private:
    const std::map<std::string, std::string>* documents_;
};

} // namespace corvane::testing

#pragma once

#include "base/Json.h"
#include "publishing/ByteSource.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane::server {

/// What goes back for a request: a status, headers, and a body in memory or one that is read and sent piece by piece.
/// For HEAD the answer is made as for GET and sent without its body.
struct HttpAnswer {
    unsigned status = 200;
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;
    std::shared_ptr<const ByteSource> content; // takes the place of `body` when set

    static HttpAnswer json(unsigned status, const Json& document);

    /// {"error": code, "message": message}. `code` is a fixed word, `message` a sentence for a person.
    static HttpAnswer error(unsigned status, std::string_view code, std::string_view message);

    static HttpAnswer text(std::string_view contentType, std::string body);

    HttpAnswer&& with(std::string name, std::string value) &&
    {
        headers.emplace_back(std::move(name), std::move(value));
        return std::move(*this);
    }
};

} // namespace corvane::server

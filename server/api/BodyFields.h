#pragma once

#include "base/Json.h"
#include "http/HttpAnswer.h"
#include "http/HttpRequest.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::server {

/// Reads the members of a request's JSON object one after the other and keeps the first complaint. Members that
/// nobody asks for are ignored. Callers read everything, then look at `complaint`, and only then change something.
class BodyFields {
public:
    /// The deepest nesting of a request body.
    static constexpr std::size_t deepest = 16;

    explicit BodyFields(const HttpRequest& request);

    /// A text of `shortest` to `longest` code points without control characters and characters that turn the text's
    /// direction. Trimmed first. A missing member counts as empty when `shortest` is 0.
    std::string line(const char* key, std::size_t shortest, std::size_t longest);

    /// A text of 1 to `longest` bytes of visible ASCII.
    std::string word(const char* key, std::size_t longest);

    /// An installation's identifier: a UUID of 36 characters, given back in lower case.
    std::string installId(const char* key);

    /// An array of 1 to `most` integers, each at least 1.
    std::vector<std::int64_t> identifiers(const char* key, std::size_t most);

    /// An e-mail address, or empty when the member is missing or empty.
    std::string optionalEmail(const char* key);

    /// The answer with status 400 for the first member that was not as it must be.
    const std::optional<HttpAnswer>& complaint() const { return complaint_; }

private:
    const std::string* text(const char* key);
    void complain(const char* key, std::string_view rule);

    std::optional<Json> body_;
    std::optional<HttpAnswer> complaint_;
};

/// Whether the text is a UUID in its 36-character form, in either case.
bool isUuid(std::string_view text);

/// Whether the text is 1 to `longest` bytes of visible ASCII.
bool isWord(std::string_view text, std::size_t longest);

} // namespace corvane::server

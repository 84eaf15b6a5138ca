#include "publishing/ContentType.h"

#include "base/Text.h"

#include <algorithm>
#include <array>

namespace corvane::server {

std::string_view contentTypeOf(std::string_view fileName)
{
    struct Known {
        std::string_view extension, type;
    };
    static constexpr std::array known{
        Known{"html", "text/html; charset=utf-8"},
        Known{"htm", "text/html; charset=utf-8"},
        Known{"css", "text/css; charset=utf-8"},
        Known{"js", "text/javascript; charset=utf-8"},
        Known{"mjs", "text/javascript; charset=utf-8"},
        Known{"json", "application/json"},
        Known{"txt", "text/plain; charset=utf-8"},
        Known{"md", "text/markdown; charset=utf-8"},
        Known{"xml", "application/xml"},
        Known{"svg", "image/svg+xml"},
        Known{"png", "image/png"},
        Known{"jpg", "image/jpeg"},
        Known{"jpeg", "image/jpeg"},
        Known{"gif", "image/gif"},
        Known{"webp", "image/webp"},
        Known{"ico", "image/x-icon"},
        Known{"woff2", "font/woff2"},
        Known{"pdf", "application/pdf"},
        Known{"zip", "application/zip"},
        Known{"gz", "application/gzip"},
        Known{"dmg", "application/x-apple-diskimage"},
        Known{"deb", "application/vnd.debian.binary-package"},
    };
    const auto dot = fileName.rfind('.');
    const auto extension = dot == std::string_view::npos ? std::string() : lowercased(fileName.substr(dot + 1));
    const auto* found = std::ranges::find(known, extension, &Known::extension);
    return found == known.end() ? "application/octet-stream" : found->type;
}

} // namespace corvane::server

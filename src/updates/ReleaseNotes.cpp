#include "updates/ReleaseNotes.h"

#include "ports/HttpClient.h"

namespace corvane {
namespace {

/// A server that chooses both page and version could otherwise ask for terabytes.
constexpr auto largestPage = bytesOf(BodyLimit::page);

std::optional<std::string> replaced(std::string_view text, std::string_view placeholder, std::string_view value)
{
    std::string filled;
    while (true) {
        const auto place = text.find(placeholder);
        filled += text.substr(0, place);
        if (filled.size() > largestPage)
            return std::nullopt;
        if (place == std::string_view::npos)
            return filled;
        filled += value;
        text.remove_prefix(place + placeholder.size());
    }
}

} // namespace

std::optional<std::string> filledReleaseNotes(std::string_view page, std::string_view version,
                                              std::string_view buildDate)
{
    return replaced(page, "{{VERSION}}", version).and_then([buildDate](const std::string& filled) {
        return replaced(filled, "{{BUILD_DATE}}", buildDate);
    });
}

} // namespace corvane

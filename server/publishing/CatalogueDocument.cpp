#include "publishing/CatalogueDocument.h"

#include "base/Json.h"
#include "base/Text.h"
#include "base/Url.h"

#include <set>

#include <fmt/format.h>

namespace corvane::server {
namespace {

bool isWebAddress(const std::string& text)
{
    const auto url = Url::parse(text);
    return url && url->isHttp();
}

/// What is wrong with an entry; empty when nothing is. `names` are the services before it.
std::string complaintAbout(const Json& entry, std::set<std::string>& names)
{
    for (const auto* key : {"service", "url", "description"}) {
        if (textOf(member(entry, key)) == nullptr)
            return fmt::format("it has no text \"{}\"", key);
    }
    const auto& service = *textOf(member(entry, "service"));
    if (trimmed(service).empty())
        return "its \"service\" is empty";
    if (!names.insert(service).second)
        return fmt::format("there is a service \"{}\" before it", service);
    if (!isWebAddress(*textOf(member(entry, "url"))))
        return "its \"url\" is not an http or https address";
    return {};
}

} // namespace

Result<std::string> checkedCatalogue(std::string_view text)
{
    const auto refuse = [](std::string reason) { return std::unexpected(Error{std::move(reason)}); };
    const auto document = parseJson(text);
    if (!document)
        return refuse("it is not JSON");
    if (document->is_object()) {
        const auto* source = textOf(member(*document, "source_url"));
        if (source == nullptr || !isWebAddress(*source))
            return refuse("it is neither an array of services nor an object with a \"source_url\"");
        return fmt::format("a redirect to {}", *source);
    }
    if (!document->is_array())
        return refuse("it is neither an array of services nor an object with a \"source_url\"");
    std::set<std::string> names;
    for (std::size_t i = 0; i < document->size(); ++i) {
        if (const auto complaint = complaintAbout((*document)[i], names); !complaint.empty())
            return refuse(fmt::format("entry {}: {}", i + 1, complaint));
    }
    return fmt::format("a catalogue of {} {}", names.size(), names.size() == 1 ? "service" : "services");
}

} // namespace corvane::server

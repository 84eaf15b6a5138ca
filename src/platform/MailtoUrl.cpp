#include "platform/MailtoUrl.h"

#include "base/Text.h"
#include "platform/GLibHandle.h"

#include <algorithm>
#include <string>

namespace corvane {
namespace {

/// Whether a mail program could read this field of the query as a file to attach, however its name is spelled.
bool attachesFile(std::string_view field)
{
    const std::string name(field.substr(0, field.find('=')));
    const auto decoded = adopt(g_uri_unescape_string(name.c_str(), nullptr));
    if (!decoded)
        return true; // %00 and the like: no field that means well
    auto plain = lowercased(trimmed(decoded.get()));
    while (plain.starts_with("amp;")) // "&amp;" where a page meant "&"
        plain.erase(0, 4);
    return plain == "attach" || plain == "attachment";
}

} // namespace

Url withoutAttachments(const Url& url)
{
    if (url.scheme() != "mailto")
        return url;
    auto text = url.text().substr(0, url.text().find_first_of("?#"));
    char separator = '?';
    for (auto rest = url.query(); !rest.empty();) {
        const auto field = rest.substr(0, rest.find('&'));
        rest.remove_prefix(std::min(field.size() + 1, rest.size()));
        if (attachesFile(field))
            continue;
        text += separator;
        text += field;
        separator = '&';
    }
    return Url::parse(text).value(); // a valid address with whole fields left out
}

} // namespace corvane

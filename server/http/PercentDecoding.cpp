#include "http/PercentDecoding.h"

#include "base/Text.h"

#include <memory>

#include <glib.h>

namespace corvane::server {

std::optional<std::string> percentDecoded(std::string_view encoded)
{
    // GLib refuses %00 when a NUL is named illegal, and every "%" that begins no %XX.
    if (encoded.contains('\0'))
        return std::nullopt;
    const std::unique_ptr<char, decltype(&g_free)> decoded(
        g_uri_unescape_segment(encoded.data(), encoded.data() + encoded.size(), ""), g_free);
    if (!decoded || !isValidUtf8(decoded.get()))
        return std::nullopt;
    return std::string(decoded.get());
}

} // namespace corvane::server

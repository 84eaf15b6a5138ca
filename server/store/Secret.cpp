#include "store/Secret.h"

#include <cstdint>
#include <memory>
#include <random>

#include <fmt/format.h>
#include <glib.h>

namespace corvane::server {

std::string randomSecret(std::size_t byteCount)
{
    std::random_device source;
    std::string secret;
    while (secret.size() < byteCount * 2)
        secret += fmt::format("{:08x}", std::uint32_t{source()});
    secret.resize(byteCount * 2);
    return secret;
}

std::string digestOf(std::string_view secret)
{
    const auto* bytes = reinterpret_cast<const guchar*>(secret.data());
    const std::unique_ptr<char, decltype(&g_free)> digest(
        g_compute_checksum_for_data(G_CHECKSUM_SHA256, bytes, secret.size()), g_free);
    return digest.get();
}

} // namespace corvane::server

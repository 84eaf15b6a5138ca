#include "publishing/Sha256.h"

#include <memory>

#include <glib.h>

namespace corvane::server {

std::optional<std::string> sha256Of(const ByteSource& source, const std::function<bool(std::string_view)>& take)
{
    constexpr std::size_t pieceSize = std::size_t{1} << 20U;
    const std::unique_ptr<GChecksum, decltype(&g_checksum_free)> checksum(g_checksum_new(G_CHECKSUM_SHA256),
                                                                          g_checksum_free);
    for (std::uint64_t taken = 0; taken < source.size();) {
        const auto piece = source.read(taken, pieceSize);
        if (piece.empty() || !take(piece))
            return std::nullopt;
        g_checksum_update(checksum.get(), reinterpret_cast<const guchar*>(piece.data()),
                          static_cast<gssize>(piece.size()));
        taken += piece.size();
    }
    return g_checksum_get_string(checksum.get());
}

} // namespace corvane::server

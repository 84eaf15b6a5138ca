#include "platform/GzipSink.h"

#include <array>

namespace corvane {
namespace {

constexpr std::size_t pieceSize = std::size_t{64} << 10U;

} // namespace

GzipSink::GzipSink(ByteSink& next)
    : next_(next), decompressor_(adopt(G_CONVERTER(g_zlib_decompressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP))))
{
}

Result<void> GzipSink::write(std::string_view bytes)
{
    std::array<char, pieceSize> piece; // NOLINT(cppcoreguidelines-pro-type-member-init): filled before it is read
    bool hasMore = false;              // that did not fit into the last piece
    while (!bytes.empty() || hasMore) {
        if (isComplete_)
            g_converter_reset(decompressor_.get());
        gsize taken = 0;
        gsize made = 0;
        GErrorSlot error;
        const auto result = g_converter_convert(decompressor_.get(), bytes.data(), bytes.size(), piece.data(),
                                                piece.size(), G_CONVERTER_NO_FLAGS, &taken, &made, error.out());
        if (g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_PARTIAL_INPUT))
            return {}; // nothing was kept back after all
        if (result == G_CONVERTER_ERROR)
            return std::unexpected(Error{error->message});
        isComplete_ = result == G_CONVERTER_FINISHED;
        hasMore = !isComplete_ && made == piece.size();
        bytes.remove_prefix(taken);
        auto written = next_.write({piece.data(), made});
        if (!written)
            return written;
    }
    return {};
}

} // namespace corvane

#pragma once

#include "platform/GLibHandle.h"

#include <string>
#include <string_view>

namespace corvane::testing {

/// `bytes`, compressed, this many times over in one stream.
inline std::string gzipOf(std::string_view bytes, std::size_t times = 1)
{
    const auto compressor = adopt(g_zlib_compressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP, 9));
    const auto memory = adopt(g_memory_output_stream_new_resizable());
    const auto stream = adopt(g_converter_output_stream_new(memory.get(), G_CONVERTER(compressor.get())));
    for (std::size_t i = 0; i < times; ++i)
        g_output_stream_write_all(stream.get(), bytes.data(), bytes.size(), nullptr, nullptr, nullptr);
    g_output_stream_close(stream.get(), nullptr, nullptr);
    const auto result = adopt(g_memory_output_stream_steal_as_bytes(G_MEMORY_OUTPUT_STREAM(memory.get())));
    return {static_cast<const char*>(g_bytes_get_data(result.get(), nullptr)), g_bytes_get_size(result.get())};
}

/// `size` zero bytes, in whole MiB, as gzip makes a thousandth of them.
inline std::string gzipOfZeros(std::size_t size)
{
    static constexpr std::size_t mebibyte = std::size_t{1} << 20U;
    return gzipOf(std::string(mebibyte, '\0'), size / mebibyte);
}

} // namespace corvane::testing

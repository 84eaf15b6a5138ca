#pragma once

#include "platform/GLibHandle.h"

#include <string>

namespace corvane::testing {

/// `size` zero bytes, in whole MiB, as gzip makes a thousandth of them.
inline std::string gzipOfZeros(std::size_t size)
{
    const auto compressor = adopt(g_zlib_compressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP, 9));
    const auto memory = adopt(g_memory_output_stream_new_resizable());
    const auto stream = adopt(g_converter_output_stream_new(memory.get(), G_CONVERTER(compressor.get())));
    const std::string zeros(std::size_t{1} << 20U, '\0');
    for (std::size_t written = 0; written < size; written += zeros.size())
        g_output_stream_write_all(stream.get(), zeros.data(), zeros.size(), nullptr, nullptr, nullptr);
    g_output_stream_close(stream.get(), nullptr, nullptr);
    const auto bytes = adopt(g_memory_output_stream_steal_as_bytes(G_MEMORY_OUTPUT_STREAM(memory.get())));
    return {static_cast<const char*>(g_bytes_get_data(bytes.get(), nullptr)), g_bytes_get_size(bytes.get())};
}

} // namespace corvane::testing

#include "platform/ChunkedSink.h"

#include "platform/UndoneBody.h"

namespace corvane {
namespace {

TEST(ChunkedSinkTest, TakesWholeChunksAndNothingElseForAWholeBody)
{
    const std::string longLine(ChunkedSink::longestLine + 1, '0');
    const std::string longTrailer = std::string(4000, 't') + "\r\n";
    std::string trailers;
    while (trailers.size() <= ChunkedSink::longestTrailers + longTrailer.size())
        trailers += longTrailer;
    testing::expectUndone<ChunkedSink>({
        {"0\r\n\r\n", ""},
        {"3\r\nabc\r\n0\r\n\r\n", "abc"},
        {"3\nabc\n0\n\n", "abc"},
        {"00000A;name=\"v\"\r\n0123456789\r\n1 \r\nx\r\n0;last\r\nTrailer: y\r\n\r\n", "0123456789x"},
        {"4\r\n\r\n\r\n\r\n0\r\n\r\n", "\r\n\r\n"},
        {"1\r\nx\r\n0\r\n\r\nHTTP/1.1 200 OK\r\n", "x"},
        {"", "…"},
        {"3\r\nab", "ab…"},
        {"3\r\nabc\r\n", "abc…"},
        {"3\r\nabc\r\n0\r\n", "abc…"},
        {"3\r\nabc\r\n0\r\nTrailer: y\r\n", "abc…"},
        {"7fffffffffffffff\r\nx", "x…"},
        {"8000000000000000\r\nx", "broken"},
        {"10000000000000000\r\nx", "broken"},
        {"-1\r\nx", "broken"},
        {"+1\r\nx", "broken"},
        {" 1\r\nx", "broken"},
        {"0x1\r\nx", "broken"},
        {"1,\r\nx", "broken"},
        {"\r\nx", "broken"},
        {";a\r\nx", "broken"},
        {"1\r\nxy\r\n0\r\n\r\n", "broken"},
        {longLine + "\r\n\r\n", "broken"},
        {"0\r\n" + trailers, "broken"},
    });
}

} // namespace
} // namespace corvane

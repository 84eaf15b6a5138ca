#include "platform/GzipSink.h"

#include "platform/GzipOfZeros.h"
#include "platform/UndoneBody.h"

namespace corvane {
namespace {

TEST(GzipSinkTest, TakesWholeMembersAndNothingElseForAWholeBody)
{
    const auto text = std::string(200'000, 'a') + "end";
    const auto gzip = testing::gzipOf(text);
    auto damaged = gzip;
    damaged[damaged.size() - 6] ^= 0x55; // the checksum
    testing::expectUndone<GzipSink>({
        {gzip, text},
        {testing::gzipOf(""), ""},
        {gzip + testing::gzipOf("") + gzip, text + text},
        {gzip.substr(0, gzip.size() - 1), text + "…"},
        {gzip.substr(0, 10), "…"},
        {damaged, "broken"},
        {gzip + "garbage", "broken"},
        {"plain text", "broken"},
        {"", ""},
    });
}

} // namespace
} // namespace corvane

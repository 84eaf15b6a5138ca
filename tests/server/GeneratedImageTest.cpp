#include "publishing/GeneratedImage.h"

#include "publishing/Sha256.h"
#include "server/ServerWorld.h"

#include <fmt/format.h>
#include <glib.h>

namespace corvane::server::testing {
namespace {

class GeneratedImageTest : public ServerWorld {
protected:
    static std::string digest(const ByteSource& source)
    {
        return sha256Of(source, [](std::string_view) { return true; }).value();
    }
};

TEST_F(GeneratedImageTest, ArrivesWithItsLengthAndItsHash)
{
    for (const std::uint64_t size : {1ULL, 7ULL, 256ULL * 1024, 3ULL * 1024 * 1024 + 13}) {
        const auto name = fmt::format("Corvane-{}.dmg", size);
        publish_.write("download/" + name + ".generated.json", fmt::format("{{\"size\": {}}}", size));
        const auto reply = get("/download/" + name);
        EXPECT_EQ(reply.status, 200U) << size;
        EXPECT_EQ(reply.headers.at("content-length"), std::to_string(size));
        EXPECT_EQ(reply.headers.at("content-type"), "application/x-apple-diskimage");
        g_autofree char* sum =
            g_compute_checksum_for_string(G_CHECKSUM_SHA256, reply.body.data(), static_cast<gssize>(reply.body.size()));
        EXPECT_EQ(sum, digest(GeneratedImage(name, size)));

        const auto head = send("HEAD", "/download/" + name);
        EXPECT_EQ(head.headers.at("content-length"), std::to_string(size));
        EXPECT_EQ(head.body, "");
    }
    EXPECT_EQ(send("POST", "/download/Corvane-1.dmg", "x").status, 405U);
}

TEST_F(GeneratedImageTest, EveryPieceFollowsFromNameAndPosition)
{
    const GeneratedImage image("Corvane-1.dmg", 1000);
    const auto whole = image.read(0, 2000);
    EXPECT_EQ(whole.size(), 1000U);
    for (const std::size_t offset : {0U, 1U, 7U, 8U, 9U, 500U, 999U})
        EXPECT_EQ(image.read(offset, 20), whole.substr(offset, 20)) << offset;
    EXPECT_EQ(image.read(1000, 20), "");
    EXPECT_NE(GeneratedImage("Corvane-2.dmg", 1000).read(0, 1000), whole);
}

TEST_F(GeneratedImageTest, ARealFileGoesFirstAndABadNoteIsNoImage)
{
    publish_.write("real.dmg", "real");
    publish_.write("real.dmg.generated.json", "{\"size\": 10}");
    EXPECT_EQ(get("/real.dmg").body, "real");
    for (const auto* note : {"", "[]", "{}", "{\"size\":0}", "{\"size\":-1}", "{\"size\":\"1\"}", "{\"size\":1.5}",
                             "{\"size\":17179869185}", "{\"size\":1e99}", "{\"size\":18446744073709551615}"}) {
        publish_.write("bad.dmg.generated.json", note);
        EXPECT_EQ(get("/bad.dmg").status, 404U) << note;
    }
}

} // namespace
} // namespace corvane::server::testing

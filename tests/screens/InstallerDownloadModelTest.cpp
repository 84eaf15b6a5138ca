#include "screens/InstallerDownloadModel.h"

#include "screens/ScreenWorld.h"

#include <gtest/gtest.h>

namespace corvane::testing {
namespace {

const Url image = *Url::parse("https://h/C.dmg");

std::string identityOf(const InstallerDownloadModel& model)
{
    const auto& outcome = *model.dmgDownloadOutcome();
    return outcome ? outcome->identity() : "none";
}

TEST(InstallerDownloadModelTest, ReportsOneDownloadAtATimeAfterItHasEnded)
{
    ScreenWorld world;
    auto& model = world.installer;
    std::string seen;
    const auto downloading = model.isDownloadingDMG().observe([&](bool isDownloading) {
        seen += isDownloading ? "starts " : "ends ";
        if (!isDownloading)
            model.cancel(); // Comes too late to undo anything.
    });
    const auto reporting = model.dmgDownloadOutcome().observe([&](const auto&) { seen += identityOf(model); });
    model.start(image, {});
    model.start(*Url::parse("https://h/other.dmg"), {});
    EXPECT_EQ(world.http.requests().size(), 1U);
    EXPECT_TRUE(world.http.answer(0, HttpResponse{404, ""}));
    EXPECT_EQ(seen, "starts ends err-Server returned status 404.");
}

TEST(InstallerDownloadModelTest, TellsHowEachDownloadEndedUntilItIsAnswered)
{
    ScreenWorld world;
    auto& model = world.installer;
    const auto downloaded = [&](const Result<HttpResponse>& answer, const std::optional<std::string>& sha256) {
        model.start(image, sha256);
        EXPECT_EQ(identityOf(model), "none") << "the earlier outcome is no longer true";
        EXPECT_TRUE(*model.isDownloadingDMG());
        EXPECT_TRUE(world.http.answer(world.http.requests().size() - 1, answer));
        EXPECT_FALSE(*model.isDownloadingDMG());
        return identityOf(model);
    };
    EXPECT_EQ(downloaded(std::unexpected(Error{"No route"}), {}), "err-No route");
    EXPECT_EQ(downloaded(HttpResponse{200, "image"}, "other"),
              "err-The downloaded file is not the one that was announced.");
    model.quitAndInstall(); // There is nothing to install.
    EXPECT_EQ(identityOf(model), "none");
    EXPECT_EQ(downloaded(HttpResponse{200, "image"}, "digest of image"), "ok-/Downloads/C.dmg");
    model.dismissOutcome();
    EXPECT_EQ(identityOf(model), "none");
    model.quitAndInstall();
    EXPECT_TRUE(world.desktop.calls.empty());

    EXPECT_EQ(downloaded(HttpResponse{200, "image"}, {}), "ok-/Downloads/C.dmg");
    model.quitAndInstall();
    model.quitAndInstall(); // A second click changes nothing.
    EXPECT_EQ(identityOf(model), "none");
    world.clock.advance(std::chrono::seconds(2));
    EXPECT_EQ(world.desktop.calls, (std::vector<std::string>{"open file:///Downloads/C.dmg", "quit"}));
}

TEST(InstallerDownloadModelTest, ACancelledDownloadLeavesAndReportsNothing)
{
    ScreenWorld world;
    auto& model = world.installer;
    model.cancel();
    model.start(image, {});
    model.cancel();
    EXPECT_FALSE(*model.isDownloadingDMG());
    EXPECT_FALSE(world.http.answer(0, HttpResponse{200, "image"}));
    EXPECT_EQ(identityOf(model), "none");
    EXPECT_EQ(world.incoming.temporaries, 0);

    model.start(image, {}); // The next one is a fresh one.
    EXPECT_TRUE(world.http.answer(1, HttpResponse{200, "image"}));
    model.cancel();
    EXPECT_EQ(identityOf(model), "ok-/Downloads/C.dmg");
}

/// A network that reports what a test says.
class ReportingHttpClient final : public HttpClient {
public:
    Task<Result<HttpResponse>> send(HttpRequest /*request*/) override { co_return HttpResponse{}; }
    Task<Result<int>> download(Url /*url*/, ByteSink* /*sink*/, DownloadObserver observer) override
    {
        for (const auto& progress : reports)
            observer(progress);
        co_return 500;
    }

    std::vector<DownloadProgress> reports;
};

TEST(InstallerDownloadModelTest, ShowsProgressInPercentOrMebibytes)
{
    using Progress = InstallerDownloadModel::Progress;
    constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20U;
    const std::vector<std::pair<std::vector<DownloadProgress>, std::vector<Progress>>> cases{
        {{{0, 85'000'000},
          {400, 85'000'000},
          {849'999, 85'000'000},
          {12'340'000, 85'000'000},
          {85'000'000, 85'000'000}},
         {{400 / 85e6, "0 kB of 85.0 MB"}, {12.34 / 85, "12.3 MB of 85.0 MB"}, {1.0, "85.0 MB of 85.0 MB"}}},
        {{{1'000, {}}, {mebibyte - 1, {}}, {mebibyte, {}}, {5 * mebibyte + 1, {}}},
         {{{}, "1 kB"}, {{}, "1.0 MB"}, {{}, "5.2 MB"}}},
        {{{7, 0}}, {{{}, "0 kB"}}},            // no length at all
        {{{30, 20}}, {{1.0, "0 kB of 0 kB"}}}, // more than announced
        {{{999'499, 999'949'999}, {999'950'000, 4'294'967'296}},
         {{999'499 / 999'949'999.0, "999 kB of 999.9 MB"}, {999'950'000 / 4'294'967'296.0, "1.0 GB of 4.3 GB"}}},
    };
    for (const auto& [reports, expected] : cases) {
        ScreenWorld world;
        ReportingHttpClient http;
        DMGDownloadHelper helper(http, world.files, world.incoming, world.desktop, world.clock, world.places);
        InstallerDownloadModel model(helper);
        std::vector<Progress> shown;
        const auto showing = model.progress().observe([&](const Progress& progress) { shown.push_back(progress); });
        http.reports = reports;
        model.start(image, {});
        EXPECT_EQ(shown, expected) << shown.back().sizes;

        shown.clear();
        model.start(image, {}); // begins with nothing, then the same again
        EXPECT_EQ(shown.front(), Progress());
        EXPECT_EQ(shown.size(), expected.size() + 1);
    }
}

} // namespace
} // namespace corvane::testing

#include "catalogue/SiteListManager.h"
#include "network/FaultyServer.h"
#include "platform/PosixFileStore.h"
#include "platform/PosixIncomingFiles.h"
#include "platform/SoupHttpClient.h"
#include "platform/SystemClock.h"
#include "support/MainContext.h"
#include "support/MemoryFileStore.h"
#include "support/MemoryResources.h"
#include "support/RecordingDesktop.h"
#include "support/RunTask.h"
#include "support/TemporaryFolder.h"
#include "support/TestEndpoints.h"
#include "updates/AppUpdateManager.h"
#include "updates/DMGDownloadHelper.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::Fault;
using testing::FaultyServer;
using testing::iterateUntil;
using testing::keepResult;

constexpr auto sitesPath = "/Corvane/sites/sites.json";
constexpr auto sitesNotesPath = "/Corvane/sites/whatsnew.html";
constexpr auto sitesArchivePath = "/Corvane/sites/archive/index.json";
constexpr auto appNotesPath = "/Corvane/mac_whatsnew/whatsnew.html";
constexpr auto versionPath = "/Corvane/mac_whatsnew/version.json";
constexpr auto appArchivePath = "/Corvane/mac_whatsnew/Previous_Releases/index.json";
constexpr auto storePath = "/lookup";
constexpr auto imagePath = "/C.dmg";

constexpr auto list = R"([{"service":"A","url":"u","description":"d"}])";
constexpr auto index = R"({"archives":[{"file":"f","title":"T"}]})";

std::string content(const fs::path& file)
{
    std::ifstream input(file, std::ios::binary);
    return {std::istreambuf_iterator(input), {}};
}

/// Documents that read, but not as what they should be.
const std::vector<Fault>& wrongDocuments()
{
    static const std::vector<Fault> faults{
        {"is of another type",
         [](const std::string&) { return testing::RawServer::ok(R"({"a":[{"b":1}],"version":7})"); }},
        {"is no JSON", [](const std::string&) { return testing::RawServer::ok("<!DOCTYPE html><p>busy"); }},
        {"is no UTF-8", [](const std::string&) { return testing::RawServer::ok("[{\"service\":\"\xFF\xFE\"}]"); }},
        {"is empty", [](const std::string&) { return testing::RawServer::ok(""); }},
        {"is deep", [](const std::string&) { return testing::RawServer::ok(std::string(2000, '[')); }},
        {"names a script",
         [](const std::string&) { return testing::RawServer::ok(R"({"source_url":"javascript:void"})"); }},
    };
    return faults;
}

std::vector<Fault> allFaults()
{
    auto faults = FaultyServer::transportFaults();
    std::ranges::copy(wrongDocuments(), std::back_inserter(faults));
    return faults;
}

class HostileNetworkTest : public ::testing::Test {
protected:
    HostileNetworkTest()
    {
        server_.documents = {{sitesPath, list},
                             {sitesNotesPath, "<p>notes"},
                             {sitesArchivePath, index},
                             {appNotesPath, "<p>{{VERSION}}"},
                             {versionPath, R"({"version":"2.0"})"},
                             {storePath, R"({"results":[{"version":"2.0"}]})"},
                             {appArchivePath, index},
                             {imagePath, "image"}};
        resources_.files["sites.json"] = "[]";
        sites_.loadSites();
    }

    static Endpoints allAt(const FaultyServer& server)
    {
        auto endpoints = testing::endpointsAt("http://127.0.0.1:1/", server.base());
        endpoints.storeLookup = server.url(storePath);
        return endpoints;
    }

    template <typename T>
    T resultOf(Task<T> task)
    {
        std::optional<T> result;
        TaskScope scope;
        scope.start(keepResult(std::move(task), &result));
        EXPECT_TRUE(iterateUntil([&] { return result.has_value(); }));
        return *std::move(result);
    }

    void goWrong(const char* path, const Fault& fault)
    {
        server_.faultyPath = path;
        server_.fault = &fault;
    }

    FaultyServer server_;
    const Endpoints endpoints_ = allAt(server_);
    SoupHttpClient http_{"1", testing::tinyLimits};
    SystemClock clock_;
    testing::MemoryFileStore memory_;
    testing::MemoryResources resources_;
    SiteListManager sites_{memory_, resources_, Places{.data = "/data"}, SiteListFetcher(http_, clock_, endpoints_)};
    AppUpdateManager app_{http_, clock_, endpoints_, AppInfo{"1.0", "today"}};
};

TEST_F(HostileNetworkTest, TheListCheckFailsInItsWordsAndChangesNothing)
{
    const auto check = [this](std::optional<std::string> sourceUrl = {}) {
        const auto result = resultOf(sites_.checkForUpdates(std::move(sourceUrl)));
        const auto* error = std::get_if<SiteListManager::NetworkError>(&result);
        return error == nullptr ? "no error" : error->message;
    };
    EXPECT_EQ(check(), "no error");
    sites_.hasPendingSiteUpdate().set(true);
    for (const auto& fault : FaultyServer::transportFaults()) {
        goWrong(sitesPath, fault);
        EXPECT_EQ(check(), "Network request failed — check your connection.") << fault.name;
        EXPECT_EQ(resultOf(sites_.backgroundCheck(std::nullopt)), -1) << fault.name;
    }
    for (const auto& fault : wrongDocuments()) {
        goWrong(sitesPath, fault);
        EXPECT_EQ(check(), fault.name == "names a script" ? "Failed to fetch redirected sites URL: javascript:void"
                                                          : "Remote sites.json could not be parsed.")
            << fault.name;
    }
    for (const auto* address : {"javascript:void", "file:///etc/hostname", "data:,x", "ftp://127.0.0.1/sites.json",
                                "http://127.0.0.1:1/sites.json"})
        EXPECT_EQ(check(address), "Network request failed — check your connection.") << address;
    EXPECT_TRUE(*sites_.hasPendingSiteUpdate());
    EXPECT_FALSE(*sites_.isCheckingForUpdates());
    EXPECT_TRUE(sites_.sites()->empty());
    EXPECT_EQ(memory_.writes, 0);
}

TEST_F(HostileNetworkTest, TroubleBesideTheListCostsOnlyWhatIsMissing)
{
    for (const auto& fault : allFaults()) {
        const bool isPage = fault.name == "is of another type" || fault.name == "is no JSON" ||
                            fault.name == "is deep" || fault.name == "names a script";
        for (const auto* path : {sitesNotesPath, sitesArchivePath}) {
            goWrong(path, fault);
            const auto result = resultOf(sites_.fetchRemoteSites(std::nullopt));
            const auto* update = std::get_if<SiteListManager::UpdateAvailable>(&result);
            ASSERT_TRUE(update) << fault.name;
            EXPECT_EQ(update->pendingData, list);
            EXPECT_EQ(update->whatsNewHTML.has_value(), path != sitesNotesPath || isPage) << fault.name;
            EXPECT_EQ(update->archives.size(), path == sitesArchivePath ? 0U : 1U) << fault.name;
        }
    }
}

TEST_F(HostileNetworkTest, TheVersionCheckNeedsItsNotesAndDoesWithoutEverythingElse)
{
    const auto check = [this] {
        const auto result = resultOf(app_.checkForUpdates());
        if (const auto* error = std::get_if<AppUpdateManager::NetworkError>(&result))
            return error->message;
        const auto* update = std::get_if<AppUpdateManager::UpdateAvailable>(&result);
        const auto archives =
            update == nullptr ? std::get<AppUpdateManager::Current>(result).archives : update->archives;
        return fmt::format("{}{} archives:{}", update == nullptr ? "current" : *update->storeVersion,
                           update != nullptr && update->downloadURL ? " hosted" : "", archives.size());
    };
    EXPECT_EQ(check(), "2.0 archives:1");
    app_.hasPendingAppUpdate().set(true);
    auto faults = FaultyServer::transportFaults();
    for (const auto& fault : faults) {
        goWrong(appNotesPath, fault);
        EXPECT_EQ(check(), "Could not fetch release notes — check your connection.") << fault.name;
        EXPECT_EQ(resultOf(app_.backgroundCheck()), -1) << fault.name;
    }
    for (const auto& fault : allFaults()) {
        goWrong(storePath, fault);
        EXPECT_EQ(check(), "2.0 hosted archives:1") << fault.name;
        goWrong(versionPath, fault);
        EXPECT_EQ(check(), "2.0 archives:1") << fault.name;
        goWrong(appArchivePath, fault);
        EXPECT_EQ(check(), "2.0 archives:0") << fault.name;
    }
    EXPECT_TRUE(*app_.hasPendingAppUpdate());
    EXPECT_FALSE(*app_.isCheckingForUpdates());
}

class HostileDownloadTest : public HostileNetworkTest {
protected:
    HostileDownloadTest()
    {
        fs::create_directory(*places_.downloads);
        std::ofstream(older_) << "old";
    }

    DMGDownloadHelper::Result download(std::optional<std::string> sha256 = {})
    {
        return resultOf(helper_.download(server_.url(imagePath), std::move(sha256), nullptr));
    }

    static std::string failureOf(const DMGDownloadHelper::Result& result)
    {
        return result ? "" : result.error().message;
    }

    void expectNothingChanged(const std::string& after)
    {
        EXPECT_EQ(content(older_), "old") << after;
        EXPECT_EQ(std::distance(fs::directory_iterator(*places_.downloads), {}), 1) << after;
        EXPECT_FALSE(fs::exists(places_.updates())) << after;
    }

    testing::TemporaryFolder folder_;
    const Places places_{.data = folder_ / "data", .downloads = folder_ / "Downloads"};
    const fs::path older_ = *places_.downloads / "C.dmg";
    PosixFileStore files_;
    PosixIncomingFiles incoming_;
    testing::RecordingDesktop desktop_;
    DMGDownloadHelper helper_{http_, files_, incoming_, desktop_, clock_, places_};
};

TEST_F(HostileDownloadTest, AFailedDownloadLeavesNothingAndTheOlderFileStands)
{
    for (const auto& fault : FaultyServer::transportFaults()) {
        goWrong(imagePath, fault);
        EXPECT_NE(failureOf(download()), "") << fault.name;
        expectNothingChanged(fault.name);
    }
    server_.fault = nullptr;
    EXPECT_EQ(failureOf(download(std::string(64, '0'))), "The downloaded file is not the one that was announced.");
    expectNothingChanged("wrong digest");
    server_.documents.erase(imagePath);
    EXPECT_EQ(failureOf(download()), "Server returned status 404.");
    expectNothingChanged("404");
}

TEST_F(HostileDownloadTest, ADownloadThatIsCancelledLeavesNothing)
{
    const auto files = [this] { return std::distance(fs::directory_iterator(*places_.downloads), {}); };
    const Fault stalls{"stalls", [](const std::string&) {
                           return testing::RawServer::Reply{"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf",
                                                            testing::RawServer::Reply::Then::wait};
                       }};
    goWrong(imagePath, stalls);
    std::optional<DMGDownloadHelper::Result> result;
    TaskScope scope;
    scope.start(keepResult(helper_.download(server_.url(imagePath), std::nullopt, nullptr), &result));
    ASSERT_TRUE(iterateUntil([&] { return files() == 2; })) << "the first bytes have arrived";
    scope.cancel();
    expectNothingChanged("cancelled");
    EXPECT_TRUE(iterateUntil([&] { return server_.raw().hangUps == 1; }));
    EXPECT_FALSE(result);
}

TEST_F(HostileDownloadTest, AGoodDownloadReplacesAFileNeverAFolderAndFindsAnotherPlace)
{
    // The digest of "image".
    EXPECT_EQ(download("6105D6CC76AF400325E94D588CE511BE5BFDBB73B437DC51ECA43917D7A43E3D"), older_);
    EXPECT_EQ(content(older_), "image");

    fs::remove(older_);
    fs::create_directory(older_);
    EXPECT_FALSE(download());
    EXPECT_TRUE(fs::is_directory(older_));
    EXPECT_EQ(std::distance(fs::directory_iterator(*places_.downloads), {}), 1);

    fs::remove_all(*places_.downloads);
    std::ofstream(*places_.downloads) << "a file where the folder should be";
    EXPECT_EQ(download(), places_.updates() / "C.dmg");
    EXPECT_EQ(content(places_.updates() / "C.dmg"), "image");
}

} // namespace
} // namespace corvane

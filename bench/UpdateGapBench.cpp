// Measures how long a check of the service list, and accepting what it found, keep the main loop from drawing, with
// catalogues of 4 MiB from a server on this machine, real requests and real files. Usage: bench_update_gap [ROUNDS]

#include "LoopbackServer.h"
#include "MainLoopGap.h"
#include "async/TaskScope.h"
#include "catalogue/SiteListManager.h"
#include "platform/FolderResources.h"
#include "platform/PosixFileStore.h"
#include "platform/SoupHttpClient.h"
#include "platform/SystemClock.h"
#include "support/TemporaryFolder.h"
#include "support/TestEndpoints.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include <fmt/format.h>

namespace {

using namespace corvane;

constexpr std::size_t size = FileStore::largestFile - 200; // nearly the most that is fetched or read

/// Entries of the length that a real list has.
std::string usualDocument()
{
    std::string text = "[";
    for (int i = 0; text.size() < size - 300; ++i) {
        text += fmt::format(R"({}{{"service":"Service {}","url":"https:\/\/chat{}.example.com\/start?from=catalogue",)"
                            R"("description":"A place to ask \"anything\", number {}, in many languages."}})",
                            i == 0 ? "" : ",\n", i, i, i);
    }
    return text + "]";
}

/// As many entries as fit.
std::string shortEntries()
{
    static constexpr std::string_view entry = R"({"service":"","url":"","description":""})";
    std::string text = "[" + std::string(entry);
    while (text.size() < size - entry.size() - 2)
        (text += ",") += entry;
    return text + "]";
}

/// A single entry, which is read in one piece.
std::string oneEntry()
{
    return fmt::format(R"([{{"service":"a","url":"b","description":"{}"}}])", std::string(size - 100, 'd'));
}

/// An object, which might be a redirect and turns out to be nothing.
std::string object()
{
    std::string text = "{";
    for (int i = 0; text.size() < size - 100; ++i)
        text += fmt::format(R"("member {}":[{},true,{{}}],)", i, i);
    return text + R"("end":0})";
}

Task<void> check(SiteListManager* manager, std::string address, std::optional<SiteListManager::CheckResult>* result)
{
    result->emplace(co_await manager->checkForUpdates(std::move(address)));
}

using Gaps = std::vector<bench::MainLoopGap::Longest>;

/// The gaps of several rounds: the median, the longest, and the longest in the thread's own time.
std::string told(Gaps gaps)
{
    if (gaps.empty())
        return fmt::format("{:>27}", "");
    const auto worked = std::ranges::max(gaps, {}, &bench::MainLoopGap::Longest::worked).worked;
    std::ranges::sort(gaps, {}, &bench::MainLoopGap::Longest::passed);
    return fmt::format("{:>9.1f}{:>9.1f}{:>9.1f}", gaps[gaps.size() / 2].passed.count(), gaps.back().passed.count(),
                       worked.count());
}

/// A home of its own with a service list.
class Home {
public:
    explicit Home(HttpClient& http) : fetcher_(http, clock_, endpoints_) {}

    void measureCheck(const std::string& address, Gaps* gaps)
    {
        result_.reset();
        TaskScope scope;
        gaps->push_back(gap_.during([&] { scope.start(check(&manager_, address, &result_)); },
                                    [&] { return result_.has_value(); }));
    }

    /// The list must differ from the one in use.
    void measureAccepting(const std::string& document, Gaps* gaps)
    {
        bool isLoaded = false;
        const auto loaded = manager_.sites().observe([&](const auto&) { isLoaded = true; });
        gaps->push_back(gap_.during([&] { manager_.applyPendingSiteData(document); }, [&] { return isLoaded; }));
    }

    bool foundUpdate() const { return std::holds_alternative<SiteListManager::UpdateAvailable>(*result_); }

private:
    testing::TemporaryFolder folder_;
    SystemClock clock_;
    Endpoints endpoints_ = testing::endpointsAt();
    FolderResources resources_ = FolderResources::ofThisProgram();
    PosixFileStore files_;
    SiteListFetcher fetcher_;
    SiteListManager manager_{files_, resources_, Places{.data = folder_.path(), .cache = {}, .defaults = {}}, fetcher_};
    bench::MainLoopGap gap_;
    std::optional<SiteListManager::CheckResult> result_;
};

/// Checks, accepts, accepts another list over that and checks again, `rounds` times, each with a fresh home.
void measure(std::string_view name, const std::string& document, long rounds)
{
    const bench::LoopbackServer server(document);
    SoupHttpClient http("bench");
    Gaps checks, accepting;
    for (long round = 0; round < rounds; ++round) {
        Home home(http);
        home.measureCheck(server.url("sites"), &checks);
        if (home.foundUpdate()) {
            home.measureAccepting(document, &accepting);
            auto other = document;
            home.measureAccepting(other.insert(1, R"({"service":"B","url":"","description":""},)"), &accepting);
            home.measureCheck(server.url("sites"), &checks);
        }
    }
    fmt::print("{:<24}{}{}\n", name, told(checks), told(accepting));
}

} // namespace

int main(int argc, char** argv)
{
    const long rounds = argc > 1 ? std::max(std::strtol(argv[1], nullptr, 10), 1L) : 20;
    fmt::print("{:<24}{:^27}{:^27}\n{:<24}", "longest gaps, in ms", "checking", "accepting", "a catalogue of 4 MiB");
    fmt::print("{0:>9}{1:>9}{2:>9}{0:>9}{1:>9}{2:>9}\n", "median", "longest", "own time");
    measure("usual entries", usualDocument(), rounds);
    measure("shortest entries", shortEntries(), rounds);
    measure("a single entry", oneEntry(), rounds);
    measure("no list but an object", object(), rounds);
    return 0;
}

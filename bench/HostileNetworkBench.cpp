// Measures how much memory hostile answers can take: every fetch of the program against every fault, and against bodies
// that are as large as they may be, with the program's own limits. The server is a process of its own. Prints the
// worst; ends with 1 when the resident memory has grown by 32 MiB or more at any moment of a fetch.

#include "MainLoopGap.h"
#include "network/FetchingProgram.h"
#include "support/ProcessMeasures.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <malloc.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

using namespace corvane;
using namespace std::chrono_literals;
using testing::Fault;

constexpr std::size_t mostGrowth = 32U << 10U; // KiB
constexpr auto steering = "/steer";

/// Bodies just below the limit of a JSON document, full of the same.
std::vector<Fault> largeBodies()
{
    std::vector<Fault> bodies;
    for (const auto& [name, start, piece, end] : std::vector<std::array<std::string, 4>>{
             {"full of empty arrays", "[[]", ",[]", "]"},
             {"full of empty objects", "[{}", ",{}", "]"},
             {"full of numbers", "[0", ",0", "]"},
             {"full of empty texts", "[\"\"", ",\"\"", "]"},
             {"full of members", "{\"a\":0", ",\"b\":0", "}"},
             {"full of services", "[{\"service\":\"\",\"url\":\"\",\"description\":\"\"}",
              ",{\"service\":\"\",\"url\":\"\",\"description\":\"\"}", "]"},
             {"full of notifications", "{\"notifications\":[{\"recipientId\":1}", ",{\"recipientId\":1}", "]}"},
             {"full of archives", "{\"archives\":[{\"file\":\"f\",\"title\":\"t\"}",
              ",{\"file\":\"f\",\"title\":\"t\"}", "]}"},
             {"full of text", "\"", "x", "\""},
             {"full of placeholders", "<p>", "{{VERSION}}", "</p>"}}) {
        bodies.push_back({.name = name, .reply = [start, piece, end](const std::string&, const std::string&) {
                              auto body = start;
                              while (body.size() + piece.size() + end.size() < bytesOf(BodyLimit::json))
                                  body += piece;
                              return testing::RawServer::ok(body + end);
                          }});
    }
    return bodies;
}

std::vector<Fault> everything()
{
    auto all = testing::allFaults();
    std::ranges::move(largeBodies(), std::back_inserter(all));
    return all;
}

/// The server's whole life: it goes wrong as a request for "/steer?FETCH,FAULT" says.
[[noreturn]] void serve(int port)
{
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    const auto faults = everything();
    testing::FaultyServer server;
    server.raw().respond = [&, usual = server.raw().respond](const std::string& request) {
        if (!request.contains(steering))
            return usual(request);
        std::size_t fetch = 0;
        std::size_t fault = 0;
        std::sscanf(request.c_str() + request.find('?'), "?%zu,%zu", &fetch, &fault);
        publish(server, testing::allFetches()[fetch]);
        server.goWrong(testing::allFetches()[fetch].path, faults[fault]);
        return testing::RawServer::ok("");
    };
    const auto base = server.base() + "\n";
    if (::write(port, base.data(), base.size()) < 0)
        std::exit(EXIT_FAILURE);
    while (true)
        g_main_context_iteration(nullptr, TRUE);
}

/// The address of a server in a process of its own, which ends with this one.
std::string startServer()
{
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        return {};
    if (::fork() == 0)
        serve(ends[1]);
    std::array<char, 100> base{};
    const auto size = ::read(ends[0], base.data(), base.size());
    return size > 1 ? std::string(base.data(), static_cast<std::size_t>(size) - 1) : std::string();
}

struct Measured {
    std::size_t growth = 0; // KiB
    double gap = 0;         // ms of work in one turn
    std::string what;
    bool isLarge = false; // the body
};

class Measuring {
public:
    explicit Measuring(const std::string& base)
        : base_(base), program_(base, limits(2min)), hurried_(base, limits(300ms))
    {
    }

    void measure(std::size_t fetch, std::size_t fault)
    {
        steer(fetch, fault);
        auto& program = faults_[fault].lasts == Fault::Lasts::briefly ? program_ : hurried_;
        ::malloc_trim(0);
        testing::forgetPeak();
        const auto before = testing::statusKiB("VmRSS");
        std::string outcome;
        const auto gap =
            gap_.during([&] { outcome = (program.*testing::allFetches()[fetch].run)(); }, [] { return true; });
        const auto peak = testing::statusKiB("VmHWM");
        results_.push_back(
            {peak > before ? peak - before : 0, gap.worked.count(),
             fmt::format("{}: {} -> {}", testing::allFetches()[fetch].name, faults_[fault].name, outcome),
             faults_[fault].name.starts_with("full of")});
    }

    void measureAll()
    {
        for (std::size_t fetch = 0; fetch < testing::allFetches().size(); ++fetch) {
            measure(fetch, 0); // whatever is made once is there now
            results_.pop_back();
            for (std::size_t fault = 0; fault < faults_.size(); ++fault) {
                if (testing::allFetches()[fetch].hasTimeLimit || faults_[fault].lasts == Fault::Lasts::briefly)
                    measure(fetch, fault);
            }
        }
    }

    /// Tells the worst of the faults and of the large bodies. The worst growth of all, in KiB.
    std::size_t tell()
    {
        const auto large = std::ranges::partition(results_, std::logical_not(), &Measured::isLarge);
        const std::span faulty(results_.begin(), large.begin());
        return std::max(tell("faults", faulty), tell("large bodies", large));
    }

private:
    static std::size_t tell(std::string_view kind, std::span<Measured> results)
    {
        const auto worst = results.first(std::min<std::size_t>(results.size(), 8));
        fmt::print("{} fetches with {}; the longest that one kept the main loop from drawing:\n", results.size(), kind);
        std::ranges::sort(results, std::ranges::greater(), &Measured::gap);
        for (const auto& result : worst)
            fmt::print("{:8.1f} ms   {}\n", result.gap, result.what);
        fmt::print("the most resident memory that one took meanwhile:\n");
        std::ranges::sort(results, std::ranges::greater(), &Measured::growth);
        for (const auto& result : worst)
            fmt::print("{:8.1f} MiB  {}\n", static_cast<double>(result.growth) / 1024, result.what);
        return results.empty() ? mostGrowth : results.front().growth;
    }

    static HttpLimits limits(std::chrono::milliseconds total)
    {
        return {.silence = 1s, .total = total, .download = std::uint64_t{1} << 20U};
    }

    void steer(std::size_t fetch, std::size_t fault)
    {
        std::optional<Result<HttpResponse>> done;
        TaskScope scope;
        scope.start(testing::keepResult(
            steerer_.send({.url = *Url::parse(fmt::format("{}{}?{},{}", base_, steering + 1, fetch, fault))}), &done));
        if (!testing::iterateUntil([&] { return done.has_value(); }))
            std::exit(EXIT_FAILURE);
    }

    std::string base_;
    std::vector<Fault> faults_ = everything();
    SoupHttpClient steerer_{"1"};
    testing::FetchingProgram program_;
    testing::FetchingProgram hurried_;
    std::vector<Measured> results_;
    bench::MainLoopGap gap_;
};

} // namespace

int main()
{
    const auto base = startServer();
    if (base.empty())
        return EXIT_FAILURE;
    Measuring measuring(base);
    measuring.measureAll();
    return measuring.tell() < mostGrowth ? EXIT_SUCCESS : EXIT_FAILURE;
}

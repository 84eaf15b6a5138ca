// Lets the scheduler and what it drives live through days of their own time, with a real client and a server that fails
// one request in three, and looks whether memory, descriptors and threads stay what they are and every check comes back
// in time. Prints one line of JSON; ends with 1 when something grows or comes at another time.

#include "network/SoakWorld.h"
#include "support/ProcessMeasures.h"

#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <malloc.h>

namespace {

using namespace corvane;

struct Options {
    int days = 60;
    int minutes = 0; // of real time; the days then follow from them
    unsigned seed = 2026;
};

/// What the process holds at one moment, after freed memory has gone back.
struct Mark {
    int day = 0;
    std::size_t heap = 0;     // bytes
    std::size_t resident = 0; // KiB
    std::size_t descriptors = 0;
    std::size_t threads = 0;

    static Mark at(int day)
    {
        ::malloc_trim(0);
        return {day, testing::heapBytes(), testing::statusKiB("VmRSS"), testing::openDescriptors(),
                testing::runningThreads()};
    }
    bool isNoMoreThan(const Mark& early) const
    {
        return heap <= early.heap + (256U << 10U) && resident <= early.resident + (2U << 10U) &&
               descriptors <= early.descriptors + 4 && threads <= early.threads + 2; // GLib's own come and go
    }
    std::string asJson() const
    {
        return fmt::format(R"({{"day":{},"heap bytes":{},"resident KiB":{},"descriptors":{},"threads":{}}})", day, heap,
                           resident, descriptors, threads);
    }
};

Options read(int count, char** arguments)
{
    Options options;
    for (int i = 1; i + 1 < count; i += 2) {
        const std::string name = arguments[i];
        const int value = std::atoi(arguments[i + 1]);
        if (name == "--days")
            options.days = value;
        else if (name == "--minutes")
            options.minutes = value;
        else if (name == "--seed")
            options.seed = static_cast<unsigned>(value);
    }
    return options;
}

} // namespace

int main(int count, char** arguments)
{
    const auto options = read(count, arguments);
    const auto start = std::chrono::steady_clock::now();
    const auto isOver = [&](int day) {
        if (options.minutes == 0)
            return day >= options.days;
        return std::chrono::steady_clock::now() - start >= std::chrono::minutes(options.minutes);
    };
    testing::SoakWorld world(options.seed);
    std::vector<Mark> marks;
    bool isAlive = true;
    constexpr int warmUp = 5; // days
    int day = 0;
    for (; isAlive && (day <= warmUp || !isOver(day)); ++day) {
        isAlive = world.live(std::chrono::hours(24));
        if (day % warmUp == 0)
            marks.push_back(Mark::at(day + 1));
    }
    marks.push_back(Mark::at(day));
    marks.erase(marks.begin()); // whatever is made once is there at the second

    const bool isFlat = marks.back().isNoMoreThan(marks.front());
    std::vector<std::string> told;
    for (const auto& mark : marks)
        told.push_back(mark.asJson());
    fmt::print(R"({{"seed":{},"days":{},"requests":{},"failed":{},"checks":[{}],"surprises":{},"ended":{},"flat":{},)",
               options.seed, day, world.requests(), world.failedRequests(), fmt::join(world.checks(), ","),
               world.surprises().size(), isAlive, isFlat);
    fmt::print("\"marks\":[{}]}}\n", fmt::join(told, ","));
    for (const auto& surprise : world.surprises())
        fmt::print(stderr, "{}\n", surprise);
    return isAlive && isFlat && world.surprises().empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}

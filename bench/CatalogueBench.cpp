// Measures reading, comparing and filtering catalogues of growing size, in nanoseconds an entry, and how reading
// compares with the JSON library alone on the same bytes. Usage: bench_catalogue [LARGEST]

#include "Timing.h"
#include "catalogue/SiteDocument.h"
#include "screens/SiteFilter.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace {

using corvane::bench::fastest;
using corvane::bench::keep;
using corvane::bench::Nanoseconds;

/// A catalogue document of `count` entries, with escapes and letters beyond ASCII here and there.
std::string documentOf(std::size_t count)
{
    std::string text = "[";
    for (std::size_t i = 0; i < count; ++i) {
        text +=
            fmt::format(R"({}{{"service":"Service {}{}","url":"https:\/\/chat{}.example.com\/start?from=catalogue",)"
                        R"("description":"A place to ask \"anything\", number {}, in many languages."}})",
                        i == 0 ? "" : ",\n", i, i % 7 == 0 ? " – Gespräch" : "", i, i);
    }
    return text + "]\n";
}

void measure(std::size_t count)
{
    const auto document = documentOf(count);
    const auto sites = corvane::decodeSites(document);
    if (!sites || sites->size() != count) {
        fmt::print(stderr, "bench_catalogue: a document of {} entries was not read\n", count);
        std::exit(1);
    }
    const auto same = corvane::decodeSites(document);
    const auto number = std::to_string(count - 1);

    const auto decode = fastest([&] { keep(corvane::decodeSites(document)); });
    const auto parse = fastest([&] { keep(nlohmann::json::parse(document)); });
    const auto compare = fastest([&] { keep(*sites == *same); });
    const auto filterFew = fastest([&] { keep(corvane::filteredSites(*sites, number)); });
    const auto filterAll = fastest([&] { keep(corvane::filteredSites(*sites, "service")); });

    const auto perEntry = [count](Nanoseconds time) { return time.count() / static_cast<double>(count); };
    fmt::print("{:>8} {:>10.1f} {:>12.1f} {:>7.2f} {:>10.2f} {:>12.1f} {:>12.1f} {:>12.2f}\n", count, perEntry(decode),
               perEntry(parse), decode / parse, perEntry(compare), perEntry(filterFew), perEntry(filterAll),
               filterFew.count() / 1e6);
}

} // namespace

int main(int argc, char** argv)
{
    const std::size_t largest = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 100'000;
    fmt::print("{:>8} {:>10} {:>12} {:>7} {:>10} {:>12} {:>12} {:>12}\n", "entries", "read", "JSON alone", "ratio",
               "compare", "filter: one", "filter: all", "one, whole");
    fmt::print("{:>8} {:>10} {:>12} {:>7} {:>10} {:>12} {:>12} {:>12}\n", "", "ns/entry", "ns/entry", "", "ns/entry",
               "ns/entry", "ns/entry", "ms");
    for (const std::size_t count : {100UL, 1'000UL, 10'000UL, 100'000UL}) {
        if (count <= largest)
            measure(count);
    }
    return 0;
}

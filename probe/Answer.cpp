#include "Answer.h"

#include <cstdio>
#include <cstdlib>

#include <fmt/format.h>

namespace corvane::probe {

void print(const Json& answer)
{
    fmt::print("{}\n", compactJson(answer));
    std::fflush(stdout);
}

int refuse(std::string_view why)
{
    static constexpr int wrongUse = 2;
    fmt::print(stderr, "corvane-probe: {}. See corvane-probe --help.\n", why);
    return wrongUse;
}

int report(const Result<Json>& answer)
{
    print(answer ? *answer : Json{{"error", answer.error().message}});
    return answer ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace corvane::probe

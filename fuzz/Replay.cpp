// Stands in for libFuzzer: reads each input of a folder once, in the order of their names.

#include "Target.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <fmt/format.h>

namespace corvane::fuzz {
namespace {

std::string currentInput;

std::vector<std::filesystem::path> inputsOf(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::path> inputs;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        inputs.push_back(entry.path());
    std::ranges::sort(inputs);
    return inputs;
}

/// Reads a copy of the exact size, so that the address sanitizer sees a byte read too many.
void replay(const std::filesystem::path& file)
{
    currentInput = file.string();
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
    fmt::print("{}: {} bytes\n", file.filename().string(), bytes.size());
    std::fflush(stdout); // for whoever looks into a crash
    readInput(std::string_view(bytes.data(), bytes.size()));
}

} // namespace

void require(bool holds, std::string_view claim)
{
    if (holds)
        return;
    fmt::print(stderr, "{}: does not hold: {}\n", currentInput, claim);
    std::abort();
}

} // namespace corvane::fuzz

int main(int count, char** arguments)
{
    if (count != 2) {
        fmt::print(stderr, "Usage: {} FOLDER\n", arguments[0]);
        return EXIT_FAILURE;
    }
    const auto inputs = corvane::fuzz::inputsOf(arguments[1]);
    std::ranges::for_each(inputs, corvane::fuzz::replay);
    fmt::print("{} inputs\n", inputs.size());
    return inputs.empty() ? EXIT_FAILURE : EXIT_SUCCESS;
}

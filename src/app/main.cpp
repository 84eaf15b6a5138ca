#include "app/AppDelegate.h"
#include "platform/ProxyBypass.h"
#include "platform/RendererChoice.h"
#include "ports/AppInfo.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <glib.h>
#include <unistd.h>

namespace {

constexpr std::string_view help =
    "Usage: corvane [--version] [--help]\n"
    "\n"
    "One window onto web-based AI chat services. Started again, it shows the window that\n"
    "is already open.\n";

/// Answers the options; the exit status, or -1 when the window is to be shown.
int answerOptions(int count, char** arguments)
{
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--version") {
            fmt::print("Corvane {}\n", corvane::AppInfo::ofThisBuild().shortVersion);
            return EXIT_SUCCESS;
        }
        if (argument == "--help" || argument == "-h") {
            fmt::print("{}", help);
            return EXIT_SUCCESS;
        }
        fmt::print(stderr, "corvane: unknown argument \"{}\"\n{}", argument, help);
        return 2;
    }
    return -1;
}

/// Puts the program in this process's place once more, without the variables that this one set for itself; returns only
/// when that is not possible.
void beginAnew(const std::filesystem::path& program, char** arguments, const std::vector<std::string>& ownVariables)
{
    for (const auto& variable : ownVariables)
        unsetenv(variable.c_str());
    execv(program.c_str(), arguments);
}

} // namespace

int main(int count, char** arguments)
{
    if (const int status = answerOptions(count, arguments); status >= 0)
        return status;
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error); // its name may be gone at the end
    corvane::keepLoopbackFromProxies();
    auto renderer = corvane::chooseRenderer();
    const auto ownVariables = renderer.ownVariables;
    g_set_prgname(corvane::AppInfo::applicationId);
    g_set_application_name("Corvane");
    auto delegate = std::make_unique<corvane::AppDelegate>(std::move(renderer));
    const int status = delegate->run();
    const bool isAskedForAgain = delegate->isAskedForAgain();
    delegate.reset();
    if (isAskedForAgain)
        beginAnew(program, arguments, ownVariables);
    return status;
}

#include "platform/SandboxCheck.h"

#include "platform/GLibHandle.h"

#include <array>
#include <cerrno>

#include <sys/wait.h>

namespace corvane {

SandboxCheck::SandboxCheck()
{
    std::array<const char*, 12> command{
        "bwrap", "--unshare-all", "--die-with-parent", "--ro-bind", "/", "/", "--proc", "/proc",
        "--dev", "/dev",          "/bin/true",         nullptr};
    GErrorSlot error;
    const auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD |
                                                G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL);
    if (g_spawn_async(nullptr, const_cast<char**>(command.data()), nullptr, flags, nullptr, nullptr, &child_,
                      error.out()) == FALSE)
        problem_ = "Corvane needs bubblewrap (the package \"bubblewrap\") to keep web pages confined.";
}

SandboxCheck::~SandboxCheck()
{
    static_cast<void>(problem());
}

std::optional<std::string> SandboxCheck::problem()
{
    if (child_ != 0) {
        int status = 0;
        while (waitpid(child_, &status, 0) < 0 && errno == EINTR) {
        }
        g_spawn_close_pid(child_);
        child_ = 0;
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
            problem_ = "This system does not allow user namespaces, without which web pages cannot be kept confined.";
    }
    return problem_;
}

} // namespace corvane

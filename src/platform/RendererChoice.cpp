#include "platform/RendererChoice.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include <malloc.h>

namespace corvane {
namespace {

bool hasRenderNode()
{
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/dri", error)) {
        if (entry.path().filename().string().starts_with("renderD"))
            return true;
    }
    return false;
}

/// Drawing with cairo allocates megabytes a frame; handing them back to the kernel after each frame costs two thirds of
/// the drawing process's time in page faults.
void keepFrameBuffers()
{
    mallopt(M_MMAP_THRESHOLD, 32 << 20);
    mallopt(M_TRIM_THRESHOLD, 64 << 20);
}

/// Sets the variables that the user has not set, and tells which.
RendererChoice software()
{
    // The toolkit probes OpenGL even when nothing is drawn with it, which takes tens of milliseconds without a GPU. Its
    // switch alone makes the engine complain. (The engine opens a display of its own through EGL in any case.)
    static constexpr std::array<std::pair<const char*, const char*>, 3> wanted{
        {{"GSK_RENDERER", "cairo"}, {"GDK_DEBUG", "gl-disable"}, {"WEBKIT_DISABLE_COMPOSITING_MODE", "1"}}};
    RendererChoice choice{.renderer = Renderer::software, .ownVariables = {}};
    for (const auto& [variable, value] : wanted) {
        if (std::getenv(variable) == nullptr && setenv(variable, value, 0) == 0)
            choice.ownVariables.emplace_back(variable);
    }
    keepFrameBuffers();
    return choice;
}

} // namespace

RendererChoice chooseRenderer()
{
    const char* chosen = std::getenv("GSK_RENDERER");
    const bool cairo = chosen != nullptr && std::string_view(chosen) == "cairo";
    if ((chosen == nullptr || cairo) && !hasRenderNode())
        return software();
    if (cairo)
        keepFrameBuffers();
    return {.renderer = Renderer::accelerated, .ownVariables = {}};
}

} // namespace corvane

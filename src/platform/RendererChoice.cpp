#include "platform/RendererChoice.h"

#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

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

} // namespace

RendererChoice chooseRenderer()
{
    static constexpr auto variable = "GSK_RENDERER";
    const char* chosen = std::getenv(variable);
    if (chosen == nullptr && !hasRenderNode()) {
        setenv(variable, "cairo", 1);
        keepFrameBuffers();
        return {.renderer = Renderer::software, .ownVariables = {variable}};
    }
    if (chosen != nullptr && std::string_view(chosen) == "cairo") {
        keepFrameBuffers();
        return {.renderer = hasRenderNode() ? Renderer::accelerated : Renderer::software, .ownVariables = {}};
    }
    return {.renderer = Renderer::accelerated, .ownVariables = {}};
}

} // namespace corvane

#include "platform/RendererChoice.h"

#include <cstdlib>
#include <filesystem>
#include <string>
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

Renderer chooseRenderer()
{
    const char* chosen = std::getenv("GSK_RENDERER");
    if (chosen == nullptr && !hasRenderNode()) {
        setenv("GSK_RENDERER", "cairo", 1);
        keepFrameBuffers();
        return Renderer::software;
    }
    if (chosen != nullptr && std::string_view(chosen) == "cairo") {
        keepFrameBuffers();
        return hasRenderNode() ? Renderer::accelerated : Renderer::software;
    }
    return Renderer::accelerated;
}

} // namespace corvane

#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace corvane {

enum class Renderer : std::uint8_t {
    accelerated, // the toolkit's and the engine's defaults
    software,    // cairo, no acceleration in the engine, frame buffers kept
};

struct RendererChoice {
    Renderer renderer;
    std::vector<std::string> ownVariables; // set in the environment for this process alone
};

/// Decides how this process draws: in software where the machine has no render node and the user chose no renderer.
/// Call first thing in `main`, before the toolkit starts and before there is a second thread.
/// Without a GPU the default renderers emulate one and take seconds to show the first page.
RendererChoice chooseRenderer();

} // namespace corvane

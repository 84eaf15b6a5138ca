#pragma once

#include <optional>
#include <string>

#include <glib.h>

namespace corvane {

/// Whether the engine can confine its web processes on this machine. Where it cannot, the engine ends the whole program
/// at the first view; asking first lets the program say why. The check runs beside the start of the toolkit.
class SandboxCheck {
public:
    /// Begins the check.
    SandboxCheck();
    ~SandboxCheck();
    SandboxCheck(const SandboxCheck&) = delete;
    SandboxCheck& operator=(const SandboxCheck&) = delete;

    /// Waits for the few milliseconds that may be left; a sentence for the user when there is no sandbox.
    std::optional<std::string> problem();

private:
    GPid child_ = 0;
    std::optional<std::string> problem_;
};

} // namespace corvane

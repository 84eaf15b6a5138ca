#pragma once

#include "ports/Desktop.h"

#include <functional>
#include <string>
#include <vector>

namespace corvane {

/// The desktop by GIO's default applications and the default display's clipboard. Nothing goes through a shell.
class GioDesktop final : public Desktop {
public:
    /// `quit` ends the program's main loop in the ordinary way. The environment variables in `ownVariables` are this
    /// program's alone: what it opens does not get them.
    explicit GioDesktop(std::function<void()> quit, std::vector<std::string> ownVariables = {});

    void open(const Url& url) override;
    void copyText(std::string_view text) override;
    void quit() override;

private:
    std::function<void()> quit_;
    std::vector<std::string> ownVariables_;
};

} // namespace corvane

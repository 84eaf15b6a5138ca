#pragma once

#include "ports/Desktop.h"

#include <functional>

namespace corvane {

/// The desktop by GIO's default applications and the default display's clipboard. Nothing goes through a shell.
class GioDesktop final : public Desktop {
public:
    /// `quit` ends the program's main loop in the ordinary way.
    explicit GioDesktop(std::function<void()> quit);

    void open(const Url& url) override;
    void copyText(std::string_view text) override;
    void quit() override;

private:
    std::function<void()> quit_;
};

} // namespace corvane

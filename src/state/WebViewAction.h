#pragma once

#include <cstdint>

namespace corvane {

/// A command to the browser.
enum class WebViewAction : std::uint8_t { goBack, goForward, reload, stop, goHome };

} // namespace corvane

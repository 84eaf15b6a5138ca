#pragma once

#include "base/Subscription.h"
#include "base/Url.h"

#include <functional>
#include <string_view>

namespace corvane {

/// What the program asks of the user's desktop.
class Desktop {
public:
    virtual ~Desktop() = default;

    /// Hands an address to its default application. A mailto address loses its attachments. Whether anything opened is
    /// not reported.
    virtual void open(const Url& url) = 0;

    /// Puts plain text on the clipboard.
    virtual void copyText(std::string_view text) = 0;

    /// Ends the program in the ordinary way.
    virtual void quit() = 0;
};

} // namespace corvane

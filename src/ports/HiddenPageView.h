#pragma once

#include "base/Url.h"

#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace corvane {

/// Why a request under a custom scheme fails.
struct SchemeFailure {
    std::string domain;
    int code = 0;
};

/// What a hidden page is made with. The callbacks come on the main thread, none after the view is gone; none may
/// destroy it.
struct HiddenPageConfiguration {
    std::string messageHandler; // the name of the channel from the page to the program

    /// Receives each message as JSON, UTF-8. What has no JSON form, or more than 64 KB of it, is left out.
    std::function<void(const std::string& json)> messageReceived;

    std::string scheme; // the custom scheme, known in this view alone

    /// Answers a request under the scheme with the page, UTF-8. `address` may be empty.
    std::function<std::expected<std::string, SchemeFailure>(const std::string& address)> answerRequest;
};

/// A page that nobody sees: its scripts run at full speed without any window, and nothing it stores outlives the view.
/// Main thread only.
class HiddenPageView {
public:
    virtual ~HiddenPageView() = default;

    /// A load that fails is not told.
    virtual void load(const Url& url) = 0;

    /// Runs a script in the page's own world; result and errors are ignored.
    virtual void evaluate(std::string_view script) = 0;
};

class HiddenPageViewFactory {
public:
    virtual ~HiddenPageViewFactory() = default;

    virtual std::unique_ptr<HiddenPageView> makeHiddenPageView(HiddenPageConfiguration configuration) = 0;
};

} // namespace corvane

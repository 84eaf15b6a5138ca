#pragma once

#include <memory>
#include <string>
#include <utility>

namespace corvane {

class AnalyticsWebView;

/// What the page's channel to the program is connected to: it hands messages to its owner as long as there is one.
class MessageHandler {
public:
    static constexpr const char* name = "analyticsBridge";

    explicit MessageHandler(std::weak_ptr<AnalyticsWebView> owner) : owner_(std::move(owner)) {}

    void receive(const std::string& body) const;

private:
    std::weak_ptr<AnalyticsWebView> owner_;
};

} // namespace corvane

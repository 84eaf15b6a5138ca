#include "analytics/AnalyticsWebView.h"

#include "analytics/AnalyticsPage.h"
#include "analytics/MessageHandler.h"
#include "base/Text.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

namespace corvane {
namespace {

/// The nesting of a message from the page; no known one has more than two levels.
constexpr std::size_t deepestMessage = 64;

void replaceAll(std::string& text, std::string_view what, std::string_view by)
{
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
}

bool isSerialisable(const Json& value)
{
    if (value.is_number_float())
        return std::isfinite(value.get<double>());
    return !value.is_structured() || std::ranges::all_of(value, isSerialisable);
}

/// Compact JSON that is a script literal for every engine: older ones end a line at U+2028 and U+2029.
std::optional<std::string> serialised(const Json& object)
{
    if (!isSerialisable(object))
        return std::nullopt;
    std::string text;
    try {
        text = object.dump();
    } catch (const Json::type_error&) { // text that is not UTF-8
        return std::nullopt;
    }
    replaceAll(text, "\u2028", "\\u2028");
    replaceAll(text, "\u2029", "\\u2029");
    return text;
}

} // namespace

AnalyticsWebView::AnalyticsWebView(const Parts& parts) : parts_(parts) {}

void AnalyticsWebView::setUp()
{
    if (webView_)
        return;
    webView_ = parts_.views.makeHiddenPageView(configuration());
    auto page = loadPageResource();
    if (!page)
        return;
    schemeHandler_->setHtmlContent(*page);
    parts_.server.startServer(*std::move(page),
                              [weak = weak_from_this()](const std::expected<Url, LoopbackFailure>& address) {
                                  if (const auto self = weak.lock()) {
                                      const auto other = Url::parse(AnalyticsURLSchemeHandler::pageAddress);
                                      self->webView_->load(address ? *address : *other);
                                  }
                              });
}

HiddenPageConfiguration AnalyticsWebView::configuration()
{
    return {
        .messageHandler = MessageHandler::name,
        .messageReceived = [handler =
                                MessageHandler(weak_from_this())](const std::string& json) { handler.receive(json); },
        .scheme = AnalyticsURLSchemeHandler::scheme,
        .answerRequest = [handler = schemeHandler_](const std::string& address) { return handler->answer(address); },
    };
}

std::optional<std::string> AnalyticsWebView::loadPageResource() const
{
    const auto resource = parts_.resources.read("analytics_webview", "html");
    if (!resource || !isValidUtf8(*resource))
        return std::nullopt;
    return analyticsPage(*resource, parts_.endpoints);
}

void AnalyticsWebView::setSignals(Signals signals)
{
    const std::scoped_lock guard(lock_);
    signals_ = std::move(signals);
}

bool AnalyticsWebView::isReady() const
{
    const std::scoped_lock guard(lock_);
    return isReady_;
}

void AnalyticsWebView::sendMessage(const Json& object)
{
    auto message = serialised(object);
    if (!message)
        return;
    {
        const std::scoped_lock guard(lock_);
        if (!isReady_) {
            pendingMessages_.push_back(*std::move(message));
            return;
        }
    }
    postToPage(*std::move(message));
}

void AnalyticsWebView::postToPage(std::string message)
{
    parts_.queue.postFromAnyThread([weak = weak_from_this(), message = std::move(message)] {
        const auto self = weak.lock();
        if (self && self->webView_)
            self->webView_->evaluate("receiveNativeMessage(" + message + ");");
    });
}

void AnalyticsWebView::flushPendingMessages()
{
    std::vector<std::string> messages;
    {
        const std::scoped_lock guard(lock_);
        messages.swap(pendingMessages_);
    }
    for (auto& message : messages)
        postToPage(std::move(message));
}

void AnalyticsWebView::dropPendingMessages()
{
    const std::scoped_lock guard(lock_);
    pendingMessages_.clear();
}

void AnalyticsWebView::handleMessage(const std::string& body)
{
    const auto message = parseJson(body, deepestMessage);
    const auto* type = message ? textOf(member(*message, "type")) : nullptr;
    if (type == nullptr)
        return;
    if (*type == "ready")
        becomeReady();
    else if (*type == "configured")
        postSignal(&Signals::onConfigured);
    else if (*type == "ga_collect")
        postSignal(&Signals::onCollectVerified);
    // "event_sent", "event_error", "configure_error" and "gtag_load_error" are for whoever debugs the page.
}

void AnalyticsWebView::becomeReady()
{
    {
        const std::scoped_lock guard(lock_);
        if (std::exchange(isReady_, true))
            return;
    }
    postSignal(&Signals::onReady);
}

void AnalyticsWebView::postSignal(Signal signal)
{
    parts_.queue.postFromAnyThread([weak = weak_from_this(), signal] {
        const auto self = weak.lock();
        if (!self)
            return;
        if (signal == &Signals::onConfigured)
            self->flushPendingMessages();
        if (const auto call = self->signal(signal))
            call();
    });
}

std::function<void()> AnalyticsWebView::signal(Signal signal) const
{
    const std::scoped_lock guard(lock_);
    return signals_.*signal;
}

} // namespace corvane

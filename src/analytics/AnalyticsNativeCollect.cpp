#include "analytics/AnalyticsNativeCollect.h"

#include "base/Text.h"

#include <algorithm>
#include <chrono>
#include <tuple>
#include <utility>
#include <variant>

#include <fmt/format.h>

namespace corvane {
namespace {

std::string languageOf(std::string locale)
{
    std::ranges::replace(locale, '_', '-');
    return lowercased(locale);
}

/// The shortest decimal form that reads back as the same number, recognisable as a real one.
std::string textOf(double number)
{
    auto text = fmt::to_string(number);
    if (text.find_first_not_of("-0123456789") == std::string::npos)
        text += ".0";
    return text;
}

std::string textOf(const AnalyticsValue& value)
{
    struct Writer {
        std::string operator()(const std::string& text) const { return text; }
        std::string operator()(std::int64_t number) const { return fmt::to_string(number); }
        std::string operator()(double number) const { return textOf(number); }
        std::string operator()(bool flag) const { return flag ? "1" : "0"; }
    };
    return std::visit(Writer(), value);
}

/// A query whose names and values keep unreserved characters only, so that no reader takes a "+" for a space.
class Query {
public:
    void add(std::string_view name, std::string_view value)
    {
        text_ += text_.empty() ? '?' : '&';
        text_ += percentEncodedComponent(repairedUtf8(name));
        text_ += '=';
        text_ += percentEncodedComponent(repairedUtf8(value));
    }

    const std::string& text() const { return text_; }

private:
    std::string text_;
};

} // namespace

AnalyticsNativeCollect::AnalyticsNativeCollect(HttpClient& http, MainQueue& queue, const Clock& clock,
                                               const HostInfo& host, const Endpoints& endpoints)
    : http_(http), queue_(queue),
      endpoint_(endpoints.collect.text().substr(0, endpoints.collect.text().find_first_of("?#"))),
      measurementId_(endpoints.measurementId), language_(languageOf(host.localeIdentifier())),
      sessionId_(std::chrono::floor<std::chrono::seconds>(clock.now().time_since_epoch()).count())
{
}

void AnalyticsNativeCollect::sendEvent(std::string_view name, const AnalyticsParams& params, std::string_view clientId,
                                       std::string_view appVersion)
{
    Query query;
    query.add("v", "2");
    query.add("tid", measurementId_);
    query.add("cid", clientId);
    query.add("en", name);
    query.add("sid", fmt::to_string(sessionId_));
    query.add("sct", "1");
    query.add("seg", "1");
    query.add("_s", fmt::to_string(nextSequenceNumber()));
    query.add("ul", language_);
    query.add("up.app_version", appVersion);
    for (const auto& [key, value] : params)
        query.add("ep." + key, textOf(value));

    auto url = Url::parse(endpoint_ + query.text());
    if (!url)
        return;
    HttpRequest request{
        .url = *std::move(url), .method = HttpMethod::post, .headers = {{"Content-Type", "text/plain"}}};
    queue_.postFromAnyThread([weak = weak_from_this(), request = std::move(request)]() mutable {
        if (const auto self = weak.lock())
            self->requests_.start(self->exchange(std::move(request)));
    });
}

std::int64_t AnalyticsNativeCollect::nextSequenceNumber()
{
    const std::scoped_lock guard(lock_);
    return ++hitCount_;
}

Task<void> AnalyticsNativeCollect::exchange(HttpRequest request)
{
    const auto hold = busy_.hold();
    std::ignore = co_await http_.send(std::move(request));
}

} // namespace corvane

#include "analytics/MessageHandler.h"

#include "analytics/AnalyticsWebView.h"

namespace corvane {

void MessageHandler::receive(const std::string& body) const
{
    if (const auto owner = owner_.lock())
        owner->handleMessage(body);
}

} // namespace corvane

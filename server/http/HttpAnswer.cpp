#include "http/HttpAnswer.h"

namespace corvane::server {

HttpAnswer HttpAnswer::json(unsigned status, const Json& document)
{
    HttpAnswer answer = text("application/json", compactJson(document));
    answer.status = status;
    return std::move(answer).with("Cache-Control", "no-store");
}

HttpAnswer HttpAnswer::error(unsigned status, std::string_view code, std::string_view message)
{
    return json(status, {{"error", code}, {"message", message}});
}

HttpAnswer HttpAnswer::text(std::string_view contentType, std::string body)
{
    HttpAnswer answer;
    answer.headers.emplace_back("Content-Type", contentType);
    answer.body = std::move(body);
    return answer;
}

} // namespace corvane::server

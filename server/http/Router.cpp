#include "http/Router.h"

#include "base/Text.h"
#include "data/DatabaseError.h"

#include <fmt/format.h>

namespace corvane::server {
namespace {

bool isJson(std::string_view contentType)
{
    return lowercased(trimmedBlanks(contentType.substr(0, contentType.find(';')))) == "application/json";
}

} // namespace

void Router::add(std::string method, std::string path, Handler handler)
{
    routes_[std::move(path)].insert_or_assign(std::move(method), Route{.handler = std::move(handler)});
}

void Router::addOpen(std::string method, std::string path, Handler handler)
{
    routes_[std::move(path)].insert_or_assign(std::move(method), Route{.handler = std::move(handler), .isOpen = true});
}

void Router::addOrigin(const Url& url)
{
    const auto origin = url.origin();
    origins_.insert(origin);
    hosts_.insert(origin.substr(url.scheme().size() + 3));
}

HttpAnswer Router::answer(const HttpRequest& request) const
{
    try {
        return dispatch(request);
    } catch (const DatabaseError& error) {
        fmt::print(stderr, "corvane-server: {} {}: {}\n", request.method, request.path, error.what());
        return HttpAnswer::error(500, "internal", "The server could not use its database.");
    }
}

HttpAnswer Router::dispatch(const HttpRequest& request) const
{
    if (!hosts_.contains(lowercased(request.host)))
        return HttpAnswer::error(421, "unknown_host", "This server is not known under that name.");

    const auto route = routes_.find(request.path);
    if (route == routes_.end())
        return fallback_(request);

    const auto& methods = route->second;
    const auto found = methods.find(request.method == "HEAD" ? "GET" : request.method);
    if (found == methods.end())
        return HttpAnswer::error(405, "method_not_allowed", "This address does not know that method.")
            .with("Allow", allowed(methods));
    const auto& [handler, isOpen] = found->second;
    if (isOpen)
        return handler(request).with("Access-Control-Allow-Origin", "*").with("Timing-Allow-Origin", "*");
    return request.isReading() ? handler(request) : checkedChange(request, handler);
}

std::string Router::allowed(const Methods& methods)
{
    std::string allowed;
    for (const auto& [method, route] : methods) {
        allowed += allowed.empty() ? "" : ", ";
        allowed += method == "GET" ? "GET, HEAD" : method;
    }
    return allowed;
}

HttpAnswer Router::checkedChange(const HttpRequest& request, const Handler& handler) const
{
    if (!request.origin.empty() && !origins_.contains(request.origin))
        return HttpAnswer::error(403, "foreign_origin", "Only this server's own pages may send this.");
    if (!isJson(request.contentType))
        return HttpAnswer::error(415, "not_json", "The Content-Type must be application/json.");
    return handler(request);
}

} // namespace corvane::server

#pragma once

#include "base/Url.h"
#include "http/HttpAnswer.h"
#include "http/HttpRequest.h"

#include <functional>
#include <map>
#include <set>
#include <string>

namespace corvane::server {

/// Finds who answers a request and keeps the rules that hold for all of them:
/// the Host must be one of this server's own names (so that no foreign name can be made to point here), and a request
/// that changes something must carry JSON and, when a browser says where it comes from, come from our own pages. A
/// page of another origin can send neither without a permission, which this server gives for open addresses only.
class Router {
public:
    using Handler = std::function<HttpAnswer(const HttpRequest&)>;

    /// `method` is GET (which answers HEAD too), POST or DELETE; `path` is exact.
    void add(std::string method, std::string path, Handler handler);

    /// As `add`, for an address that is there for the pages of every origin: whoever sends what is nobody's concern,
    /// and the answer may be read without credentials. It must neither tell nor change anything that is somebody's.
    void addOpen(std::string method, std::string path, Handler handler);

    /// Who answers a path that was not added.
    void setFallback(Handler handler) { fallback_ = std::move(handler); }

    /// Adds an http or https origin as which this server is known.
    void addOrigin(const Url& url);

    HttpAnswer answer(const HttpRequest& request) const;

private:
    struct Route {
        Handler handler;
        bool isOpen = false;
    };
    using Methods = std::map<std::string, Route>;

    static std::string allowed(const Methods& methods);

    HttpAnswer dispatch(const HttpRequest& request) const;
    HttpAnswer checkedChange(const HttpRequest& request, const Handler& handler) const;

    std::map<std::string, Methods> routes_; // by path, then by method
    Handler fallback_;
    std::set<std::string> origins_;
    std::set<std::string> hosts_;
};

} // namespace corvane::server

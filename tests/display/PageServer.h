#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <libsoup/soup.h>

namespace corvane::testing {

/// A web server in this process, on a free port of 127.0.0.1. A page reaches it as two sites: by that address and as
/// "localhost".
class PageServer {
public:
    struct Page {
        std::string body;
        std::string type = "text/html; charset=utf-8";
        std::map<std::string, std::string> headers = {};
        unsigned status = 200;
        bool isSilent = false; // never answered
    };

    struct Request {
        std::string path; // with its query
        std::string method;
        std::string userAgent;
        std::string accept;
        std::string body;
    };

    PageServer();
    ~PageServer();
    PageServer(const PageServer&) = delete;
    PageServer& operator=(const PageServer&) = delete;

    /// Pages by path, without query. Everything else is 404.
    std::map<std::string, Page> pages;

    /// Requests for pages that exist, in order.
    std::vector<Request> requests;

    /// Requests for pages that do not exist, also those of other hosts where this is a client's proxy.
    std::vector<Request> missed;

    std::size_t hits(const std::string& path) const;

    /// "http://127.0.0.1:port" and "http://localhost:port", without a slash at the end.
    std::string site() const { return "http://127.0.0.1:" + std::to_string(port_); }
    std::string otherSite() const { return "http://localhost:" + std::to_string(port_); }

private:
    static void answer(SoupServer* server, SoupServerMessage* message, const char* path, GHashTable* query,
                       gpointer self);

    SoupServer* server_;
    unsigned port_ = 0;
    std::vector<SoupServerMessage*> silent_;
};

} // namespace corvane::testing

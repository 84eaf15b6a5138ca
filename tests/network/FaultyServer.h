#pragma once

#include "platform/GzipOfZeros.h"
#include "platform/HttpLimits.h"
#include "platform/RawServer.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <fmt/format.h>

namespace corvane::testing {

/// One way in which a server can go wrong.
struct Fault {
    std::string name;
    std::function<RawServer::Reply(const std::string& good)> reply; // in place of a good document
};

/// Limits that a test reaches at once.
inline constexpr HttpLimits tinyLimits{.silence = std::chrono::seconds(1),
                                       .total = std::chrono::milliseconds(250),
                                       .jsonBody = 4096,
                                       .pageBody = 8192,
                                       .download = 65536,
                                       .redirects = 3};

/// A publishing server, store and download host in one that offers documents by path and can be made to go wrong for
/// one of them.
class FaultyServer {
public:
    FaultyServer()
    {
        server_.respond = [this](const std::string& request) { return answer(request); };
    }

    std::string base() const { return server_.url("/").text(); }
    Url url(std::string_view path) const { return server_.url(path); }
    RawServer& raw() { return server_; }

    std::map<std::string, std::string> documents; // by path without the query
    std::string faultyPath;
    const Fault* fault = nullptr;

    /// Faults of the transport: whatever was asked for, the request has failed.
    static const std::vector<Fault>& transportFaults()
    {
        using Then = RawServer::Reply::Then;
        using Reply = RawServer::Reply;
        static const std::vector<Fault> faults{
            {"hangs up", [](const std::string&) { return Reply{}; }},
            {"is silent", [](const std::string&) { return Reply{"", Then::wait}; }},
            {"falls silent",
             [](const std::string&) { return Reply{"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n[", Then::wait}; }},
            {"is cut off",
             [](const std::string& good) {
                 return Reply{fmt::format("HTTP/1.1 200 OK\r\nContent-Length: {}\r\n\r\n{}", good.size() + 1, good)};
             }},
            {"breaks its chunks",
             [](const std::string& good) {
                 return Reply{"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nfff\r\n" + good};
             }},
            {"speaks another protocol", [](const std::string& good) { return Reply{"220 mail ready\r\n" + good}; }},
            {"announces too much",
             [](const std::string&) {
                 return Reply{"HTTP/1.1 200 OK\r\nContent-Length: 99999999999\r\n\r\n[", Then::wait};
             }},
            {"sends too much", [](const std::string& good) { return RawServer::ok(good + std::string(70'000, ' ')); }},
            {"sends a bomb",
             [](const std::string&) {
                 static const auto bomb = gzipOfZeros(std::size_t{64} << 20U);
                 return RawServer::ok(bomb, "Content-Encoding: gzip\r\n");
             }},
            {"redirects in a circle", [](const std::string&) { return RawServer::redirect(302, "?again"); }},
            {"redirects to a file",
             [](const std::string&) { return RawServer::redirect(301, "file:///etc/hostname"); }},
            {"redirects to a script", [](const std::string&) { return RawServer::redirect(301, "javascript:1"); }},
            {"redirects to nowhere",
             [](const std::string&) { return RawServer::redirect(307, "http://127.0.0.1:1/"); }},
        };
        return faults;
    }

private:
    RawServer::Reply answer(const std::string& request) const
    {
        const auto start = request.find(' ') + 1;
        const auto path = request.substr(start, request.find_first_of("? ", start) - start);
        const auto found = documents.find(path);
        const auto good = found == documents.end() ? "" : found->second;
        if (fault != nullptr && path == faultyPath)
            return fault->reply(good);
        if (found == documents.end())
            return {"HTTP/1.1 404 Not Found\r\nContent-Length: 15\r\n\r\n<!DOCTYPE html>",
                    RawServer::Reply::Then::wait};
        return RawServer::ok(good);
    }

    RawServer server_;
};

} // namespace corvane::testing

#pragma once

#include "network/Fault.h"

#include <map>
#include <string>
#include <string_view>

namespace corvane::testing {

/// Every server of the program in one: offers documents by path, and can be made to go wrong for one of them.
class FaultyServer {
public:
    FaultyServer()
    {
        server_.respond = [this](const std::string& request) { return answer(request); };
    }

    std::string base() const { return server_.url("/").text(); }
    Url url(std::string_view path) const { return server_.url(path); }
    RawServer& raw() { return server_; }

    /// Answers requests for `path` with this fault, which must outlive that.
    void goWrong(std::string path, const Fault& fault)
    {
        faultyPath_ = std::move(path);
        fault_ = &fault;
    }
    void heal() { fault_ = nullptr; }

    std::map<std::string, std::string> documents; // by path without the query

    static std::string pathOf(const std::string& request)
    {
        const auto start = request.find(' ') + 1;
        return request.substr(start, request.find_first_of("? ", start) - start);
    }

private:
    RawServer::Reply answer(const std::string& request) const
    {
        const auto path = pathOf(request);
        const auto found = documents.find(path);
        if (fault_ != nullptr && path == faultyPath_)
            return fault_->reply(found == documents.end() ? "" : found->second, request);
        if (found == documents.end())
            return {"HTTP/1.1 404 Not Found\r\nContent-Length: 15\r\n\r\n<!DOCTYPE html>",
                    RawServer::Reply::Then::wait};
        return RawServer::ok(found->second);
    }

    std::string faultyPath_;
    const Fault* fault_ = nullptr;
    RawServer server_;
};

} // namespace corvane::testing

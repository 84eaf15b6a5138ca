#pragma once

#include "platform/RawServer.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace corvane::testing {

/// One way in which a server can answer a request for a document, and what the program may see of that.
struct Fault {
    /// Of the body; none of them but the document itself is JSON.
    enum class Arrives : std::uint8_t { nothing, document, text, bytes, empty };

    /// `good` is the document, `request` what was asked.
    using Reply = std::function<RawServer::Reply(const std::string& good, const std::string& request)>;

    std::string name;
    Reply reply;
    Arrives arrives = Arrives::nothing; // nothing: the request has failed
    int status = 200;                   // of what arrives
    enum class Lasts : std::uint8_t { briefly, untilSilent, forever } lasts = Lasts::briefly;
};

/// Every way that we know of, by what is wrong with it.
std::vector<Fault> startFaults();    // the status line, the headers, statuses with rules of their own
std::vector<Fault> lengthFaults();   // Content-Length and chunks
std::vector<Fault> encodingFaults(); // compression and characters
std::vector<Fault> courseFaults();   // redirects, slowness, breaks
std::vector<Fault> allFaults();

} // namespace corvane::testing

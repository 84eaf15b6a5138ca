#pragma once

#include <stdexcept>

namespace corvane::server {

/// The database could not do its work: the disk is full, the file is locked or damaged. Nobody can go on from that in
/// the middle of a request, so it travels as an exception to the two places that end one: the router, which answers
/// with status 500, and a command, which prints it.
class DatabaseError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace corvane::server

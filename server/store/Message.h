#pragma once

#include "base/Error.h"

#include <string>
#include <string_view>

namespace corvane::server {

/// What a campaign says. Checked, so that a full answer of pending deliveries stays below what a client reads.
struct Message {
    static constexpr std::size_t longestTitle = 200; // code points
    static constexpr std::size_t longestBody = 16 * 1024;
    static constexpr std::size_t longestUrl = 2048;

    std::string title; // one line
    std::string body;  // plain text with line breaks, or an HTML fragment; may be empty
    std::string url;   // http, https or mailto; may be empty

    /// A message of these texts, or what is wrong with them.
    static Result<Message> checked(std::string_view title, std::string_view body, std::string_view url);
};

} // namespace corvane::server

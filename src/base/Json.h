#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace corvane {

/// A JSON document. Never copy, compare or print one that came from outside: those recurse.
using Json = nlohmann::json;

/// The deepest nesting of arrays and objects that is read.
inline constexpr std::size_t deepestJson = 512;

/// The most values that are read in one piece, each array and object being one. A tree may take 150 bytes for a value
/// of seven, so that an answer of 4 MiB would grow to 140 MiB and take half a second.
inline constexpr std::size_t mostJsonValues = 100'000;

/// Reads one JSON document (RFC 8259, UTF-8). Empty when it is malformed, nested deeper than `deepest`, or has more
/// than `mostJsonValues`.
std::optional<Json> parseJson(std::string_view text, std::size_t deepest = deepestJson);

/// The member `key` of an object; null when `value` is no object or has no such member.
const Json* member(const Json& value, std::string_view key);

/// The text of a JSON string; null for every other type or no value.
const std::string* textOf(const Json* value);

/// An integer as it is; a real truncated toward zero, or nothing when that leaves the signed 64-bit range.
std::optional<std::int64_t> integerOf(const Json& number);

/// The document as compact JSON; text that is not UTF-8 is repaired. For documents of our own making only.
std::string compactJson(const Json& document);

} // namespace corvane

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// Text without the Unicode white space and line breaks at both ends. The view is into `text`.
std::string_view trimmed(std::string_view text);

/// Text without the spaces and tabs at both ends; line breaks stay.
std::string_view trimmedBlanks(std::string_view text);

/// How many bytes of Unicode white space, line breaks included, `text` begins with.
std::size_t leadingWhiteSpace(std::string_view text);

/// ASCII letters in lower case, every other byte as it is.
std::string lowercased(std::string_view text);

/// Whether `text` contains `part` when the case of letters is ignored. An empty part is contained in everything.
bool containsIgnoringCase(std::string_view text, std::string_view part);

/// Whether every byte belongs to well-formed UTF-8 (RFC 3629: no surrogates, no overlong forms).
bool isValidUtf8(std::string_view bytes);

/// Well-formed UTF-8 made of `bytes`, each broken sequence replaced by U+FFFD.
std::string repairedUtf8(std::string_view bytes);

/// The first `count` code points of well-formed UTF-8. The view is into `text`.
std::string_view firstCodePoints(std::string_view text, std::size_t count);

/// An optional single sign, then ASCII digits and nothing else, within the signed 64-bit range.
std::optional<std::int64_t> strictInteger(std::string_view text);

/// `text` with every byte outside RFC 3986's query set written as %XX.
std::string percentEncodedForQuery(std::string_view text);

/// `text` with every byte outside RFC 3986's unreserved set written as %XX: safe as one query value or form value.
std::string percentEncodedComponent(std::string_view text);

/// `text` with every well-formed %XX turned into its byte, once.
std::string percentDecoded(std::string_view text);

/// A title from a page, fit for a title bar: at most 300 code points, no control characters and no characters that
/// change the direction of the text.
std::string safeTitle(std::string_view title);

} // namespace corvane

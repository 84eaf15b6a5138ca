#pragma once

#include <string>
#include <vector>

namespace corvane::testing {

/// Texts of a server that try to run a script, to load a frame, or to fetch what is no image. A script of theirs asks
/// `site` for "/script", a style for "/style", a frame for "/frame" and "/framed", a page of its own for "/away"; an
/// image that anybody may show is "/seen".
std::vector<std::string> hostileTexts(const std::string& site);

/// The attributes of hostile links, to be put into an "a" element.
std::vector<std::string> hostileLinks(const std::string& site);

/// Strings that others have collected, where they lie beside the checkout; else none.
std::vector<std::string> naughtyStrings();

} // namespace corvane::testing

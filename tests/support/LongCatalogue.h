#pragma once

#include "catalogue/JsonSlices.h"

#include <string>

#include <fmt/format.h>

namespace corvane::testing {

/// A catalogue document of several slices whose first service bears this name.
inline std::string longCatalogue(std::string_view first)
{
    auto text = fmt::format(R"([{{"service":"{}","url":"u","description":"d"}})", first);
    while (text.size() < 3 * JsonSlices::usualSize)
        text += fmt::format(R"(,{{"service":"{}","url":"u","description":"{}"}})", text.size(), std::string(1000, 'd'));
    return text + "]";
}

} // namespace corvane::testing

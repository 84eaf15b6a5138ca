#pragma once

#include "ports/ByteSink.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace corvane::testing {

/// Keeps what it gets.
class KeptBytes final : public ByteSink {
public:
    Result<void> write(std::string_view bytes) override
    {
        text += bytes;
        return {};
    }
    std::string text;
};

/// What comes out of `bytes` in pieces of `size`; "broken" or with "…" at its end where it is not complete.
template <typename Sink>
std::string undone(std::string_view bytes, std::size_t size)
{
    KeptBytes kept;
    Sink sink(kept);
    for (; !bytes.empty(); bytes.remove_prefix(std::min(size, bytes.size()))) {
        if (!sink.write(bytes.substr(0, size)))
            return "broken";
    }
    return sink.isComplete() ? kept.text : kept.text + "…";
}

struct UndoneCase {
    std::string travelling, undone;
};

/// Whatever the pieces are in which it arrives.
template <typename Sink>
void expectUndone(const std::vector<UndoneCase>& cases)
{
    for (const auto& [travelling, expected] : cases) {
        for (const std::size_t size : {std::size_t{1}, std::size_t{3}, std::size_t{1'000'000}})
            EXPECT_EQ(undone<Sink>(travelling, size), expected) << travelling.substr(0, 40) << " by " << size;
    }
}

} // namespace corvane::testing

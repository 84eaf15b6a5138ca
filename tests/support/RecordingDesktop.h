#pragma once

#include "ports/Desktop.h"

#include <string>
#include <vector>

namespace corvane::testing {

/// A desktop that writes down what it is asked.
class RecordingDesktop final : public Desktop {
public:
    void open(const Url& url) override { calls.push_back("open " + url.text()); }
    void copyText(std::string_view text) override { calls.push_back("copy " + std::string(text)); }
    void quit() override { calls.emplace_back("quit"); }

    std::vector<std::string> calls;
};

} // namespace corvane::testing

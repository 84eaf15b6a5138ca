#pragma once

#include "ports/HiddenPageView.h"

#include <string>
#include <vector>

namespace corvane::testing {

/// Makes hidden pages without an engine: it records what they are told, and a test speaks for the page.
class ScriptedHiddenPage final : public HiddenPageViewFactory {
public:
    std::unique_ptr<HiddenPageView> makeHiddenPageView(HiddenPageConfiguration wanted) override
    {
        configuration = std::move(wanted);
        ++made;
        return std::make_unique<View>(*this);
    }

    /// The page posts a message of this type, with nothing else in it.
    void say(const std::string& type) const { configuration.messageReceived(R"({"type":")" + type + R"("})"); }

    /// What the page was told since the last call.
    std::vector<std::string> takeScripts() { return std::exchange(scripts, {}); }

    HiddenPageConfiguration configuration;
    int made = 0;
    std::vector<std::string> loads;
    std::vector<std::string> scripts;

private:
    class View final : public HiddenPageView {
    public:
        explicit View(ScriptedHiddenPage& owner) : owner_(owner) {}

        void load(const Url& url) override { owner_.loads.push_back(url.text()); }
        void evaluate(std::string_view script) override { owner_.scripts.emplace_back(script); }

    private:
        ScriptedHiddenPage& owner_;
    };
};

} // namespace corvane::testing

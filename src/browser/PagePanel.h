#pragma once

#include "ports/WebView.h"

#include <memory>
#include <string>
#include <string_view>

namespace corvane {

/// A page's alert, confirm or prompt as it is shown: plain text, cut to a readable length, with the name of the host
/// that asks. It can be answered once; going away unanswered cancels it.
class PagePanel {
public:
    static constexpr std::size_t longestMessage = 4096; // code points

    PagePanel(std::unique_ptr<ScriptPanel> panel, std::string host);

    ScriptPanel::Kind kind() const { return kind_; }
    bool hasCancel() const { return kind_ != ScriptPanel::Kind::alert; }

    /// Who asks: "<host> says".
    std::string heading() const;
    const std::string& message() const { return message_; }
    const std::string& defaultText() const { return defaultText_; }

    /// "OK"; `text` counts for a prompt only.
    void accept(std::string_view text);
    void cancel();

private:
    std::unique_ptr<ScriptPanel> panel_;
    ScriptPanel::Kind kind_;
    std::string host_; // empty for pages without one
    std::string message_;
    std::string defaultText_;
};

} // namespace corvane

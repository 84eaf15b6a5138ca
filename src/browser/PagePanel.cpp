#include "browser/PagePanel.h"

#include "base/Text.h"

#include <utility>

namespace corvane {

PagePanel::PagePanel(std::unique_ptr<ScriptPanel> panel, std::string host)
    : panel_(std::move(panel)), kind_(panel_->kind()), host_(std::move(host)), defaultText_(panel_->defaultText())
{
    const auto whole = panel_->message();
    message_ = firstCodePoints(whole, longestMessage);
    if (message_.size() < whole.size())
        message_ += "…";
}

std::string PagePanel::heading() const
{
    return (host_.empty() ? "This page" : host_) + " says";
}

void PagePanel::accept(std::string_view text)
{
    if (const auto panel = std::exchange(panel_, nullptr))
        panel->accept(text);
}

void PagePanel::cancel()
{
    panel_ = nullptr;
}

} // namespace corvane

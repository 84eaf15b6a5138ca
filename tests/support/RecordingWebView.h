#pragma once

#include "ports/WebView.h"

#include <string>
#include <vector>

namespace corvane::testing {

/// A view without an engine: it records what it is told, and a test sets what it answers.
class RecordingWebView final : public WebView {
public:
    void setDelegate(WebViewDelegate* newDelegate) override { delegate = newDelegate; }
    void load(const Url& url, LoadPolicy policy) override
    {
        calls.push_back((policy == LoadPolicy::ignoreCaches ? "loadFresh " : "load ") + url.text());
    }
    void goBack() override { calls.emplace_back("goBack"); }
    void goForward() override { calls.emplace_back("goForward"); }
    void reload() override { calls.emplace_back("reload"); }
    void stopLoading() override { calls.emplace_back("stopLoading"); }
    void evaluate(std::string_view script) override { scripts.emplace_back(script); }
    bool canGoBack() const override { return back; }
    bool canGoForward() const override { return forward; }
    bool isLoading() const override { return loading; }
    std::string address() const override { return shownAddress; }
    std::string title() const override { return shownTitle; }
    std::string committedAddress() const override { return shownAddress; }

    /// A whole load of a page, as an engine reports it.
    void showPage(const std::string& address, const std::string& title = {})
    {
        shownAddress = address;
        delegate->loadStarted();
        delegate->loadCommitted();
        shownTitle = title;
        delegate->loadFinished();
    }

    WebViewDelegate* delegate = nullptr;
    std::vector<std::string> calls;
    std::vector<std::string> scripts;
    bool back = false;
    bool forward = false;
    bool loading = false;
    std::string shownAddress;
    std::string shownTitle;
};

/// Hands out one recording view and keeps a pointer to it.
class RecordingViewFactory final : public MainViewFactory {
public:
    std::unique_ptr<WebView> makeMainView(const MainViewConfiguration& wanted) override
    {
        configuration = wanted;
        auto made = std::make_unique<RecordingWebView>();
        view = made.get();
        return made;
    }

    MainViewConfiguration configuration;
    RecordingWebView* view = nullptr;
};

} // namespace corvane::testing

#pragma once

#include "browser/BrowserConfiguration.h"
#include "display/KeptEngine.h"
#include "display/PageServer.h"
#include "platform/WebKitViewFactory.h"
#include "support/MainContext.h"
#include "support/TemporaryFolder.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace corvane::testing {

/// Notes everything that a real view tells, and passes it on where there is somebody to decide.
class NotingDelegate final : public WebViewDelegate {
public:
    void stateChanged() override { pass(&WebViewDelegate::stateChanged); }
    void loadStarted() override { note(started, &WebViewDelegate::loadStarted); }
    void loadRedirected() override { pass(&WebViewDelegate::loadRedirected); }
    void loadCommitted() override { note(committed, &WebViewDelegate::loadCommitted); }
    void loadFinished() override { note(finished, &WebViewDelegate::loadFinished); }
    void loadFailed() override { note(failed, &WebViewDelegate::loadFailed); }
    void webProcessEnded() override { note(ended, &WebViewDelegate::webProcessEnded); }
    void newWindowRequested(std::unique_ptr<NewWindowRequest> request) override
    {
        windows.push_back(request->address());
        if (next != nullptr)
            next->newWindowRequested(std::move(request));
        else if (loadsWindows)
            request->loadInSameView();
    }
    void panelRequested(std::unique_ptr<ScriptPanel> panel) override { panels.push_back(std::move(panel)); }
    void messageReceived(const PageMessage& message) override
    {
        messages.push_back(message);
        if (next != nullptr)
            next->messageReceived(message);
        if (messagePassedOn)
            messagePassedOn();
    }

    WebViewDelegate* next = nullptr;
    std::function<void()> messagePassedOn;
    int started = 0;
    int committed = 0;
    int finished = 0;
    int failed = 0;
    int ended = 0;
    bool loadsWindows = false;
    std::vector<std::string> windows;
    std::vector<std::unique_ptr<ScriptPanel>> panels;
    std::vector<PageMessage> messages;

private:
    void pass(void (WebViewDelegate::*told)())
    {
        if (next != nullptr)
            (next->*told)();
    }
    void note(int& count, void (WebViewDelegate::*told)())
    {
        ++count;
        pass(told);
    }
};

/// A real main view, with its own storage, in front of a server in this process whose host may send messages.
class EngineWorld {
public:
    EngineWorld()
    {
        view->setDelegate(&told);
        widget = WebKitViewFactory::widget(*view);
        keepEngineOf(widget);
    }

    /// Loads an address and waits until the page is complete.
    [[nodiscard]] bool open(const std::string& address, LoadPolicy policy = LoadPolicy::useCaches)
    {
        const auto before = told.finished;
        view->load(*Url::parse(address), policy);
        return iterateUntil([&] { return told.finished > before; });
    }

    /// Runs a script and waits until the page's title is `title`.
    [[nodiscard]] bool runUntilTitle(const std::string& script, const std::string& title)
    {
        view->evaluate(script);
        return iterateUntil([&] { return view->title() == title; });
    }

    PageServer server;
    TemporaryFolder folder;
    AllowedHosts hosts{*Url::parse(server.site() + "/")};
    Places places{.data = folder / "data", .cache = folder / "cache", .defaults = folder / "defaults.json"};
    WebKitViewFactory factory{places, "de_CH", Renderer::software};
    NotingDelegate told;
    std::unique_ptr<WebView> view = factory.makeMainView(mainViewConfiguration(hosts));
    GtkWidget* widget = nullptr;
};

} // namespace corvane::testing

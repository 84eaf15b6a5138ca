#pragma once

#include "base/Url.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// How a page is fetched when it is loaded.
enum class LoadPolicy : std::uint8_t {
    useCaches,    // the engine's usual rules
    ignoreCaches, // neither local nor remote cached data
};

/// A page's request for a new window. It can be carried out in the view that shows the page, with its method, body and
/// referrer kept; dropping the object drops the request.
class NewWindowRequest {
public:
    virtual ~NewWindowRequest() = default;

    /// The address as the engine has it; may be empty.
    virtual std::string address() const = 0;

    virtual void loadInSameView() = 0;
};

/// A page's alert, confirm or prompt. The page waits until the panel is answered; dropping the object answers as
/// "Cancel" does.
class ScriptPanel {
public:
    enum class Kind : std::uint8_t { alert, confirm, prompt };

    virtual ~ScriptPanel() = default;

    virtual Kind kind() const = 0;
    virtual std::string message() const = 0;
    virtual std::string defaultText() const = 0; // of a prompt

    /// "OK"; `text` is a prompt's answer.
    virtual void accept(std::string_view text) = 0;
};

/// A message that a page sent through the bridge.
struct PageMessage {
    std::string origin; // of the sending frame, as scheme://host:port; "null" for frames without one
    bool isTopFrame = false;
    std::string topOrigin; // likewise, of the page that the frame was part of when it sent this
    std::string body;      // JSON
};

/// What a web view tells its owner. All calls come on the main thread; none may destroy the view.
class WebViewDelegate {
public:
    virtual ~WebViewDelegate() = default;

    /// Address, title, loading state or history may have changed. Comes while the engine updates itself.
    virtual void stateChanged() = 0;

    /// A load of the main frame goes to its server, or to another one after a redirect.
    virtual void loadStarted() = 0;
    virtual void loadRedirected() = 0;

    /// The first bytes of a new page have arrived: it replaces the page that was there.
    virtual void loadCommitted() = 0;

    /// The page is complete.
    virtual void loadFinished() = 0;

    /// The load failed or was stopped; without a commit the page that was there stays.
    virtual void loadFailed() = 0;

    /// The process behind the page has ended; the view is blank until the next load.
    virtual void webProcessEnded() = 0;

    virtual void newWindowRequested(std::unique_ptr<NewWindowRequest> request) = 0;
    virtual void panelRequested(std::unique_ptr<ScriptPanel> panel) = 0;
    virtual void messageReceived(const PageMessage& message) = 0;
};

/// One engine view. Main thread only.
class WebView {
public:
    virtual ~WebView() = default;

    /// `delegate` must outlive the view or be taken back with null.
    virtual void setDelegate(WebViewDelegate* delegate) = 0;

    virtual void load(const Url& url, LoadPolicy policy) = 0;
    virtual void goBack() = 0;
    virtual void goForward() = 0;
    virtual void reload() = 0;
    virtual void stopLoading() = 0;

    /// Runs a script in the page's own world; result and errors are ignored.
    virtual void evaluate(std::string_view script) = 0;

    virtual bool canGoBack() const = 0;
    virtual bool canGoForward() const = 0;
    virtual bool isLoading() const = 0;

    /// As the engine has it: already the new address while a load is under way. Empty when there is none.
    virtual std::string address() const = 0;
    virtual std::string title() const = 0;

    /// The address of the page that is shown; differs from `address` while another load is under way.
    virtual std::string committedAddress() const = 0;
};

/// A script that runs in a page's own world, in every frame.
struct PageScript {
    enum class Moment : std::uint8_t { documentStart, documentEnd };

    std::string source;
    Moment moment = Moment::documentStart;
};

/// The settings of the main view that the product decides; everything else is fixed by the view's profile.
struct MainViewConfiguration {
    std::string userAgent;
    std::string messageHandler;            // the name of the channel from pages to the program
    std::vector<std::string> bridgedHosts; // only pages of these hosts see the channel; sorted
    std::vector<PageScript> scripts;       // in order
};

/// Makes the view that shows services: persistent cookies and storage, shared by all pages.
class MainViewFactory {
public:
    virtual ~MainViewFactory() = default;

    /// Called once per window.
    virtual std::unique_ptr<WebView> makeMainView(const MainViewConfiguration& configuration) = 0;
};

} // namespace corvane

#include "display/CoordinatedWorld.h"
#include "display/FullScreen.h"
#include "display/HostilePages.h"

#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace corvane::testing {
namespace {

/// A way to ask for a new window, as an element that does it when it is clicked.
struct Opener {
    std::string name;
    std::string html;         // ADDRESS is filled in
    bool isForFrames = false; // leads out of a frame into the page around it, or into another frame of that
};

const std::vector<Opener> openers{
    {"link", "<a href='ADDRESS' target=_blank>"},
    {"link to a named window", "<a href='ADDRESS' target=elsewhere rel=opener>"},
    {"link by the base's target", "<base target=_blank><a href='ADDRESS'>"},
    {"link in a drawing",
     "<svg width=2000 height=2000><a href='ADDRESS' target=_blank><rect width=2000 height=2000 />"},
    {"form", "<form action='ADDRESS' target=_blank><button>"},
    {"posted form", "<form method=post action='ADDRESS' target=_blank><input type=hidden name=a value=b><button>"},
    {"button of a form", "<form><button formaction='ADDRESS' formtarget=_blank>"},
    {"script", "<button onclick='window.open(this.value)' value='ADDRESS'>"},
    {"script without opener",
     "<button onclick='window.open(this.value, \"_blank\", \"noopener,noreferrer\")' value='ADDRESS'>"},
    {"script with a size", "<button onclick='window.open(this.value, \"w\", \"width=90,height=90\")' value='ADDRESS'>"},
    {"script with delay", "<button onclick='window.open(\"\").location = this.value' value='ADDRESS'>"},
    {"link to the top", "<a href='ADDRESS' target=_top>", true},
    {"link to the parent", "<a href='ADDRESS' target=_parent>", true},
    {"link to another frame", "<a href='ADDRESS' target=victim>", true},
    {"form to the top", "<form method=post action='ADDRESS' target=_top><button>", true},
    {"script to the top", "<button onclick='window.open(this.value, \"_top\")' value='ADDRESS'>", true},
    {"script to another frame", "<button onclick='window.open(this.value, \"victim\")' value='ADDRESS'>", true},
    {"the top's address", "<button onclick='top.location = this.value' value='ADDRESS'>", true},
    {"the parent's address", "<button onclick='parent.location.replace(this.value)' value='ADDRESS'>", true},
};

/// RUN is a script that tells of itself; BLOB is the address of an object of the page that asks.
const std::vector<std::string> refused{
    "javascript:RUN",
    "JaVaScRiPt:RUN",
    " javascript:RUN",
    "java&#10;script:RUN",
    "&#1;javascript:RUN",
    "javascript://x/%0aRUN",
    "data:text/html,<script>RUN</script>",
    "DATA:text/html;charset=utf-8,<script>RUN</script>",
    "data:image/svg+xml,<svg xmlns=%22http://www.w3.org/2000/svg%22 onload=%22RUN%22/>",
    "data:,text",
    "file:///etc/passwd",
    "FILE:///etc/passwd",
    "file://localhost/etc/passwd",
    "file:/etc/passwd",
    "BLOB",
};

/// These lead nowhere; a frame may have its own in its place.
const std::vector<std::string> nowhere{
    "about:blank",
    "about:srcdoc",
    "view-source:http://127.0.0.1/",
    "webkit://gpu",
    "resource:///org/gtk/x",
    "ftp://127.0.0.1/",
    "corvane-analytics://127.0.0.1/analytics.html",
    "vbscript:x",
    "feed:javascript:RUN",
    "x:y",
};

std::string filled(std::string text, const std::string& name, const std::string& value)
{
    for (auto place = text.find(name); place != std::string::npos; place = text.find(name, place + value.size()))
        text.replace(place, name.size(), value);
    return text;
}

class NewWindowsTest : public ::testing::Test, protected CoordinatedWorld {
protected:
    NewWindowsTest()
    {
        server.pages["/pwned"] = {.body = "ok"};
        server.pages["/arrived"].headers = {{"Cache-Control", "no-store"}};
        server.pages["/victim"] = {.body = "<!doctype html><title>victim</title>"};
    }

    /// A page that covers itself with the opener of each address in turn. When told to, it clicks each itself;
    /// otherwise it waits for somebody to do it. It says "tried" when it is through.
    std::string asker(const Opener& opener, const std::vector<std::string>& addresses, bool clicksItself) const
    {
        const auto run =
            "new Image().src=`" + server.site() + "/pwned?${self===top} ${location}`;document.title=`pwned`";
        std::string list;
        for (const auto& address : addresses)
            list += scriptText(filled(opener.html, "ADDRESS", filled(address, "RUN", run))) + ",";
        return "<!doctype html><style>a, button, svg { position: fixed; inset: 0; width: 100%; height: 100% }</style>"
               "<body><main></main>" +
               script("const blob = URL.createObjectURL(new Blob(['<script>" + run +
                      "<\\/script>'], {type: 'text/html'})), turn = () => new Promise(done => "
                      "{ const way = new MessageChannel(); way.port1.onmessage = done; way.port2.postMessage(0); });"
                      "(async () => { for (const html of [" +
                      list +
                      "]) { const main = document.querySelector('main'); main.innerHTML = html.replace('BLOB', blob);"
                      "const target = main.querySelector('rect, button, a');"
                      "const clicked = new Promise(done => target.addEventListener('click', done));" +
                      (clicksItself
                           ? "target.dispatchEvent(new MouseEvent('click', {bubbles: true, cancelable: true}));"
                           : "top.postMessage('ready', '*');") +
                      "await clicked; await turn(); } top.postMessage('tried', '*'); })();");
    }

    /// Shows the asker as the page or in another host's frame that covers the page; false when it is not ready.
    [[nodiscard]] bool show(const std::string& askingPage, bool isInFrame)
    {
        const auto listener = script("onmessage = e => { document.title = e.data; }");
        server.pages["/asking"] = {.body = isInFrame ? askingPage : listener + askingPage};
        server.pages["/around"] = {.body = "<!doctype html><iframe name=victim src=/victim></iframe><iframe "
                                           "style='position:fixed;inset:0;width:100%;height:100%;border:0' src='" +
                                           server.otherSite() + "/asking'></iframe>" + listener};
        page_ = server.site() + (isInFrame ? "/around" : "/asking");
        return open(page_);
    }

    /// Waits until the page has tried, and sees that nothing has come of it.
    void expectNothing(const std::string& what)
    {
        const auto committed = told.committed;
        ASSERT_TRUE(iterateUntil([&] { return view->title() == "tried" || view->title() == "pwned"; }))
            << what << ": " << view->title() << " at " << view->address();
        // What the page asked for is answered before it runs this.
        ASSERT_TRUE(runUntilTitle("document.title += ', settled'", "tried, settled")) << what << ": " << view->title();
        EXPECT_EQ(view->address(), page_) << what;
        EXPECT_EQ(told.committed, committed) << what;
        for (const auto& request : server.requests)
            EXPECT_FALSE(request.path.starts_with("/pwned")) << request.path << " " << what;
        server.requests.clear();
        EXPECT_EQ(told.ended, 0) << what;
    }

    static std::string script(const std::string& text) { return "<script>" + text + "</script>"; }

    int forms = 0;

private:
    std::string page_;
};

TEST_F(NewWindowsTest, LeadScriptsDataAndFilesNowhere)
{
    for (const bool isInFrame : {false, true}) {
        for (const auto& opener : openers) {
            if (opener.isForFrames && !isInFrame)
                continue;
            auto addresses = refused;
            if (!opener.isForFrames)
                addresses.insert(addresses.end(), nowhere.begin(), nowhere.end());
            else
                addresses.pop_back(); // a frame may lead its page to its own object, which is of its own origin
            ASSERT_TRUE(show(asker(opener, addresses, true), isInFrame));
            expectNothing(opener.name + (isInFrame ? " in a frame" : ""));
            forms += static_cast<int>(addresses.size());
        }
    }
    std::cout << "new windows tried by script: " << forms << ", requests that came: " << told.windows.size() << '\n';
}

TEST_F(NewWindowsTest, LeadScriptsDataAndFilesNowhereWhenTheUserClicks)
{
    const bool triesEverything = std::getenv("CORVANE_EVERY_CLICK") != nullptr;
    int turn = 0; // else each opener gets one or two of the addresses
    FullScreen screen;
    ASSERT_TRUE(screen.show(widget));
    for (const bool isInFrame : {false, true}) {
        for (const auto& opener : openers) {
            for (const std::string address :
                 {"javascript:RUN", "data:text/html,<script>RUN</script>", "file:///etc/passwd", "BLOB"}) {
                if (opener.isForFrames && (!isInFrame || address == "BLOB"))
                    continue;
                if (turn++ % 3 != 0 && !triesEverything)
                    continue;
                const auto what = opener.name + (isInFrame ? " in a frame " : " ") + address;
                ASSERT_TRUE(show(asker(opener, {address}, false), isInFrame)) << what;
                ASSERT_TRUE(iterateUntil([&] { return view->title() == "ready"; })) << what;
                ASSERT_TRUE(FullScreen::click());
                expectNothing(what);
                ++forms;
            }
        }
    }
    screen.empty();
    std::cout << "new windows tried by a click: " << forms << ", requests that came: " << told.windows.size() << '\n';
}

TEST_F(NewWindowsTest, LeadToOtherPagesInTheSameView)
{
    for (const bool isInFrame : {false, true}) {
        for (const auto& opener : openers) {
            if (opener.isForFrames || opener.name == "script with delay")
                continue;
            const auto before = told.windows.size();
            const auto title = "arrived " + std::to_string(++forms);
            server.pages["/arrived"].body = "<!doctype html><title>" + title + "</title>";
            ASSERT_TRUE(show(asker(opener, {server.otherSite() + "/arrived"}, true), isInFrame));
            EXPECT_TRUE(iterateUntil([&] { return view->title() == title; })) << opener.name << isInFrame;
            EXPECT_EQ(told.windows.size(), before + 1) << opener.name;
        }
    }
    std::cout << "new windows that led to a page: " << forms << '\n';
}

} // namespace
} // namespace corvane::testing

#include "display/CoordinatedWorld.h"
#include "display/HostilePages.h"

#include <iostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace corvane::testing {
namespace {

using Texts = std::vector<std::string>;

/// Defines `attack`: posts by every way that could lead to the program, from this window and, unless it is to keep to
/// itself, through every other one that it can reach. Gives back how often it tried.
constexpr std::string_view attackSource = R"(
const allowed = ALLOWED, stringify = JSON.stringify, Event_ = CustomEvent;
const dispatch = EventTarget.prototype.dispatchEvent;
const attack = (token, keepsToItself) => {
    let tries = 0;
    const attempt = action => { ++tries; try { action(); } catch (error) {} };
    const bind = {type: 'binddevice', bindingToken: token};
    const bodies = ['success', 'deleted', bind, stringify(bind)];
    const forged = bodies.map(body => ({origin: allowed, isTop: true, body: stringify(body)}));
    const details = [...bodies.map(body => stringify(body)), ...forged, ...forged.map(body => stringify(body))];
    const child = document.createElement('iframe');
    document.documentElement.append(child);
    const windows = [window, child.contentWindow];
    if (!keepsToItself)
        windows.push(parent, top, ...Array.from({length: parent.length}, (_, i) => parent[i]));
    for (const place of windows) {
        for (const body of bodies) {
            attempt(() => place.webkit.messageHandlers.corvane.postMessage(body));
            attempt(() => place.webkit.messageHandlers['corvane'].postMessage.call(null, body));
            attempt(() => place.chrome.webview.postMessage(body));
            attempt(() => place.postMessage(body, '*'));
        }
        for (const detail of details) {
            const event = () => new Event_('corvane-page-message', {detail, bubbles: true, composed: true});
            attempt(() => dispatch.call(place, event()));
            attempt(() => dispatch.call(place.document, event()));
            attempt(() => dispatch.call(place.document.documentElement, event()));
            attempt(() => dispatch.call(place, new MessageEvent('corvane-page-message', {data: detail, origin: allowed})));
        }
    }
    return tries;
};
)";

/// Turns the page's own world against whatever runs in it later.
constexpr std::string_view tamperingSource = R"(
for (const [name, value] of Object.entries({origin: allowed, isTop: true, body: '"success"', hostname: '127.0.0.1'}))
    Object.defineProperty(Object.prototype, name, {get: () => value, set() {}, configurable: true});
for (const name of ['origin', 'top', 'location', 'webkit', 'chrome'])
    try { Object.defineProperty(window, name, {value: {corvane: {}}, writable: true}); } catch (error) {}
Array.prototype.indexOf = String.prototype.indexOf = () => 0;
String.prototype.toLowerCase = () => 'deleted';
JSON.stringify = () => stringify({origin: allowed, isTop: true, body: '"success"'});
JSON.parse = () => ({origin: allowed, isTop: true, body: '"success"'});
window.CustomEvent = class extends Event_ { get detail() { return '"success"'; } };
EventTarget.prototype.dispatchEvent = function(event) {
    return dispatch.call(window, new Event_('corvane-page-message', {detail: '"success"'}));
};
EventTarget.prototype.addEventListener = () => {};
)";

/// Where the hostile page is, as a script with `page`, its text, and `frame`, an element for it.
struct Place {
    std::string name;
    std::string script;
    bool isOfParent = false;       // has the origin of the page around it, unless a sandbox takes it away
    bool needsParentsHand = false; // cannot be filled once a sandbox keeps its parent out
};

const std::vector<Place> hostilePlaces{
    {"another host's frame", "frame.src = other + '/attack?deleted#deleted'"},
    {"srcdoc", "frame.srcdoc = page", true},
    {"data:", "frame.src = 'data:text/html,' + encodeURIComponent(page)"},
    {"blob:", "frame.src = URL.createObjectURL(new Blob([page], {type: 'text/html'}))", true},
    {"about:blank",
     "later = () => { const script = frame.contentDocument.createElement('script');"
     "script.textContent = new DOMParser().parseFromString(page, 'text/html').scripts[0].textContent;"
     "frame.contentDocument.body.append(script); }",
     true, true},
    {"javascript:", "frame.src = 'javascript:' + encodeURIComponent(JSON.stringify(page))", true, true},
    {"the allowed host's frame", "frame.src = allowed + '/attack'", true},
};

class PageMessagesTest : public ::testing::Test, protected CoordinatedWorld {
protected:
    std::string attackingPage(const std::string& token, bool tampers, bool keepsToItself) const
    {
        std::string source(attackSource);
        source.replace(source.find("ALLOWED"), 7, scriptText(server.site()));
        return scripted(source + (tampers ? std::string(tamperingSource) : "") + "top.postMessage({tries: attack(" +
                        scriptText(token) + ", " + (keepsToItself ? "true" : "false") + ")}, '*');");
    }

    /// Opens a page whose frame is the attacker; it is over when that has said how often it tried.
    void attackFromFrame(const std::string& site, const Place& place, const std::string& sandbox, bool tampers)
    {
        const bool isOfAllowedPage = place.isOfParent && site == server.site() && sandbox != "allow-scripts";
        const auto page = attackingPage(place.name, tampers, isOfAllowedPage);
        server.pages["/attack"] = {.body = page};
        server.pages["/around"] = {
            .body = scripted("const other = " + scriptText(server.otherSite()) +
                             ", allowed = " + scriptText(server.site()) + ", page = " + scriptText(page) +
                             "; let later = () => {}; const frame = document.createElement('iframe');" +
                             (sandbox.empty() ? "" : "frame.setAttribute('sandbox', " + scriptText(sandbox) + ");") +
                             "onmessage = e => { if (e.data.tries) document.title = 'over ' + e.data.tries; };" +
                             place.script + "; document.body.append(frame); later();")};
        expectNothingAccepted(site + "/around", place.name + " in " + site + " sandbox=" + sandbox);
    }

    void expectNothingAccepted(const std::string& address, const std::string& what)
    {
        ASSERT_TRUE(open(address)) << what;
        ASSERT_TRUE(iterateUntil([&] { return view->title().starts_with("over "); })) << what;
        posts += std::stoi(view->title().substr(5));
        ++forms;
        EXPECT_EQ(accepted, Texts{}) << what;
        accepted.clear();
    }

    int forms = 0;
    int posts = 0;
};

TEST_F(PageMessagesTest, AreHeardFromNoHostilePlace)
{
    for (const bool tampers : {false, true}) {
        for (const auto& site : {server.site(), server.otherSite()}) {
            for (const auto& place : hostilePlaces) {
                for (const std::string sandbox : {"", "allow-scripts", "allow-scripts allow-same-origin"}) {
                    const bool isAllowedItself = site == server.site() && place.name == "the allowed host's frame";
                    if ((isAllowedItself || place.needsParentsHand) &&
                        sandbox != (isAllowedItself ? "allow-scripts" : ""))
                        continue;
                    attackFromFrame(site, place, sandbox, tampers);
                }
            }
        }
        const std::string listens = "<script>onmessage = e => { if (e.data.tries) document.title = 'over ' + "
                                    "e.data.tries; }</script>";
        server.pages["/top"] = {.body = listens + attackingPage("top", tampers, false)};
        expectNothingAccepted(server.otherSite() + "/top?DELETED", "another host's page");
        expectNothingAccepted(server.otherSite() + "/top#deleted", "another host's page");
        server.pages["/top"].headers = {{"Content-Security-Policy", "sandbox allow-scripts"}};
        expectNothingAccepted(server.site() + "/top", "a page that its own host has sandboxed");
    }
    std::cout << "hostile places tried: " << forms << ", posts: " << posts << '\n';
}

TEST_F(PageMessagesTest, AreNotHeardWhileARegistrationPageTakesAHostileOnesPlace)
{
    const int crossings = 20;
    server.pages["/registration.html"] = {.body = "<!doctype html><title>Register</title>"};
    server.pages["/inner"] = {.body = scripted("const say = () => window.chrome.webview.postMessage('success');"
                                               "for (const name of ['pagehide', 'unload', 'beforeunload'])"
                                               "    addEventListener(name, say);"
                                               "document.addEventListener('visibilitychange', say);"
                                               "top.postMessage('ready', '*');")};
    server.pages["/attack"] = {.body = attackingPage("frame", false, false) +
                                       "<script>addEventListener('pagehide', () => attack('frame'))</script>"};
    server.pages["/leaving"] = {
        .body = attackingPage("leaving", false, false) +
                "<script>for (const name of ['pagehide', 'unload', 'beforeunload']) addEventListener(name, () => "
                "attack('leaving')); document.addEventListener('visibilitychange', () => attack('leaving'));"
                "onmessage = e => { if (e.data === 'ready') location = " +
                scriptText(server.site() + "/registration.html") + "; };</script><iframe src='/attack'></iframe>" +
                "<iframe src='" + server.site() + "/inner'></iframe>"};
    for (int i = 0; i < crossings; ++i) {
        view->load(*Url::parse(server.otherSite() + "/leaving"), LoadPolicy::useCaches);
        ASSERT_TRUE(iterateUntil([&] { return view->title() == "Register" && !view->isLoading(); })) << i;
        EXPECT_EQ(accepted, Texts{}) << i;
    }
    ASSERT_TRUE(open(server.otherSite() + "/none"));
    EXPECT_EQ(accepted, Texts{});
    std::cout << "crossings tried: " << crossings << ", messages that came: " << told.messages.size() << '\n';
}

TEST_F(PageMessagesTest, AreAcceptedInOrderInEveryLegalForm)
{
    const std::string bind = "const bind = t => ({type: ' BindDevice ', bindingToken: t});"
                             "const wrapped = m => window.chrome.webview.postMessage(m);"
                             "const direct = m => window.webkit.messageHandlers.corvane.postMessage(m);";
    server.pages["/deep"] = {.body = scripted(bind + "wrapped(bind('6')); direct('success'); top.next();")};
    server.pages["/inner"] = {.body = scripted(bind + "wrapped(bind('4')); direct(JSON.stringify(bind('5')));"
                                                      "const frame = document.createElement('iframe');"
                                                      "frame.src = '/deep'; document.body.append(frame);")};
    server.pages["/"] = {
        .body = scripted(bind + "wrapped('success'); direct(' SUCCESS\\n'); wrapped(bind(' 1 ')); direct(bind('2'));"
                                "wrapped(JSON.stringify(bind('3'))); wrapped({action: 7, message: 'Success'});"
                                "const add = (name, text) => { const frame = document.createElement('iframe');"
                                "    frame[name] = text; document.body.append(frame); };"
                                "window.next = () => add('srcdoc', \"<script>parent.chrome.webview.postMessage("
                                "    {type: 'binddevice', bindingToken: '7'}); parent.last()</\" + 'script>');"
                                "window.last = () => direct('profile_deleted'); add('src', '/inner');")};
    server.pages["/registration.html"] = {.body = "<!doctype html><title>Register</title>"};
    ASSERT_TRUE(open(server.site() + "/"));
    ASSERT_TRUE(iterateUntil([&] { return view->title() == "Register"; }));
    EXPECT_EQ(accepted, (Texts{"success", "success", "bind 1", "bind 2", "bind 3", "success", "bind 4", "bind 5",
                               "bind 6", "success", "bind 7", "delete"}));
}

TEST_F(PageMessagesTest, AreIgnoredWhenTheirBodyIsNoneOfThose)
{
    const Texts values{
        "42",
        "NaN",
        "true",
        "null",
        "undefined",
        "''",
        "'succes'",
        "[bind]",
        "['success']",
        "new Date",
        "/success/",
        "() => bind",
        "Symbol('success')",
        "10n",
        "ring",
        "new Map([['type', 'success']])",
        "new Error('success')",
        "{get type() { throw 1; }}",
        "{toJSON() { return undefined; }}",
        "{toJSON() { return [bind]; }}",
        "new Proxy({}, {ownKeys() { throw 1; }})",
        "{type: ['success']}",
        "{type: {message: 'success'}}",
        "{bindingToken: 'x'}",
        "'[\"success\"]'",
        "'\"success\"'",
        "'{\"type\":\"success\"'",
        "'{type:success}'",
        "'\\ud800'",
        "{type: 'success\\ud800'}",
        "'success\\u0000'",
        "{type: 'success', pad: 'x'.repeat(70000)}",
        "sized(65537)",
        "wide(65536)",
        "JSON.stringify(sized(65530)) + ' '.repeat(9)",
        "nested(65)",
        "JSON.stringify(nested(65))",
        "nested(5000)",
        "'x'.repeat(1 << 24)",
    };
    const Texts raised{"''",
                       "'success'",
                       "'{'",
                       "'[\"success\"]'",
                       "7",
                       "true",
                       "bind",
                       "['\"success\"']",
                       "new String('\"success\"')",
                       "null",
                       "'{\"origin\":\"http://127.0.0.1\",\"isTop\":true,\"body\":\"\\\\\"success\\\\\"\"}'"};
    std::string script =
        "const bind = {type: 'binddevice', bindingToken: 'refused'}; const ring = {...bind}; ring.self = ring;"
        "const sized = n => { const body = {type: 'success', pad: ''};"
        "    body.pad = 'x'.repeat(n - JSON.stringify(body).length); return body; };"
        "const wide = n => { const body = sized(n); body.pad = body.pad.replace('x', 'ü'); return body; };"
        "const nested = n => { let inside = 0; for (let i = 1; i < n; ++i) inside = [inside];"
        "    return {type: 'success', inside}; };"
        "const post = make => { for (const way of [window.chrome.webview, window.webkit.messageHandlers.corvane])"
        "    try { way.postMessage(make()); } catch (error) {} };"
        "const raise = detail => window.dispatchEvent(new CustomEvent('corvane-page-message', {detail}));";
    for (const auto& value : values)
        script += "post(() => (" + value + "));\n";
    for (const auto& detail : raised)
        script += "raise(" + detail + ");\n";
    // The largest and the deepest body that are taken, and the end.
    script += "post(() => sized(65536)); post(() => nested(64)); window.chrome.webview.postMessage({type: 'binddevice',"
              " bindingToken: 'end'});";
    server.pages["/"] = {.body = scripted(script)};
    ASSERT_TRUE(open(server.site() + "/"));
    ASSERT_TRUE(iterateUntil([&] { return !accepted.empty() && accepted.back() == "bind end"; }));
    EXPECT_EQ(accepted, (Texts{"success", "success", "success", "success", "bind end"}));
    std::cout << "bodies tried: " << 2 * values.size() + raised.size() << '\n';
}

} // namespace
} // namespace corvane::testing

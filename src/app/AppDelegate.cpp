#include "app/AppDelegate.h"

#include "platform/SandboxCheck.h"
#include "platform/XdgPlaces.h"
#include "ui/ShortcutsView.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace corvane {
namespace {

Endpoints readEndpoints()
{
    std::vector<std::string> refused;
    auto endpoints = Endpoints::read(
        [](const char* name) -> std::optional<std::string> {
            const char* value = std::getenv(name);
            return value == nullptr ? std::nullopt : std::optional<std::string>(value);
        },
        refused);
    for (const auto& name : refused)
        fmt::print(stderr, "corvane: {} is no http or https address; the built-in one is used.\n", name);
    return endpoints;
}

int fail(std::string_view why)
{
    fmt::print(stderr, "corvane: {}\n", why);
    return EXIT_FAILURE;
}

} // namespace

AppDelegate::AppDelegate(RendererChoice renderer) : renderer_(std::move(renderer)), application_(AppInfo::applicationId)
{
}

AppDelegate::~AppDelegate() = default;

int AppDelegate::run()
{
    SandboxCheck sandbox;
    const auto role = application_.registerInstance();
    if (!role)
        return fail(role.error().message);
    if (*role == DesktopApplication::Role::secondary)
        return application_.activatePrimary();
    // The engine ends the program when the address of a session bus is set that does not answer.
    if (!application_.hasSessionBus())
        unsetenv("DBUS_SESSION_BUS_ADDRESS");
    if (const auto problem = sandbox.problem())
        return fail(*problem);
    return runPrimary();
}

/// The first page is on its way before anything is built to show it.
int AppDelegate::runPrimary()
{
    app_ = std::make_unique<CorvaneApp>(readEndpoints(), xdgPlaces(), renderer_, [this] { quit(); });
    app_->startFirstLoad();
    addWindowAction("about", "", [this] { app_->showAbout(); });
    addWindowAction("preferences", "<Control>comma", [this] { app_->showSettings(); });
    addWindowAction("shortcuts", "<Control>question", [this] { showShortcuts(app_->window()); });
    application_.addAction("close", "<Control>w", [this] { application_.closeActiveWindow(); });
    application_.addAction("quit", "<Control>q", [this] { quit(); });
    const int status = application_.run([this] { activate(); }, [this] { quit(); });
    isQuitting_ = true;
    app_.reset();
    application_.takeLateCalls(); // a start meanwhile found this instance still registered
    return status;
}

/// An action that shows a window; not any more once the windows have gone.
void AppDelegate::addWindowAction(const char* name, const char* key, std::function<void()> action)
{
    application_.addAction(name, key, [this, action = std::move(action)] {
        if (!isQuitting_)
            action();
    });
}

/// A start while the program is ending cannot bring the window back, for its page has been left; it hastens the end.
void AppDelegate::activate()
{
    if (isQuitting_) {
        isAskedForAgain_ = true;
        application_.quit();
        return;
    }
    auto& window = app_->window();
    if (!window.get_application()) {
        window.signal_close_request().connect(
            [this] {
                quit();
                return true; // The window goes with everything else, in order.
            },
            false);
        application_.addWindow(static_cast<Gtk::Window&>(window).gobj());
    }
    window.present();
}

/// The windows go at once; the program may stay a moment longer, unless it is told again to go.
void AppDelegate::quit()
{
    if (std::exchange(isQuitting_, true)) {
        application_.quit();
        return;
    }
    application_.hideWindows();
    app_->willTerminate([this] { application_.quit(); });
}

} // namespace corvane

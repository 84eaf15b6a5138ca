#include "app/AppDelegate.h"

#include "platform/SandboxCheck.h"
#include "platform/XdgPlaces.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <adwaita.h>
#include <fmt/format.h>
#include <glib-unix.h>

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

gboolean quitOnSignal(gpointer application)
{
    g_application_quit(G_APPLICATION(application));
    return G_SOURCE_CONTINUE;
}

} // namespace

AppDelegate::AppDelegate(Renderer renderer)
    : renderer_(renderer), application_(Gtk::Application::create(std::string(AppInfo::applicationId)))
{
    application_->signal_activate().connect([this] { activate(); });
    application_->signal_shutdown().connect([this] {
        if (app_)
            app_->willTerminate();
    });
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        g_unix_signal_add(number, quitOnSignal, application_->gobj());
}

AppDelegate::~AppDelegate() = default;

int AppDelegate::run()
{
    SandboxCheck sandbox;
    try {
        application_->register_application();
    } catch (const Glib::Error& error) {
        fmt::print(stderr, "corvane: {}\n", error.what());
        return EXIT_FAILURE;
    }
    if (application_->is_remote()) {
        application_->activate();
        return EXIT_SUCCESS;
    }
    // The engine ends the program when an address of a session bus is set that does not answer.
    if (!application_->get_dbus_connection())
        unsetenv("DBUS_SESSION_BUS_ADDRESS");
    if (const auto problem = sandbox.problem()) {
        fmt::print(stderr, "corvane: {}\n", *problem);
        return EXIT_FAILURE;
    }

    app_ = std::make_unique<CorvaneApp>(readEndpoints(), xdgPlaces(), renderer_);
    app_->startFirstLoad();
    adw_init();
    const int status = application_->run();
    app_.reset();
    return status;
}

void AppDelegate::activate()
{
    auto& window = app_->window();
    application_->add_window(window);
    window.present();
}

} // namespace corvane

#include "platform/DesktopApplication.h"

#include <array>
#include <csignal>
#include <string>
#include <utility>
#include <vector>

#include <glib-unix.h>
#include <gtk/gtk.h>

namespace corvane {
namespace {

gboolean callOnSignal(gpointer interrupted)
{
    (*static_cast<const std::function<void()>*>(interrupted))();
    return G_SOURCE_CONTINUE;
}

} // namespace

DesktopApplication::DesktopApplication(const char* applicationId)
    : application_(adopt(gtk_application_new(applicationId, G_APPLICATION_DEFAULT_FLAGS)))
{
}

Result<DesktopApplication::Role> DesktopApplication::registerInstance()
{
    GErrorSlot error;
    if (g_application_register(G_APPLICATION(application_.get()), nullptr, error.out()) == FALSE)
        return std::unexpected(Error{error->message});
    return g_application_get_is_remote(G_APPLICATION(application_.get())) != FALSE ? Role::secondary : Role::primary;
}

bool DesktopApplication::hasSessionBus() const
{
    return g_application_get_dbus_connection(G_APPLICATION(application_.get())) != nullptr;
}

int DesktopApplication::activatePrimary()
{
    return g_application_run(G_APPLICATION(application_.get()), 0, nullptr);
}

int DesktopApplication::run(std::function<void()> activate, std::function<void()> interrupted)
{
    activate_ = std::move(activate);
    interrupted_ = std::move(interrupted);
    auto* application = application_.get();
    activated_ = SignalConnection::to<&DesktopApplication::activated>(application, "activate", this);
    std::vector<guint> sources;
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        sources.push_back(g_unix_signal_add(number, callOnSignal, &interrupted_));
    const int status = g_application_run(G_APPLICATION(application), 0, nullptr);
    for (const auto source : sources)
        g_source_remove(source);
    return status;
}

void DesktopApplication::takeLateCalls()
{
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
}

void DesktopApplication::Action::activated(GVariant* /*parameter*/)
{
    call();
}

void DesktopApplication::addAction(const char* name, const char* key, std::function<void()> action)
{
    const auto made = adopt(g_simple_action_new(name, nullptr));
    auto& kept = actions_.emplace_back(std::make_unique<Action>());
    kept->call = std::move(action);
    kept->connection = SignalConnection::to<&Action::activated>(made.get(), "activate", kept.get());
    g_action_map_add_action(G_ACTION_MAP(application_.get()), G_ACTION(made.get()));

    const auto detailed = "app." + std::string(name);
    const std::array<const char*, 2> keys{*key == '\0' ? nullptr : key, nullptr};
    gtk_application_set_accels_for_action(application_.get(), detailed.c_str(), keys.data());
}

void DesktopApplication::addWindow(GtkWindow* window)
{
    gtk_application_add_window(application_.get(), window);
}

void DesktopApplication::closeActiveWindow()
{
    if (auto* window = gtk_application_get_active_window(application_.get()))
        gtk_window_close(window);
}

void DesktopApplication::hideWindows()
{
    g_application_hold(G_APPLICATION(application_.get()));
    // Hiding a window changes the list that it stands in, and may close another one.
    std::vector<GObjectPtr<GtkWidget>> windows;
    for (auto* window = gtk_application_get_windows(application_.get()); window != nullptr; window = window->next)
        windows.push_back(retain(GTK_WIDGET(window->data)));
    for (const auto& window : windows)
        gtk_widget_set_visible(window.get(), FALSE);
}

void DesktopApplication::quit()
{
    g_application_quit(G_APPLICATION(application_.get()));
}

} // namespace corvane

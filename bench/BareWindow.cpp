// The least that a window onto a page can be on this platform: one libadwaita window, one web view, nothing else. What
// Corvane costs is measured against it. Usage: bench_bare_window ADDRESS

#include <filesystem>
#include <string>

#include <adwaita.h>
#include <glob.h>
#include <malloc.h>
#include <webkit/webkit.h>

namespace {

bool hasRenderNode()
{
    glob_t found{};
    const bool any = glob("/dev/dri/renderD*", 0, nullptr, &found) == 0;
    globfree(&found);
    return any;
}

/// A folder below `parent` that only the user may enter.
std::string privateFolder(const char* parent)
{
    const auto folder = std::filesystem::path(parent) / "Hollisward" / "BareWindow";
    g_mkdir_with_parents(folder.c_str(), 0700);
    return folder.string();
}

WebKitWebView* makeView(bool accelerated)
{
    const auto data = privateFolder(g_get_user_data_dir());
    const auto cache = privateFolder(g_get_user_cache_dir());
    WebKitNetworkSession* session = webkit_network_session_new(data.c_str(), cache.c_str());
    webkit_cookie_manager_set_persistent_storage(webkit_network_session_get_cookie_manager(session),
                                                 (data + "/cookies.sqlite").c_str(),
                                                 WEBKIT_COOKIE_PERSISTENT_STORAGE_SQLITE);
    auto* view = WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "network-session", session, nullptr));
    g_object_unref(session);
    if (!accelerated) {
        webkit_settings_set_hardware_acceleration_policy(webkit_web_view_get_settings(view),
                                                         WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER);
    }
    return view;
}

void openWindow(GApplication* application, gpointer address)
{
    WebKitWebView* view = makeView(hasRenderNode());
    GtkWidget* window = adw_application_window_new(GTK_APPLICATION(application));
    gtk_window_set_default_size(GTK_WINDOW(window), 1024, 768);
    adw_application_window_set_content(ADW_APPLICATION_WINDOW(window), GTK_WIDGET(view));
    webkit_web_view_load_uri(view, static_cast<const char*>(address));
    gtk_window_present(GTK_WINDOW(window));
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        g_printerr("Usage: %s ADDRESS\n", argv[0]);
        return 2;
    }
    if (!hasRenderNode()) {
        // Without a GPU drawing in software reaches the screen first, and kept frame buffers spare page faults.
        g_setenv("GSK_RENDERER", "cairo", FALSE);
        mallopt(M_MMAP_THRESHOLD, 32 << 20);
        mallopt(M_TRIM_THRESHOLD, 64 << 20);
    }
    AdwApplication* application = adw_application_new("com.hollisward.BareWindow", G_APPLICATION_DEFAULT_FLAGS);
    g_signal_connect(application, "activate", G_CALLBACK(openWindow), argv[1]);
    const int status = g_application_run(G_APPLICATION(application), 1, argv);
    g_object_unref(application);
    return status;
}

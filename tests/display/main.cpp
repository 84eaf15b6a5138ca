#include <adwaita.h>
#include <gtest/gtest.h>
#include <gtkmm/application.h>

/// The display tests share one toolkit, as one program has.
int main(int count, char** arguments)
{
    ::testing::InitGoogleTest(&count, arguments);
    // A non-unique application: it starts the toolkit and its bindings without a main loop of its own.
    const auto application =
        Gtk::Application::create("com.hollisward.Corvane.Test", Gio::Application::Flags::NON_UNIQUE);
    application->register_application();
    adw_init();
    return RUN_ALL_TESTS();
}

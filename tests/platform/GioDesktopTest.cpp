#include "platform/GioDesktop.h"

#include "platform/XdgPlaces.h"
#include "support/MainContext.h"
#include "support/TemporaryFolder.h"

#include <array>
#include <cstdlib>
#include <fstream>
#include <string>

#include <fcntl.h>
#include <glib-unix.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;

/// A home of its own for the whole test program: GLib reads these folders once.
class TestHome {
public:
    TestHome()
    {
        for (const auto* kind : {"DATA", "CONFIG", "CACHE"})
            ::setenv(("XDG_" + std::string(kind) + "_HOME").c_str(), (folder_ / kind).c_str(), 1);
        fs::create_directories(applications());
    }
    fs::path applications() const { return folder_ / "DATA/applications"; }
    fs::path operator/(std::string_view name) const { return folder_ / name; }

private:
    testing::TemporaryFolder folder_;
};

const TestHome home;

/// A mail program and browser that says which address it was given, and what it inherits.
class Listener {
public:
    Listener()
    {
        const auto script = home / "listener";
        std::ofstream(script) << "#!/bin/sh\nprintf '%s\\n' \"$1${CORVANE_TEST_OWN-}\" > '" << pipe_.string() << "'\n";
        fs::permissions(script, fs::perms::owner_all);
        std::ofstream(home.applications() / "listener.desktop")
            << "[Desktop Entry]\nType=Application\nName=Listener\nExec=" << script.string()
            << " %u\nMimeType=x-scheme-handler/mailto;x-scheme-handler/https;\n";
        std::ofstream(home.applications() / "mimeapps.list")
            << "[Default Applications]\nx-scheme-handler/mailto=listener.desktop\n"
               "x-scheme-handler/https=listener.desktop\n";
        ::mkfifo(pipe_.c_str(), 0600);
        descriptor_ = ::open(pipe_.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
        source_ = g_unix_fd_add(
            descriptor_, G_IO_IN,
            [](int descriptor, GIOCondition, gpointer heard) -> gboolean {
                std::array<char, 512> chunk{};
                const auto count = ::read(descriptor, chunk.data(), chunk.size());
                static_cast<std::string*>(heard)->append(chunk.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
                return G_SOURCE_CONTINUE;
            },
            &heard);
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    ~Listener()
    {
        g_source_remove(source_);
        ::close(descriptor_);
        fs::remove(pipe_);
    }

    std::string heard;

private:
    fs::path pipe_ = home / "pipe";
    int descriptor_ = -1;
    guint source_ = 0;
};

TEST(GioDesktopTest, HandsAddressesToTheirDefaultApplicationWithoutAttachmentsShellOrOwnVariables)
{
    Listener listener;
    ::setenv("CORVANE_TEST_OWN", " has what is not its own", 1);
    GioDesktop desktop([] {}, {"CORVANE_TEST_OWN"});
    desktop.open(*Url::parse("nobody-knows:x"));
    for (const auto& [address, expected] : std::vector<std::pair<std::string, std::string>>{
             {"https://h/a%2Fb?c=$(touch%20x)'&d;e", "https://h/a%2Fb?c=$(touch%20x)'&d;e\n"},
             {"mailto:a@b.c?attach=/etc/passwd&subject=s", "mailto:a@b.c?subject=s\n"}}) {
        listener.heard.clear();
        desktop.open(*Url::parse(address));
        EXPECT_TRUE(testing::iterateUntil([&] { return listener.heard.ends_with('\n'); })) << address;
        EXPECT_EQ(listener.heard, expected);
    }
}

TEST(XdgPlacesTest, PutsEachKindOfFileWhereTheUserWantsIt)
{
    const auto places = xdgPlaces();
    EXPECT_EQ(places.data, home / "DATA/Hollisward/Corvane");
    EXPECT_EQ(places.cache, home / "CACHE/Hollisward/Corvane");
    EXPECT_EQ(places.defaults, home / "CONFIG/Hollisward/Corvane/defaults.json");
}

} // namespace
} // namespace corvane

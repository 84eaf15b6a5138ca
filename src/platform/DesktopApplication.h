#pragma once

#include "base/Error.h"
#include "platform/GLibHandle.h"
#include "platform/SignalConnection.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

typedef struct _GtkApplication GtkApplication;
typedef struct _GtkWindow GtkWindow;

namespace corvane {

/// This program's place on the user's desktop: the one instance per user, its activation, its end. The toolkit's C++
/// binding is not started here: it takes longer than everything that the first page needs.
class DesktopApplication {
public:
    enum class Role : std::uint8_t { primary, secondary };

    explicit DesktopApplication(const char* applicationId);

    /// Finds out whether this is the first instance; if so, starts the toolkit.
    Result<Role> registerInstance();

    bool hasSessionBus() const;

    /// Of a secondary instance: has the primary one show its window; the exit status.
    int activatePrimary();

    /// Runs until `quit`, or until the last window has gone; the exit status. `activate` is called at the start and
    /// whenever a later instance hands over, `interrupted` on SIGTERM, SIGINT and SIGHUP: it is to end the program.
    int run(std::function<void()> activate, std::function<void()> interrupted);

    /// After `run`: carries out what other instances have asked for since, without waiting for more.
    void takeLateCalls();

    /// An action of the whole program with a key of its own, such as "<Control>q"; empty for none. Before `run`.
    void addAction(const char* name, const char* key, std::function<void()> action);

    void addWindow(GtkWindow* window);

    /// Asks the window that has the focus to close.
    void closeActiveWindow();

    /// The program runs on without them until `quit`.
    void hideWindows();

    void quit();

private:
    void activated() { activate_(); }

    struct Action {
        void activated(GVariant* parameter);

        std::function<void()> call;
        SignalConnection connection;
    };

    GObjectPtr<GtkApplication> application_;
    std::vector<std::unique_ptr<Action>> actions_;
    std::function<void()> activate_;
    std::function<void()> interrupted_;
    SignalConnection activated_;
};

} // namespace corvane

#pragma once

#include "app/CorvaneApp.h"
#include "platform/DesktopApplication.h"
#include "platform/RendererChoice.h"

#include <functional>
#include <memory>

namespace corvane {

/// Reacts to the desktop's calls: start, activation, the end. A second start of the program hands over to the first and
/// loads nothing.
class AppDelegate {
public:
    explicit AppDelegate(RendererChoice renderer);
    ~AppDelegate();

    /// Runs until the program ends; its exit status.
    int run();

    /// Whether the user has started the program while it was ending: it is to begin anew.
    bool isAskedForAgain() const { return isAskedForAgain_; }

private:
    int runPrimary();
    void addWindowAction(const char* name, const char* key, std::function<void()> action);
    void activate();
    void quit();

    RendererChoice renderer_;
    DesktopApplication application_;
    std::unique_ptr<CorvaneApp> app_; // only in the primary instance
    bool isQuitting_ = false;
    bool isAskedForAgain_ = false;
};

} // namespace corvane

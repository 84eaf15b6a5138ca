// Measures what each shipped dialog theme costs: its file is read anew for every call, here from the system's file
// cache.

#include "Timing.h"
#include "platform/FolderResources.h"
#include "settings/ThemeManager.h"

#include <fmt/format.h>

using corvane::bench::fastest;
using corvane::bench::keep;

int main()
{
    const auto resources = corvane::FolderResources::ofThisProgram();
    const corvane::ThemeManager themes(resources);
    fmt::print("{:<16} {:>12} {:>12}\n{:<16} {:>12} {:>12}\n", "theme", "dialogColors", "themeCSS", "", "µs", "µs");
    for (const auto* name : {"default", "light", "dark", "corvane", "chiseled_steel", "missing"}) {
        const auto colors = fastest([&] { keep(themes.dialogColors(name)); });
        const auto css = fastest([&] { keep(themes.themeCSS(name)); });
        fmt::print("{:<16} {:>12.1f} {:>12.1f}\n", name, colors.count() / 1e3, css.count() / 1e3);
    }
    return 0;
}

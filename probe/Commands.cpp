#include "Commands.h"

#include "Network.h"
#include "Storing.h"

#include <algorithm>
#include <array>

namespace corvane::probe {
namespace {

constexpr std::array<Command, 8> commands{{{"fetch", 2, 2, fetch},
                                           {"download", 2, 3, download},
                                           {"serve-page", 1, 1, servePage},
                                           {"save", 1, 1, save},
                                           {"apply", 1, 1, apply},
                                           {"sweep", 1, 1, sweep},
                                           {"defaults-set", 2, 2, setDefault},
                                           {"defaults-get", 1, 1, getDefault}}};

} // namespace

const Command* commandNamed(std::string_view name)
{
    const auto* const found = std::ranges::find(commands, name, &Command::name);
    return found == commands.end() ? nullptr : found;
}

} // namespace corvane::probe

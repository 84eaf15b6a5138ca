#include "catalogue/CacheBusting.h"

#include <fmt/format.h>

namespace corvane {

CheckTime checkTime(const Clock& clock)
{
    return std::chrono::floor<std::chrono::seconds>(clock.now());
}

std::string cacheBusted(std::string_view address, CheckTime time)
{
    return fmt::format("{}{}ts={}", address, address.contains('?') ? '&' : '?', time.time_since_epoch().count());
}

} // namespace corvane

#include "screens/DMGDownloadOutcome.h"

namespace corvane {

std::string DMGDownloadOutcome::identity() const
{
    if (const auto* success = std::get_if<Success>(&result))
        return "ok-" + success->file.string();
    return "err-" + std::get<Error>(result).text;
}

} // namespace corvane

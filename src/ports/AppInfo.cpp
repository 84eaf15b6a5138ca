#include "ports/AppInfo.h"

#include "generated/BuildValues.h"

namespace corvane {

AppInfo AppInfo::ofThisBuild()
{
    return {.shortVersion = build::version, .buildDateText = build::date};
}

} // namespace corvane

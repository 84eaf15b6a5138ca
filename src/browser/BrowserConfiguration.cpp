#include "browser/BrowserConfiguration.h"

#include "browser/PageScripts.h"

namespace corvane {

MainViewConfiguration mainViewConfiguration(const AllowedHosts& hosts)
{
    return {
        .userAgent = std::string(browserUserAgent),
        .messageHandler = "corvane",
        .bridgedHosts = {hosts.names().begin(), hosts.names().end()},
        .scripts =
            {
                {messageEntryScript(hosts), PageScript::Moment::documentStart},
                {messageEntryScript(hosts), PageScript::Moment::documentEnd},
                {deletionReportScript(hosts), PageScript::Moment::documentEnd},
            },
    };
}

} // namespace corvane

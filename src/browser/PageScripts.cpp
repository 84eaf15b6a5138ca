#include "browser/PageScripts.h"

namespace corvane {

std::string messageEntryScript(const AllowedHosts& hosts)
{
    return "(function() {\n"
           "    var allowedHosts = [" +
           hosts.listText() +
           "];\n"
           "    if (allowedHosts.indexOf(window.location.hostname) === -1) return;\n"
           "    if (typeof window.chrome === 'undefined') window.chrome = {};\n"
           "    if (typeof window.chrome.webview === 'undefined') window.chrome.webview = {};\n"
           "    window.chrome.webview.postMessage = function(msg) {\n"
           "        if (window.webkit && window.webkit.messageHandlers && window.webkit.messageHandlers.corvane)\n"
           "            window.webkit.messageHandlers.corvane.postMessage(msg);\n"
           "    };\n"
           "})();";
}

std::string deletionReportScript(const AllowedHosts& hosts)
{
    return "(function() {\n"
           "    var allowedHosts = [" +
           hosts.listText() +
           "];\n"
           "    if (allowedHosts.indexOf(window.location.hostname) === -1) return;\n"
           "    var q = (document.location.search || '').toLowerCase();\n"
           "    var f = (document.location.hash  || '').toLowerCase();\n"
           "    if (q.indexOf('deleted') !== -1 || f.indexOf('deleted') !== -1) {\n"
           "        if (window.webkit && window.webkit.messageHandlers && window.webkit.messageHandlers.corvane)\n"
           "            window.webkit.messageHandlers.corvane.postMessage('delete');\n"
           "    }\n"
           "})();";
}

} // namespace corvane

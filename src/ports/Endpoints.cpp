#include "ports/Endpoints.h"

#include "base/Text.h"
#include "generated/BuildValues.h"

#include <cstdlib>

namespace corvane {
namespace {

/// A value that the build fixed and whose form is therefore certain.
Url builtIn(std::string_view text)
{
    auto url = Url::parse(text);
    if (!url)
        std::abort(); // A packager's value that is no address: nothing sensible can follow.
    return *url;
}

class EndpointReader {
public:
    EndpointReader(const Endpoints::Environment& environment, std::vector<std::string>& refused)
        : environment_(environment), refused_(refused)
    {
    }

    Url address(const char* name, const char* fallback) { return overridden(name, false).value_or(builtIn(fallback)); }
    Url base(const char* name, const char* fallback) { return overridden(name, true).value_or(builtIn(fallback)); }

private:
    std::optional<Url> overridden(const char* name, bool isBase)
    {
        auto text = environment_(name);
        if (!text || text->empty())
            return std::nullopt;
        if (isBase && !text->ends_with('/'))
            *text += '/';
        auto url = Url::parse(*text);
        const bool hasTail = url && (!url->query().empty() || !url->fragment().empty() || text->contains('#'));
        if (url && url->isHttp() && !(isBase && hasTail))
            return url;
        refused_.emplace_back(name);
        return std::nullopt;
    }

    const Endpoints::Environment& environment_;
    std::vector<std::string>& refused_;
};

} // namespace

Endpoints Endpoints::read(const Environment& environment, std::vector<std::string>& refused)
{
    EndpointReader reader(environment, refused);
    return {
        .publishing = reader.base("CORVANE_PUBLISHING_URL", build::publishingUrl),
        .notification = reader.base("CORVANE_NOTIFICATION_URL", build::notificationUrl),
        .storeLookup = reader.address("CORVANE_STORE_LOOKUP_URL", build::storeLookupUrl),
        .storePage = reader.address("CORVANE_STORE_PAGE_URL", build::storePageUrl),
        .collect = reader.address("CORVANE_COLLECT_URL", build::collectUrl),
        .tag = reader.address("CORVANE_TAG_URL", build::tagUrl),
        .donation = reader.base("CORVANE_DONATION_URL", build::donationUrl),
        .measurementId = build::measurementId,
        .storeId = build::storeId,
        .supportMail = build::supportMail,
        .donationAccount = build::donationAccount,
    };
}

Url Endpoints::below(const Url& base, std::string_view path)
{
    return builtIn(base.text() + std::string(path));
}

Url Endpoints::helpPage() const
{
    return below(publishing, "Corvane/help/mac/help_mac_v0.75.xx.html");
}

Url Endpoints::privacyPage() const
{
    return below(publishing, "Corvane/privacypolicy.html");
}

Url Endpoints::privacyUsagePage() const
{
    return below(publishing, "Corvane/privacypolicy.html#usagedata");
}

Url Endpoints::donationPage() const
{
    return below(donation,
                 "donate/?business=" + percentEncodedComponent(donationAccount) + "&no_recurring=0&currency_code=USD");
}

Url Endpoints::defaultSitesURL() const
{
    return below(publishing, "Corvane/sites/sites.json");
}

Url Endpoints::defaultSitesWhatsNewURL() const
{
    return below(publishing, "Corvane/sites/whatsnew.html");
}

Url Endpoints::appWhatsNewBaseURL() const
{
    return below(publishing, "Corvane/mac_whatsnew/");
}

Url Endpoints::appDownloadPageURL() const
{
    return below(publishing, "Corvane/mac/");
}

} // namespace corvane

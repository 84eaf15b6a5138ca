#include "Target.h"
#include "base/Text.h"
#include "base/Url.h"
#include "browser/AllowedHosts.h"
#include "browser/LoadableAddress.h"
#include "platform/GLibHandle.h"
#include "platform/MailtoUrl.h"

#include <algorithm>
#include <array>
#include <string>

#include <arpa/inet.h>

namespace corvane::fuzz {
namespace {

/// A second reader, written by others: what it sees must be what this program sees.
void requireAgreement(const Url& url)
{
    gchar *hostText = nullptr, *pathText = nullptr, *queryText = nullptr, *fragmentText = nullptr;
    int port = -1;
    const bool isTaken = g_uri_split(url.text().c_str(), G_URI_FLAGS_ENCODED, nullptr, nullptr, &hostText, &port,
                                     &pathText, &queryText, &fragmentText, nullptr) != FALSE;
    const auto host = adopt(hostText), path = adopt(pathText), query = adopt(queryText), fragment = adopt(fragmentText);
    require(isTaken && host && path, "another reader takes the address, too");

    // It decodes the letters among %XX, which mean the same.
    const auto means = [](std::string_view part, const GCharPtr& seen) {
        return percentDecoded(part) == percentDecoded(seen ? seen.get() : "");
    };
    auto seenHost = lowercased(host.get());
    if (seenHost.contains(':'))
        seenHost = "[" + seenHost + "]";
    require(seenHost == url.host(), "another reader sees the same host");
    require(means(url.path(), path) && means(url.query(), query) && means(url.fragment(), fragment),
            "another reader sees the same parts");
    const int usual = url.scheme() == "http" ? 80 : 443;
    const auto origin = url.scheme() + "://" + url.host();
    require(url.origin() == (port == -1 || port == usual ? origin : origin + ":" + std::to_string(port)),
            "another reader sees the same origin");
}

/// Readers that take a host for an IPv4 address, in any of its spellings, must see the one that is written.
void requirePlainNumbers(std::string host)
{
    if (host.ends_with('.'))
        host.pop_back();
    in_addr address{};
    std::array<char, INET_ADDRSTRLEN> canonical{};
    const bool isAddress = inet_aton(host.c_str(), &address) != 0;
    require(!isAddress || host == inet_ntop(AF_INET, &address, canonical.data(), canonical.size()),
            "an address in numbers has one spelling");
}

void requireUrl(const Url& url)
{
    const auto again = Url::parse(url.text());
    require(again == url, "an address that is written is read again");
    require(again->scheme() == url.scheme() && again->host() == url.host() && again->path() == url.path() &&
                again->query() == url.query() && again->fragment() == url.fragment() && again->origin() == url.origin(),
            "it has the same parts");
    static constexpr std::string_view strangers = "\"<>\\^`{|}";
    require(std::ranges::all_of(
                url.text(),
                [](unsigned char c) { return c > 0x20 && c < 0x7F && !strangers.contains(static_cast<char>(c)); }),
            "an address has no blank, control or other strange character");
    require(lowercased(url.scheme() + url.host()) == url.scheme() + url.host(), "scheme and host are in lower case");
    require(url.isHttp() != url.origin().empty(), "web addresses have an origin");
    if (!url.isHttp())
        return;
    require(!url.host().empty() && !url.host().contains('%'), "web addresses have a host");
    const auto origin = Url::parse(url.origin());
    require(origin && origin->origin() == url.origin() && origin->host() == url.host(), "an origin is an address");
    require(AllowedHosts(url).trustsOrigin(url.origin()), "a page of the host itself is trusted");
    requireAgreement(url);
    requirePlainNumbers(url.host());
}

bool attachesFile(const Url& mail)
{
    for (auto rest = mail.query(); !rest.empty();) {
        const auto field = rest.substr(0, rest.find('&'));
        rest.remove_prefix(std::min(field.size() + 1, rest.size()));
        const auto name = lowercased(trimmed(percentDecoded(field.substr(0, field.find('=')))));
        if (name == "attach" || name == "attachment")
            return true;
    }
    return false;
}

void requireRules(const Url& url)
{
    const auto local = Url::ofFile("/page.html");
    const bool isScript = url.scheme() == "javascript";
    require(isLoadable(url) != isScript, "scripts are not loaded");
    require(!mayReplacePage(url, local) || (!isScript && url.scheme() != "data"), "a page leads to no script");
    require(!mayReplacePage(url, std::nullopt) || url.scheme() != "file", "a page of the network leads to no file");
    const auto mail = withoutAttachments(url);
    require(url.scheme() == "mailto" || mail == url, "only mail addresses lose attachments");
    require(mail.scheme() != "mailto" || !attachesFile(mail), "no mail has an attachment");
}

} // namespace

void readInput(std::string_view bytes)
{
    if (const auto url = Url::parse(bytes)) {
        requireUrl(*url);
        requireRules(*url);
        require(parseLoadable(bytes).has_value() == isLoadable(*url), "scripts are not loaded");
    }
    if (const auto typed = parseTyped(bytes)) {
        require(typed->isHttp(), "a person types web addresses");
        requireUrl(*typed);
    }
    if (const auto mirrored = Url::fromEngine(bytes))
        requireUrl(*mirrored);

    const AllowedHosts hosts(*Url::parse("https://push.example/"));
    const auto origin = Url::parse(bytes);
    require(!hosts.trustsOrigin(bytes) || (origin && origin->host() == "push.example" && origin->scheme() == "https"),
            "only pages of the host are trusted");
    const auto file = "/" + std::string(bytes);
    require(bytes.empty() || file.contains("//") || percentDecoded(Url::ofFile(file).path()) == file,
            "every file has an address");
}

} // namespace corvane::fuzz

#include "base/Url.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <memory>

#include <arpa/inet.h>
#include <idn2.h>

namespace corvane {
namespace {

constexpr auto npos = std::string_view::npos;

bool isAlpha(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isHex(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool isAscii(char c)
{
    return static_cast<unsigned char>(c) < 0x80;
}

bool isUriCharacter(char c)
{
    static constexpr std::string_view others = "-._~:/?#[]@!$&'()*+,;=";
    return isAlpha(c) || isDigit(c) || others.contains(c);
}

bool startsPercentTriple(std::string_view text)
{
    return text.size() >= 3 && text[0] == '%' && isHex(text[1]) && isHex(text[2]);
}

bool hasOnlyUriCharacters(std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%') {
            if (!startsPercentTriple(text.substr(i)))
                return false;
            i += 2;
        } else if (isAscii(text[i]) && !isUriCharacter(text[i])) {
            return false;
        }
    }
    return true;
}

/// The length of the scheme before the first ":", or nothing when the text has none.
std::optional<std::size_t> schemeLength(std::string_view text)
{
    const auto colon = text.find(':');
    if (colon == npos || colon == 0 || !isAlpha(text.front()))
        return std::nullopt;
    const bool good = std::ranges::all_of(
        text.substr(0, colon), [](char c) { return isAlpha(c) || isDigit(c) || c == '+' || c == '-' || c == '.'; });
    return good ? std::optional(colon) : std::nullopt;
}

std::string encodedNonAscii(std::string_view text)
{
    std::string encoded;
    for (const char c : text)
        encoded += isAscii(c) ? std::string(1, c) : percentEncodedComponent(std::string_view(&c, 1));
    return encoded;
}

/// A host in ASCII: as it is, or its IDNA form (UTS #46, non-transitional).
std::optional<std::string> asciiHost(std::string_view host)
{
    if (std::ranges::all_of(host, isAscii))
        return std::string(host);
    char* converted = nullptr;
    const int status = idn2_to_ascii_8z(std::string(host).c_str(), &converted, IDN2_NFC_INPUT | IDN2_NONTRANSITIONAL);
    const std::unique_ptr<char, void (*)(void*)> owner(converted, idn2_free);
    if (status != IDN2_OK || converted == nullptr)
        return std::nullopt;
    return std::string(converted);
}

/// Whether an address of this family (AF_INET, AF_INET6) is written in its one canonical way. Other spellings of the
/// same address are read differently by different readers.
bool isCanonicalAddress(int family, const std::string& text)
{
    in6_addr bytes{}; // large enough for both families
    std::array<char, INET6_ADDRSTRLEN> canonical{};
    return inet_pton(family, text.c_str(), &bytes) == 1 &&
           inet_ntop(family, &bytes, canonical.data(), canonical.size()) != nullptr && text == canonical.data();
}

bool isIpLiteral(std::string_view host)
{
    return host.starts_with('[') && host.ends_with(']') &&
           isCanonicalAddress(AF_INET6, lowercased(host.substr(1, host.size() - 2)));
}

/// Whether the last label is a number, decimal or hexadecimal: web engines then read the whole host as an IPv4 address.
bool endsInNumber(std::string_view host)
{
    if (host.ends_with('.'))
        host.remove_suffix(1);
    const auto label = lowercased(host.substr(host.rfind('.') + 1)); // npos + 1 is the beginning
    const bool isDecimal = !label.empty() && std::ranges::all_of(label, isDigit);
    return isDecimal || (label.starts_with("0x") && std::ranges::all_of(label.substr(2), isHex));
}

/// A name of letters, digits, "-", "." and "_", or a canonical IPv4 address. Wide forms of "/" and the like have become
/// the characters themselves by now and are refused here.
bool isHostName(std::string_view host)
{
    const bool good =
        std::ranges::all_of(host, [](char c) { return isAlpha(c) || isDigit(c) || c == '-' || c == '.' || c == '_'; });
    return good && (!endsInNumber(host) || isCanonicalAddress(AF_INET, std::string(host)));
}

bool isPort(std::string_view port)
{
    if (port.empty())
        return true;
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(port.data(), port.data() + port.size(), number);
    return isDigit(port.front()) && error == std::errc() && end == port.data() + port.size() && number <= 65535;
}

struct Authority {
    std::string text; // userinfo@host:port in ASCII
    std::string host;
    std::string port; // without leading zeros
};

std::optional<Authority> parseAuthority(std::string_view text)
{
    const auto at = text.find('@');
    if (at != npos && text.find('@', at + 1) != npos)
        return std::nullopt;
    const auto userInfo = at == npos ? std::string_view() : text.substr(0, at + 1);
    if (userInfo.contains('[') || userInfo.contains(']'))
        return std::nullopt;
    const auto hostAndPort = at == npos ? text : text.substr(at + 1);

    const auto bracket = hostAndPort.rfind(']');
    const auto colon = hostAndPort.find(':', bracket == npos ? 0 : bracket);
    const auto host = asciiHost(hostAndPort.substr(0, colon));
    const auto port = colon == npos ? std::string_view() : hostAndPort.substr(colon + 1);
    if (!host || !isPort(port) || !(isHostName(*host) || isIpLiteral(*host)))
        return std::nullopt;

    auto whole = encodedNonAscii(userInfo) + *host;
    if (colon != npos)
        whole += ':' + std::string(port);
    const auto digits = port.substr(std::min(port.find_first_not_of('0'), port.empty() ? 0 : port.size() - 1));
    return Authority{std::move(whole), lowercased(*host), std::string(digits)};
}

bool hasMisplacedBracket(std::string_view afterAuthority)
{
    return afterAuthority.find_first_of("[]") != npos;
}

} // namespace

std::optional<Url> Url::parse(std::string_view text)
{
    const auto schemeEnd = schemeLength(text);
    if (!schemeEnd || !hasOnlyUriCharacters(text) || !isValidUtf8(text))
        return std::nullopt;

    Url url;
    url.scheme_ = lowercased(text.substr(0, *schemeEnd));
    url.text_ = text.substr(0, *schemeEnd + 1);
    auto rest = text.substr(*schemeEnd + 1);

    if (rest.starts_with("//")) {
        rest.remove_prefix(2);
        const auto authorityText = rest.substr(0, rest.find_first_of("/?#"));
        auto authority = parseAuthority(authorityText);
        if (!authority)
            return std::nullopt;
        rest.remove_prefix(authorityText.size());
        url.text_ += "//" + authority->text;
        url.host_ = std::move(authority->host);
        url.port_ = std::move(authority->port);
    }
    // An engine decodes %XX in a host; this reader does not, so the two would see different ones.
    if (url.isHttp() && (url.host_.empty() || url.host_.contains('%')))
        return std::nullopt;
    if (hasMisplacedBracket(rest))
        return std::nullopt;

    url.pathStart_ = url.text_.size();
    url.text_ += encodedNonAscii(rest);
    const auto hash = url.text_.find('#', url.pathStart_);
    if (hash != npos) {
        url.fragmentStart_ = hash + 1;
        if (url.text_.find('#', hash + 1) != npos)
            return std::nullopt;
    }
    const auto question = url.text_.find('?', url.pathStart_);
    if (question < hash)
        url.queryStart_ = question + 1;
    return url;
}

std::optional<Url> Url::fromEngine(std::string_view text)
{
    const auto schemeEnd = schemeLength(text).value_or(0);
    const bool hasAuthority = text.substr(schemeEnd).starts_with("://");
    const auto authorityEnd =
        hasAuthority ? std::min(text.find_first_of("/?#", schemeEnd + 3), text.size()) : schemeEnd;

    std::string encoded(text.substr(0, authorityEnd));
    bool inFragment = false;
    for (std::size_t i = authorityEnd; i < text.size(); ++i) {
        const char c = text[i];
        const bool keeps = c == '%' ? startsPercentTriple(text.substr(i))
                                    : isUriCharacter(c) && c != '[' && c != ']' && !(c == '#' && inFragment);
        encoded += keeps ? std::string(1, c) : percentEncodedComponent(std::string_view(&c, 1));
        inFragment = inFragment || c == '#';
    }
    return parse(encoded);
}

Url Url::ofFile(const std::filesystem::path& file)
{
    std::string text = "file://";
    for (const auto& component : file.relative_path())
        text += '/' + percentEncodedComponent(component.string());
    return *parse(text); // certain: every byte is encoded
}

std::string_view Url::path() const
{
    const auto end = std::min(queryStart_ == npos ? text_.size() : queryStart_ - 1,
                              fragmentStart_ == npos ? text_.size() : fragmentStart_ - 1);
    return std::string_view(text_).substr(pathStart_, end - pathStart_);
}

std::string_view Url::query() const
{
    if (queryStart_ == npos)
        return {};
    const auto end = fragmentStart_ == npos ? text_.size() : fragmentStart_ - 1;
    return std::string_view(text_).substr(queryStart_, end - queryStart_);
}

std::string_view Url::fragment() const
{
    return fragmentStart_ == npos ? std::string_view() : std::string_view(text_).substr(fragmentStart_);
}

std::string Url::origin() const
{
    if (!isHttp())
        return {};
    auto origin = scheme_ + "://" + host_;
    const std::string_view usual = scheme_ == "http" ? "80" : "443";
    if (!port_.empty() && port_ != usual)
        origin += ':' + port_;
    return origin;
}

bool isLoadable(const Url& url)
{
    return url.scheme() != "javascript";
}

} // namespace corvane

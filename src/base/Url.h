#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// An absolute address (RFC 3986) whose text has been checked strictly, so that every reader of it sees the same host.
/// What is loaded, launched or fetched is always `text()` of a parsed value, never the raw input.
class Url {
public:
    /// Reads an address after the caller's own trimming; empty when any rule is broken: only RFC 3986 characters and
    /// well-formed %XX (other non-ASCII is percent-encoded, in a host turned into IDNA), a scheme, for http and https
    /// "//" and a host, at most one "@", a port from 0 to 65535. The original spelling is kept.
    static std::optional<Url> parse(std::string_view text);

    /// Reads an address that the web engine has already normalised: characters that RFC 3986 does not know are
    /// percent-encoded first. For mirroring the engine's state only, never for what a user or a server sends.
    static std::optional<Url> fromEngine(std::string_view text);

    /// The address of the file at an absolute path.
    static Url ofFile(const std::filesystem::path& file);

    const std::string& text() const { return text_; }

    /// In lower case.
    const std::string& scheme() const { return scheme_; }

    /// In lower case, an IPv6 literal with its brackets, as a page's `location.hostname` has it; empty when absent.
    const std::string& host() const { return host_; }

    /// Percent-encoded as written.
    std::string_view path() const;

    /// Without the "?"; empty when absent.
    std::string_view query() const;

    /// Without the "#"; empty when absent.
    std::string_view fragment() const;

    bool isHttp() const { return scheme_ == "http" || scheme_ == "https"; }

    /// scheme://host:port with the port left out where it is the scheme's own, as a page's `location.origin` has it.
    /// Empty for anything but http and https.
    std::string origin() const;

    bool operator==(const Url& other) const { return text_ == other.text_; }

private:
    Url() = default;

    std::string text_;
    std::string scheme_;
    std::string host_;
    std::string port_;
    std::size_t pathStart_ = 0;
    std::size_t queryStart_ = std::string::npos;    // of the character after "?"
    std::size_t fragmentStart_ = std::string::npos; // of the character after "#"
};

/// Whether a view may be sent to this address. A javascript address would run in the page shown.
bool isLoadable(const Url& url);

} // namespace corvane

#include "network/Fault.h"

#include "platform/GzipOfZeros.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string_view>

#include <fmt/format.h>

namespace corvane::testing {
namespace {

using Arrives = Fault::Arrives;
using Lasts = Fault::Lasts;
using Answer = RawServer::Reply;
using Then = Answer::Then;

constexpr auto okLine = "HTTP/1.1 200 OK\r\n";

/// Sends the text with "{good}" and "{length}" replaced by the document and its length.
Fault raw(std::string name, std::string_view text, Arrives arrives = Arrives::nothing, int status = 200,
          Then then = Then::close)
{
    return {std::move(name),
            [text = std::string(text), then](const std::string& good, const std::string&) {
                auto bytes = text;
                for (const auto& [mark, value] :
                     std::map<std::string, std::string>{{"{good}", good}, {"{length}", fmt::to_string(good.size())}}) {
                    for (auto place = bytes.find(mark); place != std::string::npos; place = bytes.find(mark, place))
                        bytes.replace(place, mark.size(), value);
                }
                return Answer{.bytes = std::move(bytes), .then = then};
            },
            arrives, status};
}

/// An answer that is all right but for its head, which lacks the length and the blank line.
Fault head(std::string name, std::string_view lines, Arrives arrives = Arrives::nothing, int status = 200)
{
    return raw(std::move(name), std::string(lines) + "Content-Length: {length}\r\n\r\n{good}", arrives, status,
               Then::wait);
}

/// An answer that is all right but for its status.
Fault status(int number, Arrives arrives = Arrives::document)
{
    return head(fmt::format("answers {}", number), fmt::format("HTTP/1.1 {} Thus\r\n", number), arrives, number);
}

/// Sends a start and then one piece again and again.
Fault endless(std::string name, std::string bytes, std::string again, std::chrono::milliseconds pause, Lasts lasts)
{
    return {.name = std::move(name),
            .reply = [bytes = std::move(bytes), again = std::move(again),
                      pause](const std::string&,
                             const std::string&) { return Answer{.bytes = bytes, .again = again, .pause = pause}; },
            .lasts = lasts};
}

/// Sends a start and then nothing more.
Fault silent(std::string name, std::string_view bytes)
{
    auto fault = raw(std::move(name), bytes, Arrives::nothing, 200, Then::wait);
    fault.lasts = Lasts::untilSilent;
    return fault;
}

/// Sends `encode` of the document with these headers.
Fault encoded(std::string name, std::string_view headers, std::function<std::string(const std::string&)> encode,
              Arrives arrives)
{
    return {std::move(name),
            [headers = std::string(headers), encode = std::move(encode)](const std::string& good, const std::string&) {
                return RawServer::ok(encode(good), headers);
            },
            arrives};
}

/// Sends a body whatever the document is.
Fault body(std::string name, std::string_view bytes, Arrives arrives, std::string_view headers = {})
{
    return encoded(
        std::move(name), headers, [bytes = std::string(bytes)](const std::string&) { return bytes; }, arrives);
}

Fault redirect(std::string_view where, std::string_view location)
{
    return {fmt::format("redirects {}", where),
            [location = std::string(location)](const std::string&, const std::string&) {
                return RawServer::redirect(302, location);
            }};
}

/// Leads from address to address of one path, and after so many of them to the document.
Fault hops(int count, Arrives arrives)
{
    return {fmt::format("redirects {} times", count),
            [count](const std::string& good, const std::string& request) {
                static constexpr std::string_view mark = "?hop=";
                const auto place = request.find(mark);
                const int hop = place == std::string::npos ? 0 : std::stoi(request.substr(place + mark.size(), 3));
                return hop == count ? RawServer::ok(good) : RawServer::redirect(302, fmt::format("?hop={}", hop + 1));
            },
            arrives};
}

std::string times(std::size_t count, std::string_view text)
{
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

std::string nested(std::string bytes, int times)
{
    for (int i = 0; i < times; ++i)
        bytes = gzipOf(bytes);
    return bytes;
}

} // namespace

std::vector<Fault> startFaults()
{
    const std::string length = "Content-Length: {length}\r\n";
    const std::string tooMuch(100'000, 'x');
    using enum Arrives;
    return {
        raw("has no status line", "{good}"),
        raw("speaks another protocol", "220 mail ready\r\n{good}"),
        raw("speaks a binary protocol", std::string("\x16\x03\x01\x02\0\x01\0\x01\xFC\x03\x03", 11)),
        head("answers as a radio does", "ICY 200 OK\r\n", document),
        head("has no status", "HTTP/1.1 OK\r\n"),
        head("has a negative status", "HTTP/1.1 -200 OK\r\n"),
        head("has a status of four digits", "HTTP/1.1 2000 OK\r\n"),
        head("has a status of one digit", "HTTP/1.1 2 OK\r\n"),
        head("has status 0", "HTTP/1.1 000 OK\r\n"),
        head("has no version", "HTTP/ 200 OK\r\n"),
        head("has no reason", "HTTP/1.1 200\r\n", document),
        head("is of an older version", "HTTP/1.0 200 OK\r\n", document),
        head("is of a later version", "HTTP/1.9 200 OK\r\n"),
        head("ends its lines with line feeds", "HTTP/1.1 200 OK\n", document),
        head("begins with blank lines", "\r\n\r\nHTTP/1.1 200 OK\r\n", document),
        raw("ends amid its headers", std::string(okLine) + "Content-Le"),
        raw("has a very long status line", "HTTP/1.1 200 " + tooMuch + "\r\n" + length + "\r\n{good}"),
        head("has a very long header", std::string(okLine) + "X: " + tooMuch + "\r\n"),
        head("has very many headers", okLine + times(10'000, "X: 0123456789\r\n")),
        endless("never ends its headers", okLine, times(1000, "X: y\r\n"), {}, Lasts::briefly),
        head("has a null byte in a header", std::string(okLine) + std::string("X: a\0b\r\n", 8)),
        head("folds a header", std::string(okLine) + "X: a\r\n b\r\n\tc\r\n", document),
        head("folds its first header", std::string(okLine) + " a: b\r\n", document),
        head("has a header without a colon", std::string(okLine) + "nothing\r\n", document),
        head("has a header without a name", std::string(okLine) + ": a\r\n", document),
        head("has a blank before the colon", std::string(okLine) + "X : a\r\n", document),
        head("has control characters in a header", std::string(okLine) + "X: \x01\x7F\xFF\r\n", document),
        head("goes on", "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Early\r\nLink: <a>\r\n\r\n" + std::string(okLine),
             document),
        head("goes on a thousand times", times(1000, "HTTP/1.1 100 Continue\r\n\r\n") + okLine),
        endless("goes on and on", "", times(100, "HTTP/1.1 102 Processing\r\n\r\n"), {}, Lasts::briefly),
        silent("changes its protocol", "HTTP/1.1 101 Other\r\nConnection: upgrade\r\nUpgrade: x\r\n\r\n{good}"),
        raw("has no content and a body", "HTTP/1.1 204 None\r\n" + length + "\r\n{good}", empty, 204),
        raw("has not changed and a body", "HTTP/1.1 304 Same\r\n" + length + "\r\n{good}", empty, 304),
        status(206),
        status(205),
        status(300),
        status(302),
        status(401),
        status(403),
        status(404),
        status(500),
        status(503),
        status(999),
    };
}

std::vector<Fault> lengthFaults()
{
    const auto withLength = [](std::string name, std::string_view lengths, Arrives arrives = Arrives::nothing) {
        return raw(std::move(name), std::string(okLine) + std::string(lengths) + "\r\n{good}", arrives);
    };
    const auto chunked = [](std::string name, std::string_view chunks, Arrives arrives = Arrives::nothing) {
        return raw(std::move(name), std::string(okLine) + "Transfer-Encoding: chunked\r\n\r\n" + std::string(chunks),
                   arrives);
    };
    const std::string chunkedHead = std::string(okLine) + "Transfer-Encoding: chunked\r\n\r\n";
    using enum Arrives;
    return {
        withLength("has no length", "", document),
        withLength("has an empty length", "Content-Length: \r\n"),
        withLength("has half a list of lengths", "Content-Length: {length},\r\n"),
        withLength("has a negative length", "Content-Length: -1\r\n"),
        withLength("has a hexadecimal length", "Content-Length: 0x5\r\n"),
        withLength("has a length past 64 bits", "Content-Length: 18446744073709551620\r\n"),
        withLength("has a length past 63 bits", "Content-Length: 9223372036854775808\r\n"),
        withLength("announces too much", "Content-Length: 99999999999\r\n"),
        withLength("has a length of zero", "Content-Length: 0\r\n", empty),
        withLength("says its length twice", "Content-Length: {length}\r\nContent-Length: {length}\r\n", document),
        withLength("says two lengths", "Content-Length: 1\r\nContent-Length: {length}\r\n"),
        withLength("lists two lengths", "Content-Length: 1, {length}\r\n"),
        withLength("is cut off", "Content-Length: 999\r\n"),
        withLength("is cut off where the server said it would close", "Connection: close\r\nContent-Length: 999\r\n"),
        raw("is cut off in an older version", "HTTP/1.0 200 OK\r\nContent-Length: 999\r\n\r\n{good}"),
        raw("sends more than announced", std::string(okLine) + "Content-Length: {length}\r\n\r\n{good}garbage",
            document, 200, Then::wait),
        raw("sends a second answer",
            std::string(okLine) +
                "Content-Length: {length}\r\n\r\n{good}HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}",
            document, 200, Then::wait),
        endless("sends too much", std::string(okLine) + "\r\n", std::string(16'384, ' '), {}, Lasts::briefly),
        chunked("sends no last chunk", "1\r\n[\r\n"),
        chunked("breaks off amid a chunk", "fff\r\n{good}"),
        chunked("has chunks of no size", "\r\n{good}\r\n0\r\n\r\n"),
        chunked("has chunks of odd sizes", "zz\r\n{good}\r\n0\r\n\r\n"),
        chunked("has a negative chunk", "-1\r\n{good}\r\n0\r\n\r\n"),
        chunked("has a chunk past 64 bits", "10000000000000001\r\n{good}\r\n0\r\n\r\n"),
        chunked("has a chunk of 64 bits", "ffffffffffffffff\r\n{good}\r\n0\r\n\r\n"),
        chunked("has a chunk of 63 bits", "7fffffffffffffff\r\n{good}\r\n0\r\n\r\n"),
        chunked("has a chunk that is too long for its size", "1\r\n{good}\r\n0\r\n\r\n"),
        chunked("has an endless chunk size", std::string(100'000, '0') + "1\r\n"),
        endless("sends chunks without end", chunkedHead, times(1000, "2\r\n  \r\n"), {}, Lasts::briefly),
        {"sends chunks of one byte",
         [chunkedHead](const std::string& good, const std::string&) {
             auto bytes = chunkedHead;
             for (const char c : good)
                 bytes += fmt::format("1;name=value\r\n{}\r\n", c);
             return Answer{.bytes = bytes + "0\r\nTrailer: x\r\n\r\n", .then = Then::wait};
         },
         document},
        {"says both length and chunks",
         [](const std::string& good, const std::string&) {
             return Answer{.bytes = fmt::format("{}Content-Length: 1\r\nTransfer-Encoding: chunked\r\n\r\n{:x}\r\n"
                                                "{}\r\n0\r\n\r\n",
                                                okLine, good.size(), good)};
         },
         document},
        endless("never ends its trailers", chunkedHead + "0\r\n", times(1000, "X: y\r\n"), {}, Lasts::briefly),
        chunked("sends no end of its trailers", "0\r\nX: y\r\n"),
        raw("has an unknown transfer encoding", std::string(okLine) + "Transfer-Encoding: gzip\r\n\r\n{good}"),
    };
}

std::vector<Fault> encodingFaults()
{
    constexpr auto gzip = "Content-Encoding: gzip\r\n";
    static const auto bomb = gzipOfZeros(std::size_t{128} << 20U);
    const auto same = [](const std::string& good) { return good; };
    using enum Arrives;
    return {
        encoded(
            "is compressed", gzip, [](const std::string& good) { return gzipOf(good); }, document),
        encoded(
            "is compressed in two parts", gzip,
            [](const std::string& good) { return gzipOf(good.substr(0, 1)) + gzipOf(good.substr(1)); }, document),
        encoded(
            "is compressed twice", "Content-Encoding: gzip, gzip\r\n",
            [](const std::string& good) { return nested(good, 2); }, bytes),
        encoded(
            "is compressed once more than said", gzip, [](const std::string& good) { return nested(good, 2); }, bytes),
        encoded("says an unknown compression", "Content-Encoding: xyz\r\n", same, document),
        encoded("is not compressed as it says", gzip, same, nothing),
        encoded(
            "is compressed and followed by garbage", gzip,
            [](const std::string& good) { return gzipOf(good) + "garbage"; }, nothing),
        endless("is compressed and nothing", std::string(okLine) + gzip + "\r\n" + gzipOf("").substr(0, 10),
                times(3000, std::string("\0\0\0\xFF\xFF", 5)), {}, Lasts::briefly),
        encoded(
            "is compressed and cut off", gzip,
            [](const std::string& good) { return gzipOf(good).substr(0, gzipOf(good).size() / 2); }, nothing),
        encoded(
            "is compressed and damaged", gzip,
            [](const std::string& good) {
                auto compressed = gzipOf(good);
                compressed[compressed.size() - 6] ^= 0x55; // the checksum
                return compressed;
            },
            nothing),
        body("sends a bomb", bomb, nothing, gzip),
        body("sends a bomb in a bomb", gzipOf(bomb), nothing, gzip),
        encoded("says another character set", "Content-Type: text/html; charset=utf-16\r\n", same, document),
        body("is empty", "", empty),
        body("is no JSON", "<!DOCTYPE html><p>busy", text),
        body("is deep", std::string(2000, '['), text),
        body("is Latin-1", "{\"title\":\"\xFC\"}", bytes),
        body("is UTF-16", std::string("\xFF\xFE{\0}\0", 6), bytes),
        body("is UTF-32", std::string("\xFF\xFE\0\0{\0\0\0}\0\0\0", 12), bytes),
        body("is a byte order mark", "\xEF\xBB\xBF", text),
        encoded(
            "begins with a byte order mark", "", [](const std::string& good) { return "\xEF\xBB\xBF" + good; },
            document),
        encoded(
            "has a null byte", "", [](const std::string& good) { return good + '\0'; }, text),
        body("has half a surrogate pair", "{\"title\":\"\xED\xA0\x80\"}", bytes),
    };
}

std::vector<Fault> courseFaults()
{
    using namespace std::chrono_literals;
    using enum Arrives;
    const std::string begun = std::string(okLine) + "Content-Length: 999\r\n\r\n[";
    return {
        raw("hangs up", ""),
        raw("resets", "", nothing, 200, Then::reset),
        raw("resets amid its body", begun, nothing, 200, Then::reset),
        silent("is silent", ""),
        silent("falls silent amid its headers", "HTTP/1.1 200 OK\r\nX:"),
        silent("falls silent amid its body", begun),
        endless("drips its headers", okLine, "X", 5ms, Lasts::forever),
        endless("drips its body", begun, " ", 5ms, Lasts::forever),
        hops(20, document),
        hops(21, nothing),
        redirect("in a circle", "?again"),
        redirect("to a file", "file:///etc/hostname"),
        redirect("to a script", "javascript:1"),
        redirect("to data", "data:application/json,[]"),
        redirect("to another protocol", "ftp://127.0.0.1/"),
        redirect("to nobody", "http://127.0.0.1:1/"),
        redirect("to a port that is none", "http://127.0.0.1:65536/"),
        redirect("to two hosts", "http://a@b@127.0.0.1/"),
        redirect("to what is no address", "http:// /"),
        redirect("very far", "/" + std::string(70'000, 'x')),
    };
}

std::vector<Fault> allFaults()
{
    std::vector<Fault> all;
    for (const auto faults : {startFaults, lengthFaults, encodingFaults, courseFaults})
        std::ranges::move(faults(), std::back_inserter(all));
    return all;
}

} // namespace corvane::testing

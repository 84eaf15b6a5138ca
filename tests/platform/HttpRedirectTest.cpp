#include "platform/HttpRedirect.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(HttpRedirectTest, ResolvesTheLocationWithItsSpellingAndRefusesUnsafeOnes)
{
    struct Case {
        std::string from, location, target; // no target: refused
    };
    const std::vector<Case> cases{
        {"http://h/a/b?q", "c%2Fd?x=%2F", "http://h/a/c%2Fd?x=%2F"},
        {"http://h/a/b", "/ü", "http://h/%C3%BC"},
        {"http://h/a/b", "../../../c", "http://h/c"},
        {"http://h/a/b?q", "?r", "http://h/a/b?r"},
        {"http://h:81/a", "//other/x", "http://other/x"},
        {"https://h/a", "//other/x", "https://other/x"},
        {"http://h/a", "HTTPS://Other/", "HTTPS://Other/"},
        {"https://h/a", "http://h/a", ""},
        {"https://h/a", "HTTP://h/a", ""},
        {"http://h/a", "file:///etc/passwd", ""},
        {"http://h/a", "javascript:alert(1)", ""},
        {"http://h/a", "data:,x", ""},
        {"http://h/a", "mailto:a@b", ""},
        {"http://h/a", "http:///x", ""},
        {"http://h/a", "http:x", ""},
        {"http://h/a", "http://good\\@evil/", ""},
        {"http://h/a", "//good\\@evil/", ""},
        {"http://h/a", "/a b", ""},
        {"http://h/a", "//a@b@c/", ""},
        {"http://h/a", "///x", ""},
    };
    for (const auto& [from, location, target] : cases) {
        const auto next = redirected({.url = *Url::parse(from)}, 302, location);
        EXPECT_EQ(next ? next->url.text() : "", target) << from << " + " << location;
    }
}

TEST(HttpRedirectTest, KeepsOrDropsTheBodyByStatusAndCredentialsByOrigin)
{
    struct Case {
        int status;
        std::string target;
        bool keepsBody, keepsCredentials;
    };
    const std::vector<Case> cases{
        {301, "/x", false, true},
        {302, "/x", false, true},
        {303, "/x", false, true},
        {307, "/x", true, true},
        {308, "/x", true, true},
        {308, "http://h:80/", true, true},
        {307, "http://h:81/", true, false},
        {307, "https://h/", true, false},
        {302, "//o/", false, false},
    };
    for (const auto& [status, target, keepsBody, keepsCredentials] : cases) {
        const auto next = redirected({.url = *Url::parse("http://h/"),
                                      .method = HttpMethod::post,
                                      .headers = {{"Content-Type", "a/b"}, {"AUTHORIZATION", "t"}, {"Accept", "c/d"}},
                                      .body = "body"},
                                     status, target);
        ASSERT_TRUE(next);
        EXPECT_TRUE(isRedirect(status));
        EXPECT_EQ(next->method, keepsBody ? HttpMethod::post : HttpMethod::get) << status;
        EXPECT_EQ(next->body, keepsBody ? "body" : "") << status;
        EXPECT_EQ(next->headers.size(), 1U + (keepsBody ? 1U : 0U) + (keepsCredentials ? 1U : 0U)) << status << target;
        EXPECT_EQ(next->headers.back().first, "Accept");
    }
    for (const int status : {200, 300, 304, 305, 306, 399, 404})
        EXPECT_FALSE(isRedirect(status)) << status;
}

} // namespace
} // namespace corvane

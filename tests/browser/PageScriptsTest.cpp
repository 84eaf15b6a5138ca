#include "browser/BrowserConfiguration.h"

#include <functional>

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(PageScriptsTest, AreTheAgreedTextsByteForByte)
{
    const AllowedHosts hosts(*Url::parse("https://Push.Example:3002/"));
    const auto configuration = mainViewConfiguration(hosts);

    ASSERT_EQ(configuration.scripts.size(), 3U);
    const auto& entry = configuration.scripts[0];
    const auto& report = configuration.scripts[2];
    EXPECT_TRUE(
        entry.source.starts_with("(function() {\n    var allowedHosts = ['push.example'];\n    if (allowedHosts."));
    EXPECT_TRUE(entry.source.ends_with("postMessage(msg);\n    };\n})();"));
    EXPECT_EQ(entry.source.size(), 497U + std::string_view("'push.example'").size());
    EXPECT_EQ(configuration.scripts[1].source, entry.source);
    EXPECT_NE(report.source.find("document.location.hash  || ''"), std::string::npos);
    EXPECT_TRUE(report.source.ends_with("postMessage('delete');\n    }\n})();"));

    EXPECT_EQ(entry.moment, PageScript::Moment::documentStart);
    EXPECT_EQ(configuration.scripts[1].moment, PageScript::Moment::documentEnd);
    EXPECT_EQ(report.moment, PageScript::Moment::documentEnd);
}

TEST(PageScriptsTest, TrustOnlyTheAllowedHostOverItsOwnScheme)
{
    const AllowedHosts secure(*Url::parse("https://push.example:3002/"));
    const AllowedHosts local(*Url::parse("http://127.0.0.1:3002/"));
    EXPECT_TRUE(secure.trustsOrigin("https://push.example"));
    EXPECT_FALSE(secure.trustsOrigin("http://push.example"));
    EXPECT_FALSE(secure.trustsOrigin("https://push.example.evil.example"));
    EXPECT_TRUE(local.trustsOrigin("http://127.0.0.1:8080"));
    EXPECT_TRUE(local.trustsOrigin("https://127.0.0.1"));
    for (const auto* origin : {"null", "", "file://127.0.0.1", "http://localhost:3002"})
        EXPECT_FALSE(local.trustsOrigin(origin)) << origin;
}

} // namespace
} // namespace corvane

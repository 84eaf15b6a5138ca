#include "browser/PageReport.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using Action = PageReport::Action;

struct Case {
    std::string body;
    std::optional<PageReport> expected;
};

TEST(PageReportTest, ReadsTextsObjectsAndObjectsInTexts)
{
    const std::vector<Case> cases{
        {R"(" SUCCESS\n")", PageReport{Action::success, {}}},
        {R"("PROFILE_DELETED")", PageReport{Action::deleteProfile, {}}},
        {R"("profileDeleted")", PageReport{Action::deleteProfile, {}}},
        {R"("delete")", PageReport{Action::deleteProfile, {}}},
        {R"({"type":"BindDevice","bindingToken":"  t1\n"})", PageReport{Action::binddevice, "t1"}},
        {R"({"type":"binddevice","bindingToken":" \n "})", PageReport{Action::binddevice, {}}},
        {R"({"type":"binddevice","bindingToken":7})", PageReport{Action::binddevice, {}}},
        {R"({"action":"nonsense","message":"deleted"})", PageReport{Action::deleteProfile, {}}},
        {R"({"action":7,"type":"success"})", PageReport{Action::success, {}}},
        {R"({"action":"success","type":"deleted"})", PageReport{Action::success, {}}},
        {R"("{\"action\":\"binddevice\",\"bindingToken\":\"x\"}")", PageReport{Action::binddevice, "x"}},
    };
    for (const auto& [body, expected] : cases)
        EXPECT_EQ(readPageReport(body), expected) << body;
}

TEST(PageReportTest, IgnoresEverythingElse)
{
    const std::string deep = std::string(65, '[') + std::string(65, ']');
    for (const std::string body :
         {R"("")", R"("successful")", R"({})", R"({"bindingToken":"t"})", R"([])", R"(["success"])", R"(7)", R"(null)",
          R"("[\"success\"]")", R"("\"success\"")", R"({"action":{"action":"success"}})", "", "{", "success"})
        EXPECT_EQ(readPageReport(body), std::nullopt) << body;
    EXPECT_EQ(readPageReport(R"({"action":"success","x":)" + deep + "}"), std::nullopt);
    EXPECT_EQ(readPageReport(R"({"action":"success","x":")" + std::string(64 * 1024, 'x') + "\"}"), std::nullopt);
}

} // namespace
} // namespace corvane

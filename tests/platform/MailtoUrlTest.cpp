#include "platform/MailtoUrl.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(MailtoUrlTest, LosesEveryFieldThatCouldAttachAFile)
{
    const std::vector<std::pair<std::string, std::string>> cases{
        {"mailto:a@b.c", "mailto:a@b.c"},
        {"mailto:a@b.c?subject=x%26attach=y&body=z", "mailto:a@b.c?subject=x%26attach=y&body=z"},
        {"mailto:a@b.c?attach=/etc/passwd", "mailto:a@b.c"},
        {"MAILTO:a@b.c?subject=x&ATTACHMENT=file:///x&body=z", "MAILTO:a@b.c?subject=x&body=z"},
        {"mailto:?Attach=1&attach=2&attachment&cc=d", "mailto:?cc=d"},
        {"mailto:a@b.c?%61ttach=x&a%74tachment%20=y&%20attach=z", "mailto:a@b.c"},
        {"mailto:a@b.c?x=1&amp;attach=/x", "mailto:a@b.c?x=1"},
        {"mailto:a@b.c?at%00tach=x&x=1", "mailto:a@b.c?x=1"},
        {"mailto:a@b.c?x=1#&attach=/x", "mailto:a@b.c?x=1"},
        {"mailto:a@b.c?attached=1&reattach=2", "mailto:a@b.c?attached=1&reattach=2"},
        {"https://h/?attach=x#y", "https://h/?attach=x#y"},
    };
    for (const auto& [address, safe] : cases)
        EXPECT_EQ(withoutAttachments(*Url::parse(address)).text(), safe) << address;
}

} // namespace
} // namespace corvane

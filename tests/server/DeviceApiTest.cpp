#include "server/ServerWorld.h"
#include "store/BindingTokenStore.h"
#include "store/DeviceStore.h"
#include "store/ProfileStore.h"

namespace corvane::server::testing {
namespace {

class DeviceApiTest : public ServerWorld {
protected:
    std::size_t boundDevices()
    {
        std::size_t bound = 0;
        for (const auto& profile : ProfileStore(database_).all())
            bound += DeviceStore(database_).boundTo(profile.id).size();
        return bound;
    }
};

TEST_F(DeviceApiTest, RegisteringAgainKeepsTheProfileAndAddsNothing)
{
    registerDevice();
    const auto owner = makeProfile("Ada");
    EXPECT_EQ(bind(owner.bindingToken).status, 200U);

    std::string upperCase = installId;
    for (char& c : upperCase)
        c = static_cast<char>(std::toupper(c));
    registerDevice(upperCase);

    EXPECT_EQ(DeviceStore(database_).count(), 1);
    EXPECT_EQ(boundDevices(), 1U);
}

TEST_F(DeviceApiTest, ATokenBindsOnceAndOnlyInItsTime)
{
    registerDevice();
    registerDevice(otherInstallId);
    const auto owner = makeProfile("Ada");

    EXPECT_EQ(bind("0123456789abcdef0123456789abcdef").status, 403U) << "unknown";
    EXPECT_EQ(bind(owner.bindingToken).status, 200U);
    EXPECT_EQ(bind(owner.bindingToken, otherInstallId).status, 403U) << "spent";
    EXPECT_EQ(boundDevices(), 1U);

    const auto late = post("/api/profiles/me/bind", Json::object(), owner.cookie).json().value("bindingToken", "");
    clock_.advance(BindingTokenStore::lifetime - std::chrono::seconds(1));
    const auto inTime = post("/api/profiles/me/bind", Json::object(), owner.cookie).json().value("bindingToken", "");
    clock_.advance(std::chrono::seconds(1));
    EXPECT_EQ(bind(late, otherInstallId).status, 403U) << "expired";
    EXPECT_EQ(bind(inTime, otherInstallId).status, 200U);
    EXPECT_EQ(boundDevices(), 2U);
}

TEST_F(DeviceApiTest, AnUnregisteredInstallCannotBindAndTheTokenStaysGood)
{
    const auto owner = makeProfile("Ada");
    const auto refused = bind(owner.bindingToken);
    EXPECT_EQ(refused.status, 404U);
    EXPECT_EQ(refused.error(), "unknown_device");

    registerDevice();
    EXPECT_EQ(bind(owner.bindingToken).status, 200U);
}

TEST_F(DeviceApiTest, KeepsNoTokenAndNoSecretInReadableForm)
{
    const auto owner = makeProfile("Ada");
    const auto cookie = owner.cookie.at("Cookie");
    std::string stored;
    for (const auto& entry : std::filesystem::directory_iterator(data_.path())) {
        std::ifstream file(entry.path(), std::ios::binary);
        stored.append(std::istreambuf_iterator<char>(file), {});
    }
    EXPECT_NE(stored.find("Ada"), std::string::npos);
    EXPECT_EQ(stored.find(owner.bindingToken), std::string::npos);
    EXPECT_EQ(stored.find(cookie.substr(cookie.find('=') + 1)), std::string::npos);
}

} // namespace
} // namespace corvane::server::testing

#include "platform/PlatformImpl.hpp"

#include "tests/support/FakeClock.hpp"
#include "tests/support/ModelBmc.hpp"
#include "transport/TransportState.hpp"

namespace Platform {
namespace {

class PlatformTest : public testing::Test {
protected:
    PlatformTest()
    {
        resetTransportForTests();
        platform.Reset();
    }
    ~PlatformTest() override
    {
        platform.Reset();
        resetTransportForTests();
    }

    /// Get Device ID with a product id; `count` data bytes of it.
    void answer(std::uint8_t low, std::uint8_t high, std::size_t count = 15)
    {
        IpmiAnswer bytes{0, 0x20, 0, 0, 0, 2, 0, 0, 0, 0, low, high, 0, 0, 0, 0};
        bytes.resize(count + 1);
        bmc.on(0x06, 0x01, bytes);
    }

    FakeClock clock;
    ScopedSeam<Clock> useClock{clock};
    ModelBmc bmc;
    ScopedSeam<DeviceFile> useBmc{bmc};
    PlatformImpl& platform = *PlatformImpl::CreateInstance();
};

TEST_F(PlatformTest, ProductIdBytesJoinLowByteFirstWithoutLeadingZeros)
{
    answer(0x3E, 0x00);
    EXPECT_EQ(platform.platformName(), "FIR_PLATFORM");
    platform.Reset();
    answer(0x6F, 0x00);
    EXPECT_EQ(platform.platformName(), "MAPLE_PLATFORM");
    EXPECT_EQ(PlatformImpl::DetectPlatformfromID("71"), "BIRCH_PLATFORM");
    EXPECT_EQ(PlatformImpl::DetectPlatformfromID("780"), "NUTMEG_PLATFORM");
    EXPECT_EQ(PlatformImpl::DetectPlatformfromID("03e"), "OTHER_PLATFORM");
}

TEST_F(PlatformTest, FoundOnceItIsNotAskedAgain)
{
    answer(0x3E, 0x00);
    for (int i = 0; i < 3; ++i)
        platform.InitPlatform();
    EXPECT_EQ(bmc.requests.size(), 1U);
}

TEST_F(PlatformTest, ShortOrRefusedAnswerLeavesTheNameEmptyForAWhile)
{
    answer(0x3E, 0x00, 11);
    EXPECT_EQ(platform.platformName(), "");
    EXPECT_EQ(platform.platformName(), "");
    EXPECT_EQ(bmc.requests.size(), 1U);
    bmc.on(0x06, 0x01, IpmiAnswer{0xC1});
    clock.advance(std::chrono::seconds(30));
    EXPECT_EQ(platform.platformName(), "");
    answer(0x3E, 0x00, 12);
    clock.advance(-std::chrono::hours(1)); // a clock set back does not prolong the pause
    EXPECT_EQ(platform.platformName(), "FIR_PLATFORM");
}

TEST_F(PlatformTest, MachineWithoutBmcFailsWithoutBeingAskedEachTime)
{
    bmc.present = false;
    EXPECT_THROW(platform.InitPlatform(), ResultStatus);
    resetTransportForTests();
    bmc.present = true;
    answer(0x48, 0x00);
    EXPECT_THROW(platform.InitPlatform(), ResultStatus);
    EXPECT_TRUE(bmc.requests.empty());
    clock.advance(std::chrono::seconds(30));
    EXPECT_EQ(platform.platformName(), "LILAC_PLATFORM");
}

} // namespace
} // namespace Platform

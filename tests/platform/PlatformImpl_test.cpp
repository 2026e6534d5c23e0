#include "platform/PlatformImpl.hpp"

#include "platform/IpmiExchange.hpp"
#include "platform/SameAnswers.hpp"

#include "tests/support/FakeClock.hpp"
#include "tests/support/ModelBmc.hpp"
#include "tests/support/TempRoot.hpp"
#include "transport/TransportState.hpp"

#include <thread>

using namespace transport;

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

    /// The firmware's variable, `record` somewhere in it.
    void tellBoard(const std::string& record)
    {
        root.write("/sys/firmware/efi/efivars/" + variable, std::string("\7\0\0\0", 4) + "$VER 1.0\0" + record);
    }

    const std::string variable = "FWVERSIONDATA-ec87d643-eba4-4bb5-a1e5-3f3e36b20da9";
    TempRoot root;
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
    EXPECT_EQ(PlatformImpl::DetectPlatformfromID("780"), "NUTMEG_PLATFORM");
    EXPECT_EQ(PlatformImpl::DetectPlatformfromID("03e"), "OTHER_PLATFORM");
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

TEST_F(PlatformTest, BoardOfTheFirmwareTellsThePlatformAndWithoutAKnownNameTheBmcDoes)
{
    answer(0x42, 0x00);
    const std::string tooLong(3000, 'x');
    for (const auto& [record, id, type] : {std::tuple<std::string, const char*, const char*>{
                                               "$FIDLinden-2         trailer", "Linden-2", "LINDEN_PLATFORM"},
                                           {"$FIDMaple-2_\x01tail", "Maple-2_", "MAPLE_PLATFORM"},
                                           {"$FIDRowan-1", "Rowan-1", "ROWAN_PLATFORM"},
                                           {"$FID                ", "", "JUNIPER_PLATFORM"},
                                           {"$FIDRoan-1", "Roan-1", "JUNIPER_PLATFORM"},
                                           {"$FI", "", "JUNIPER_PLATFORM"},
                                           {"$FIDRowan-1" + tooLong, "", "JUNIPER_PLATFORM"}}) {
        platform.Reset();
        bmc.requests.clear();
        tellBoard(record);
        EXPECT_EQ(platform.platformId(), id) << record;
        EXPECT_EQ(platform.platformName(), type) << record;
        EXPECT_EQ(bmc.requests.empty(), std::string_view(type) != "JUNIPER_PLATFORM");
    }
}

TEST_F(PlatformTest, OlderFormOfTheVariableHasNoAttributes)
{
    root.write("/sys/firmware/efi/vars/" + variable + "/data", "$FIDFir-1");
    EXPECT_EQ(platform.platformName(), "FIR_PLATFORM");
}

TEST_F(PlatformTest, ReplyListsAllBytesOfALongAnswer)
{
    bmc.on(0x30, 0x01, [](const IpmiRequest&) { return IpmiAnswer(261); });
    std::vector<std::string> reply;
    Platform::exchangeIpmi({"20", "30", "00", "01"}, {.retries = 0, .initialise = true}, reply);
    EXPECT_EQ(reply.size(), 261U);
}

TEST_F(PlatformTest, ScopeOfSameAnswersAsksForThresholdsOnceASensorAndForReadingsEachTime)
{
    IpmiAnswer thresholds{0, 1, 2};
    bmc.on(0x04, 0x27, [&](const IpmiRequest&) { return thresholds; });
    bmc.on(0x04, 0x2D, IpmiAnswer{0, 3});
    const auto asked = [&](const char* command, const char* sensor) {
        const std::size_t before = bmc.requests.size();
        std::vector<std::string> reply;
        exchangeIpmi({"20", "04", "00", command, sensor}, {}, reply);
        EXPECT_FALSE(reply.empty());
        return bmc.requests.size() - before;
    };
    {
        const SameAnswers scope;
        EXPECT_EQ(asked("27", "05") + asked("27", "05"), 1U);
        {
            const SameAnswers inner;
            EXPECT_EQ(asked("27", "05"), 0U);
        }
        EXPECT_EQ(asked("27", "05"), 0U) << "the outer scope goes on";
        EXPECT_EQ(asked("27", "06"), 1U) << "another sensor";
        EXPECT_EQ(asked("2D", "05") + asked("2D", "05"), 2U);
        thresholds = {0xC0};
        EXPECT_EQ(asked("27", "07") + asked("27", "07"), 2U) << "busy: may have one the next time";
        std::jthread([&] { asked("27", "05"); }).join();
        EXPECT_EQ(bmc.requests.back().data, (std::vector<std::uint8_t>{5})) << "another thread asks for itself";
    }
    EXPECT_EQ(asked("27", "05"), 1U);
}

TEST_F(PlatformTest, BoardKeepsItsIdWhenTheBmcFails)
{
    bmc.present = false;
    tellBoard("$FIDRoan-1");
    EXPECT_EQ(platform.platformId(), "Roan-1");
    EXPECT_THROW(platform.platformName(), ResultStatus);
}

} // namespace
} // namespace Platform

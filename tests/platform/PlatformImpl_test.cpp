#include "platform/PlatformImpl.hpp"

#include "platform/IpmiExchange.hpp"
#include "platform/SameAnswers.hpp"

#include "tests/support/BmcTest.hpp"
#include "tests/support/TempRoot.hpp"

#include <thread>

using namespace transport;

namespace Platform {
namespace {

class PlatformTest : public BmcTest {
protected:
    /// The firmware's variable, `record` somewhere in it.
    void tellBoard(const std::string& record)
    {
        root.write("/sys/firmware/efi/efivars/" + variable, std::string("\7\0\0\0", 4) + "$VER 1.0\0" + record);
    }

    const std::string variable = "FWVERSIONDATA-ec87d643-eba4-4bb5-a1e5-3f3e36b20da9";
    TempRoot root;
    PlatformImpl& platform = *PlatformImpl::CreateInstance();
};

TEST_F(PlatformTest, ShortOrRefusedAnswerLeavesTheNameEmptyForAWhile)
{
    IpmiAnswer cut{0, 0x20, 0, 0, 0, 2, 0, 0, 0, 0, 0x3E, 0};
    bmc.on(0x06, 0x01, cut);
    EXPECT_EQ(platform.platformName(), "");
    EXPECT_EQ(platform.platformName(), "");
    EXPECT_EQ(bmc.requests.size(), 1U);
    bmc.on(0x06, 0x01, IpmiAnswer{0xC1});
    clock.advance(std::chrono::seconds(30));
    EXPECT_EQ(platform.platformName(), "");
    cut.push_back(0);
    bmc.on(0x06, 0x01, cut);
    clock.advance(-std::chrono::hours(1)); // a clock set back does not prolong the pause
    EXPECT_EQ(platform.platformName(), "FIR_PLATFORM") << "low byte first, without leading zeros";
    EXPECT_EQ(PlatformImpl::DetectPlatformfromID("780"), "NUTMEG_PLATFORM");
    EXPECT_EQ(PlatformImpl::DetectPlatformfromID("03e"), "OTHER_PLATFORM");
}

TEST_F(PlatformTest, MachineWithoutBmcFailsWithoutBeingAskedEachTime)
{
    bmc.present = false;
    EXPECT_THROW(platform.InitPlatform(), ResultStatus);
    resetTransportForTests();
    bmc.present = true;
    tellProduct(0x48, 0x00);
    EXPECT_THROW(platform.InitPlatform(), ResultStatus);
    EXPECT_TRUE(bmc.requests.empty());
    clock.advance(std::chrono::seconds(30));
    EXPECT_EQ(platform.platformName(), "LILAC_PLATFORM");
}

TEST_F(PlatformTest, BoardOfTheFirmwareTellsThePlatformAndWithoutAKnownNameTheBmcDoes)
{
    tellProduct(0x42, 0x00);
    const std::string tooLong(3000, 'x');
    using Row = std::tuple<std::string, const char*, const char*>;
    for (const auto& [record, id, type] : {Row{"$FIDLinden-2         trailer", "Linden-2", "LINDEN_PLATFORM"},
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

TEST_F(PlatformTest, BoardKeepsItsIdWhenTheBmcFailsAndIsAlsoReadWithoutAttributes)
{
    bmc.present = false;
    tellBoard("$FIDRoan-1");
    EXPECT_EQ(platform.platformId(), "Roan-1");
    EXPECT_THROW(platform.platformName(), ResultStatus);
    TempRoot older;
    older.write("/sys/firmware/efi/vars/" + variable + "/data", "$FIDFir-1");
    platform.Reset();
    EXPECT_EQ(platform.platformName(), "FIR_PLATFORM");
}

} // namespace
} // namespace Platform

#include "common/Policy.hpp"
#include "common/ResultStatus.hpp"
#include "modules/bmc/subjects/SdrRepository.hpp"
#include "tests/modules/bmc/SdrFixture.hpp"
#include "tests/support/TempRoot.hpp"

#include <filesystem>

using namespace std::chrono_literals;
using Module::BMCConfig::BMCConfigModule;
using testing::SizeIs;

namespace {

constexpr const char* file = "/var/cache/hwagent/repository";

/// A BMC that stamps its repository, with `sensors` sensors, and an agent of the practical mode.
class SdrPractical : public SdrFixture {
protected:
    SdrPractical()
    {
        root.write("/var/cache/keep", "");
        bmc.on(0x0A, 0x20, [this](const IpmiRequest&) { return info; });
        addSensors(92);
    }

    void addSensors(unsigned sensors)
    {
        for (unsigned id = 1; id <= sensors; ++id)
            records.push_back(
                full(id, static_cast<std::uint8_t>(id), 1, {}, {0xC8, 'S', 'e', 'n', 's', 'o', 'r', ' ', 'A'}));
        info[2] = static_cast<std::uint8_t>(sensors);
    }

    /// The BMC gives `most` bytes at once, a whole record only if it is not longer, and refuses more with `code`.
    void limitPieces(std::size_t most, std::uint8_t code)
    {
        disturb([this, most, code](const IpmiRequest& request) {
            const std::size_t given = readRecord(request).size() - 3;
            return std::min<std::size_t>(request.data[5], given) > most ? IpmiAnswer{code} : IpmiAnswer{};
        });
    }

    /// As a start of the agent: the number of sensors, and what it cost.
    std::string start()
    {
        Module::BMCConfig::Cache::instance().Clear();
        return again();
    }

    std::string again()
    {
        bmc.requests.clear();
        return text("/BMC/SDR/NUMBER");
    }

    void change() { ++info[6]; }

    TempRoot root;
    common::ScopedPolicy practical{common::practicalPolicy()};
    IpmiAnswer info{0, 0x51, 0, 0, 0xFF, 0xFF, 1, 2, 3, 0x60, 1, 2, 3, 0x50, 0x22};
};

TEST_F(SdrPractical, StartCostsAnExchangeARecordAndTheNextOneThree)
{
    {
        const common::ScopedPolicy plain(common::Policy{});
        EXPECT_EQ(start(), "92");
        EXPECT_THAT(bmc.requests, SizeIs(1 + 92 * (1 + 4)));
    }
    EXPECT_EQ(start(), "92");
    EXPECT_THAT(bmc.requests, SizeIs(4 + 92)) << "state, device, system, reservation";
    EXPECT_EQ(start(), "92");
    EXPECT_THAT(bmc.requests, SizeIs(3));
    EXPECT_EQ(text("/BMC/SDR[92]"), line(records[91]));
}

TEST_F(SdrPractical, PiecesAreAsLargeAsTheControllerGivesThem)
{
    using Case = std::tuple<std::size_t, std::uint8_t, std::size_t>; ///< bytes at most, code for more, exchanges for 56
    for (const auto& [most, code, exchanges] : {Case{56, 0xCA, 1}, Case{51, 0xCA, 2}, Case{40, 0xC7, 3},
                                                Case{32, 0xFF, 3}, Case{16, 0xC8, 5}, Case{20, 0xCC, 5}}) {
        change();
        limitPieces(most, code);
        EXPECT_EQ(start(), "92") << most;
        EXPECT_EQ(text("/BMC/SDR[92]"), line(records[91]));
        EXPECT_LE(bmc.requests.size(), 4 + 92 * exchanges + 12) << most;
        EXPECT_GE(bmc.requests.size(), 4 + 92 * exchanges) << most;
    }
    change();
    disturb([](const IpmiRequest& request) { return IpmiAnswer(request.data[5] == 0xFF ? 300 : 0); });
    EXPECT_EQ(start(), "92") << "more comes than the driver's buffer holds";
}

TEST_F(SdrPractical, RecordThatIsShorterThanItSaysMakesNoSmallerPiecesOfTheOthers)
{
    disturb([](const IpmiRequest& request) {
        return request.data[2] == 2 && request.data[4] > 0 ? IpmiAnswer{0xCA} : IpmiAnswer{};
    });
    records[1].resize(40);
    EXPECT_EQ(start(), "91");
    EXPECT_LE(bmc.requests.size(), 4 + 92 + 3U);
}

TEST_F(SdrPractical, CopyOnTheDiskIsOfThisControllerInThisStateOrThrownAway)
{
    const auto isRead = [this] { return start() == "92" && bmc.requests.size() > 92; };
    const auto isLoaded = [this] { return start() == "92" && bmc.requests.size() == 3; };
    EXPECT_TRUE(isRead());
    EXPECT_TRUE(isLoaded());
    change();
    EXPECT_TRUE(isRead()) << "time stamp";
    EXPECT_TRUE(isLoaded());
    bmc.on(0x06, 0x01, IpmiAnswer{0, 0x20, 0, 0x81, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_TRUE(isRead()) << "firmware";
    bmc.on(0x06, 0x01, IpmiAnswer{0, 0x20, 0, 0x01, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_TRUE(isLoaded()) << "busy with itself or not";
    bmc.on(0x06, 0x37, IpmiAnswer{0, 1, 2, 3});
    EXPECT_TRUE(isRead()) << "system";
    root.writeAt(file, 200, "F");
    EXPECT_TRUE(isRead()) << "a byte of it";
    EXPECT_TRUE(isLoaded());
}

TEST_F(SdrPractical, ControllerWithoutTimeStampsIsReadAtEachStartAndNotFollowed)
{
    for (const int stamp : {0, 0xFF, 0xC1}) {
        std::fill(info.begin() + 6, info.end(), static_cast<std::uint8_t>(stamp));
        if (stamp == 0xC1)
            info = {0xC1};
        EXPECT_EQ(start(), "92");
        EXPECT_EQ(start(), "92");
        EXPECT_GT(bmc.requests.size(), 92U);
        bmc.requests.clear();
        EXPECT_FALSE(BMCConfigModule::repositoryChanged());
        EXPECT_TRUE(bmc.requests.empty());
    }
}

TEST_F(SdrPractical, ChangedRepositoryIsReadAgainAndOneThatCannotBeStands)
{
    EXPECT_FALSE(BMCConfigModule::repositoryChanged()) << "nothing was read yet";
    EXPECT_EQ(start(), "92");
    bmc.requests.clear();
    EXPECT_FALSE(BMCConfigModule::repositoryChanged());
    EXPECT_THAT(bmc.requests, SizeIs(1));
    change();
    records.pop_back();
    EXPECT_EQ(again(), "92") << "until somebody looks";
    EXPECT_TRUE(BMCConfigModule::repositoryChanged());
    EXPECT_EQ(again(), "91");
    EXPECT_FALSE(BMCConfigModule::repositoryChanged());

    change();
    records.pop_back();
    EXPECT_TRUE(BMCConfigModule::repositoryChanged());
    disturb([](const IpmiRequest&) { return IpmiAnswer{0xD5}; });
    EXPECT_EQ(again(), "91");
    EXPECT_FALSE(BMCConfigModule::repositoryChanged()) << "not at once again";
    disturb([](const IpmiRequest&) { return IpmiAnswer{}; });
    clock.advance(10s);
    EXPECT_TRUE(BMCConfigModule::repositoryChanged());
    EXPECT_EQ(again(), "90");
    const common::ScopedPolicy plain(common::Policy{});
    change();
    EXPECT_FALSE(BMCConfigModule::repositoryChanged());
}

TEST_F(SdrPractical, RepositoryReadInPiecesIsThereFromTheFirstOnAndGoesOnWhereItWas)
{
    const auto slow = [this](const IpmiRequest&) {
        clock.advance(1s);
        return IpmiAnswer{};
    };
    const auto exchanges = [this] { return std::exchange(bmc.requests, {}).size(); };
    disturb(slow);
    Module::BMCConfig::Cache::instance().Clear();
    EXPECT_TRUE(BMCConfigModule::readRepository(5s));
    EXPECT_EQ(again(), "5");
    EXPECT_TRUE(bmc.requests.empty()) << "nobody else reads on";
    EXPECT_TRUE(BMCConfigModule::readRepository(10s));
    EXPECT_EQ(exchanges(), 2 + 10U) << "state and reservation";
    EXPECT_EQ(again(), "15");
    EXPECT_EQ(text("/BMC/SDR[15]"), line(records[14]));

    disturb([](const IpmiRequest&) { return IpmiAnswer(300); });
    EXPECT_TRUE(BMCConfigModule::readRepository(5s));
    EXPECT_EQ(again(), "15");
    bmc.on(0x0A, 0x20, IpmiAnswer(300));
    for (int tries = 0; tries < 9; ++tries)
        EXPECT_THROW(BMCConfigModule::readRepository(5s), ResultStatus);
    EXPECT_EQ(again(), "15") << "a silent controller costs nothing that was read";
    bmc.on(0x0A, 0x20, [this](const IpmiRequest&) { return info; });
    disturb(slow);
    EXPECT_TRUE(BMCConfigModule::readRepository(20s));
    EXPECT_EQ(again(), "35");

    change(); // ids may be others now
    EXPECT_TRUE(BMCConfigModule::readRepository(20s));
    EXPECT_EQ(again(), "35") << "what was read stands until the end";
    EXPECT_FALSE(std::filesystem::exists(root.resolve(file)));
    bmc.requests.clear();
    EXPECT_FALSE(BMCConfigModule::readRepository(100s));
    EXPECT_EQ(exchanges(), 2 + 72U);
    EXPECT_EQ(again(), "92");
    EXPECT_FALSE(BMCConfigModule::readRepository(100s));
    EXPECT_FALSE(BMCConfigModule::repositoryChanged());
    EXPECT_THAT(bmc.requests, SizeIs(1));
    EXPECT_EQ(start(), "92");
    EXPECT_THAT(bmc.requests, SizeIs(3)) << "the disk has all of it";
}

TEST_F(SdrPractical, RecordThatCannotBeReadEndsAReadingInPiecesAtTheThirdTry)
{
    disturb([](const IpmiRequest& request) { return request.data[2] == 50 ? IpmiAnswer{0xFF} : IpmiAnswer{}; });
    Module::BMCConfig::Cache::instance().Clear();
    EXPECT_TRUE(BMCConfigModule::readRepository(1h));
    EXPECT_TRUE(BMCConfigModule::readRepository(1h));
    EXPECT_FALSE(BMCConfigModule::readRepository(1h));
    EXPECT_EQ(again(), "49");
    EXPECT_FALSE(BMCConfigModule::repositoryChanged());
    clock.advance(30s);
    disturb([](const IpmiRequest&) { return IpmiAnswer{}; });
    EXPECT_TRUE(BMCConfigModule::repositoryChanged());
    EXPECT_FALSE(BMCConfigModule::readRepository(1h));
    EXPECT_EQ(again(), "92");
}

TEST_F(SdrPractical, RepositoryThatCannotBeReadIsLeftAloneForAWhile)
{
    const auto refuse = [this](std::uint8_t reserve, std::uint8_t read) {
        bmc.on(0x0A, 0x22, [this, reserve](const IpmiRequest&) {
            return reserve == 0 ? IpmiAnswer{0, ++reservation, 0x12} : IpmiAnswer{reserve};
        });
        disturb([read](const IpmiRequest&) { return read == 0 ? IpmiAnswer{} : IpmiAnswer{read}; });
    };
    for (const auto& [reserve, read] : {std::pair{0xC1, 0x00}, {0x00, 0xC1}, {0x00, 0xC3}, {0x00, 0xC5}}) {
        refuse(static_cast<std::uint8_t>(reserve), static_cast<std::uint8_t>(read));
        EXPECT_EQ(start(), "0") << reserve << ' ' << read;
        EXPECT_LE(bmc.requests.size(), read == 0xC5 ? 220U : 30U);
        bmc.requests.clear();
        EXPECT_THAT(get("/BMC/SDR/SENSOR_TYPE[1]"), SizeIs(1));
        EXPECT_TRUE(bmc.requests.empty()) << "asked a moment ago";
        refuse(0, 0);
        clock.advance(10s);
        EXPECT_EQ(again(), "92");
        const common::ScopedPolicy plain(common::Policy{});
        refuse(static_cast<std::uint8_t>(reserve), static_cast<std::uint8_t>(read));
        start();
        EXPECT_EQ(again(), "0");
        EXPECT_FALSE(bmc.requests.empty()) << "plainly each query asks";
        refuse(0, 0);
        change();
    }
}

TEST_F(SdrPractical, RecordsThatCouldBeReadStandUntilTheRestComes)
{
    disturb([](const IpmiRequest& request) { return request.data[2] == 92 ? IpmiAnswer{0xC3} : IpmiAnswer{}; });
    EXPECT_EQ(start(), "91");
    EXPECT_FALSE(std::filesystem::exists(root.resolve(file)));
    EXPECT_FALSE(BMCConfigModule::repositoryChanged());
    disturb([](const IpmiRequest&) { return IpmiAnswer{}; });
    clock.advance(30s);
    EXPECT_TRUE(BMCConfigModule::repositoryChanged());
    EXPECT_EQ(again(), "92");
    EXPECT_FALSE(BMCConfigModule::repositoryChanged());
    EXPECT_TRUE(std::filesystem::exists(root.resolve(file)));
    bmc.clock = &clock;
    change();
    disturb([&](const IpmiRequest& request) {
        bmc.answerTime = request.data[2] == 50 ? 6s : 0s; // no answer in time
        return IpmiAnswer{};
    });
    EXPECT_EQ(start(), "49");
}

TEST_F(SdrPractical, WalkWithoutAnEndIsBoundedByTheCount)
{
    bmc.on(0x0A, 0x23, [next = 1](const IpmiRequest& request) mutable {
        const auto low = request.data[2], high = request.data[3];
        ++next;
        IpmiAnswer answer{
            0, static_cast<std::uint8_t>(next), static_cast<std::uint8_t>(next >> 8), low, high, 0x51, 0xC0, 1, 7};
        return answer;
    });
    EXPECT_EQ(start(), "156");
    EXPECT_LE(bmc.requests.size(), 4 + 156U);
}

} // namespace

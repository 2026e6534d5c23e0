#include "common/Policy.hpp"
#include "platform/IpmiExchange.hpp"
#include "tests/support/BmcTest.hpp"
#include "tests/support/CaughtLog.hpp"

namespace {

using namespace std::chrono_literals;
using testing::MatchesRegex;

/// A BMC whose commands fail one by one or all together.
class SilentController : public BmcTest {
protected:
    SilentController()
    {
        bmc.clock = &clock;
        bmc.on(0x06, 0x01, [this](const IpmiRequest&) { return silent ? IpmiAnswer{} : deviceId; });
        bmc.on(0x04, 0x2D, [this](const IpmiRequest&) { return silent ? IpmiAnswer{} : reading; });
    }

    bool ask(const std::string& target = "20")
    {
        const std::size_t before = bmc.requests.size();
        const auto start = clock.steadyTime;
        reply.clear();
        const int failure = failureOf([&] {
                                Platform::exchangeIpmi({target, "04", "00", "2D", std::to_string(sensor++)}, {}, reply);
                            }).code;
        EXPECT_TRUE(failure == 0 || failure == 1026);
        exchanges = bmc.requests.size() - before;
        took = clock.steadyTime - start;
        return failure == 0;
    }

    CaughtLog log;
    ScopedSeam<common::SystemLog> useLog{log};
    common::ScopedPolicy practical{common::practicalPolicy()};
    bool silent = false;
    IpmiAnswer deviceId{0, 0x20}, reading{0, 1, 2};
    std::vector<std::string> reply;
    int sensor = 10;
    std::size_t exchanges = 0;
    std::chrono::nanoseconds took{};
};

TEST_F(SilentController, IsProbedAndNotHammeredUntilItAnswersAgain)
{
    EXPECT_TRUE(ask());
    silent = true;
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(ask());
        EXPECT_EQ(took, 5s);
    }
    EXPECT_FALSE(ask());
    EXPECT_EQ(exchanges, 1U) << "a probe";
    EXPECT_LE(took, 3s);
    const std::size_t before = bmc.requests.size();
    const auto start = clock.steadyTime;
    while (clock.steadyTime - start < 1min) {
        EXPECT_FALSE(ask());
        clock.advance(100ms);
    }
    EXPECT_LE(bmc.requests.size() - before, 12U);
    EXPECT_THAT(log.lines, MatchesRegex("no answer from the BMC since [0-9:]{8}\n"));
    silent = false;
    clock.advance(5s);
    EXPECT_TRUE(ask());
    EXPECT_THAT(log.lines, MatchesRegex("no answer.*\nthe BMC answers again\n"));
    EXPECT_TRUE(ask());
    EXPECT_EQ(exchanges, 1U);
}

TEST_F(SilentController, IsNotOneThatRefusesOrIsBusyForSomeSensors)
{
    for (const int code : {0xC1, 0xC3, 0xFF}) {
        reading = {static_cast<std::uint8_t>(code)};
        for (int i = 0; i < 8; ++i)
            EXPECT_TRUE(ask()) << code;
    }
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(SilentController, IsAlsoOneThatIsBusyForAllRequests)
{
    reading = deviceId = {0xD2};
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(ask()) << "its code is an answer";
    EXPECT_FALSE(ask());
    EXPECT_FALSE(ask());
    EXPECT_EQ(exchanges, 0U);
    reading = deviceId = {0, 1, 2};
    clock.advance(5s);
    EXPECT_TRUE(ask());
}

TEST_F(SilentController, BehindTheBmcIsOutOfReachAndDelaysNobody)
{
    silent = true;
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(ask("2C")) << "no failure of the interface";
        EXPECT_EQ(reply, std::vector<std::string>{"211"});
    }
    EXPECT_EQ(exchanges, 0U);
    silent = false;
    EXPECT_TRUE(ask());
    EXPECT_EQ(reply.size(), 3U);
    EXPECT_TRUE(log.lines.empty());
    clock.advance(30s);
    EXPECT_TRUE(ask("2C"));
    EXPECT_EQ(reply.size(), 3U);
}

} // namespace

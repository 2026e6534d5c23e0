#include "common/Policy.hpp"
#include "tests/transport/FakeKcs.hpp"
#include "transport/BmcMessage.hpp"

using namespace transport;

namespace {

using namespace std::chrono_literals;
using Bytes = FakeKcs::Bytes;

class KcsFaults : public testing::Test, protected PortMachine {
protected:
    KcsFaults()
    {
        clock.perReading = 5us;
        bmc.clock = &clock;
    }

    bool ask()
    {
        const auto start = clock.steadyTime;
        const BMC_REQUEST request{0x20, 1, 6, 0, 0, nullptr};
        BMC_RESPONSE response{};
        const bool answered = sendRequest(request, response, 3).has_value();
        took = clock.steadyTime - start;
        return answered && response.data[0] == 0x42;
    }

    std::chrono::nanoseconds took{};
};

TEST_F(KcsFaults, ControllerThatHangsCostsFiveSecondsInsteadOfFourTimesFifteen)
{
    for (bool FakeKcs::*const fault : {&FakeKcs::stuckIbf, &FakeKcs::stuckObf}) {
        bmc.*fault = true;
        alarm.rung = 0;
        EXPECT_FALSE(ask());
        EXPECT_EQ(alarm.rung, 4) << "each of the tries waits for the alarm";
        EXPECT_EQ(alarm.seconds, 15U);
        const common::ScopedPolicy practical(common::practicalPolicy());
        EXPECT_FALSE(ask());
        EXPECT_LE(took, 5020ms);
        bmc.*fault = false;
        EXPECT_TRUE(ask()) << "and the next exchange is right";
        EXPECT_EQ(alarm.rung, 4) << "the alarm is left alone";
    }
}

TEST_F(KcsFaults, ControllerThatTakesARequestOnlyWhenIdleIsFreedFromTheOneThatWasGivenUp)
{
    bmc.startsWhenIdle = true;
    bmc.stuckObf = true;
    EXPECT_FALSE(ask());
    bmc.stuckObf = false;
    EXPECT_FALSE(ask()) << "plainly for good";
    const common::ScopedPolicy practical(common::practicalPolicy());
    EXPECT_TRUE(ask());
    EXPECT_LT(took, 10ms);
    bmc.answerTime = 6s;
    EXPECT_FALSE(ask());
    EXPECT_FALSE(ask()) << "still at the old one, for a second";
    bmc.answerTime = 0s;
    EXPECT_TRUE(ask());
}

TEST_F(KcsFaults, WaitForASlowControllerLeavesTheProcessorToOthers)
{
    const common::ScopedPolicy practical(common::practicalPolicy());
    bmc.answerTime = 1s;
    EXPECT_TRUE(ask());
    EXPECT_LE(took, 1020ms);
    EXPECT_LT(bmc.looks, 500);
    bmc.answerTime = 50us;
    clock.sleeps.clear();
    EXPECT_TRUE(ask());
    EXPECT_TRUE(clock.sleeps.empty()) << "a quick one is waited for on the spot";
}

TEST_F(KcsFaults, FrameWithoutItsDummyByteIsKept)
{
    bmc.noDummy = true;
    EXPECT_FALSE(ask());
    const common::ScopedPolicy practical(common::practicalPolicy());
    EXPECT_TRUE(ask());
    EXPECT_LT(took, 30ms);
}

TEST_F(KcsFaults, ErrorsInAnExchangeAreRecoveredWithinItsBudget)
{
    const common::ScopedPolicy practical(common::practicalPolicy());
    bmc.errorInRead = true;
    EXPECT_TRUE(ask());
    bmc.errorAtWrite = static_cast<int>(bmc.writes.size()) + 1;
    EXPECT_TRUE(ask());
    bmc.failedRecoveries = 1'000'000;
    bmc.answer = [](const Bytes&) { return Bytes{}; };
    EXPECT_FALSE(ask());
    EXPECT_LT(took, 6s);
}

} // namespace

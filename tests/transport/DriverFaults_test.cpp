#include "common/Policy.hpp"
#include "tests/transport/TroubledDriver.hpp"
#include "transport/BmcMessage.hpp"

using namespace transport;

namespace {

using namespace std::chrono_literals;

constexpr std::uint8_t sensorEvent = 0x04, getReading = 0x2D;

struct Outcome {
    bool answered = false;
    std::uint8_t code = 0, value = 0;
    std::size_t exchanges = 0;
    std::chrono::nanoseconds took{0};
};

class DriverFaults : public testing::Test, protected DriverMachine {
protected:
    DriverFaults()
    {
        driver.clock = &clock;
        driver.on(sensorEvent, getReading, IpmiAnswer{0, 0x42});
        InitilizeIPMB_Interface();
    }

    Outcome ask(std::uint8_t sensor = 1, std::uint8_t target = 0x20)
    {
        const std::size_t before = driver.requests.size();
        const auto start = clock.steadyTime;
        const BMC_REQUEST request{target, getReading, sensorEvent, 0, 1, &sensor};
        BMC_RESPONSE response{};
        const bool answered = sendRequest(request, response, 3).has_value();
        return {answered, response.completionCode, response.data[0], driver.requests.size() - before,
                clock.steadyTime - start};
    }

    /// The BMC answers with `code` so many times, and then soundly.
    void refuse(std::uint8_t code, int times)
    {
        driver.on(sensorEvent, getReading, [=](const IpmiRequest&) mutable {
            return times-- > 0 ? IpmiAnswer{code} : IpmiAnswer{0, 0x42};
        });
    }
};

TEST_F(DriverFaults, SilenceIsAFailureOfFiveSecondsAndPlainlyAnEmptyAnswerOfAHundred)
{
    driver.on(sensorEvent, getReading, IpmiAnswer{});
    Outcome outcome = ask();
    EXPECT_TRUE(outcome.answered);
    EXPECT_EQ(outcome.took, 100s);
    const common::ScopedPolicy practical(common::practicalPolicy());
    outcome = ask();
    EXPECT_FALSE(outcome.answered);
    EXPECT_EQ(outcome.took, 5s);
}

TEST_F(DriverFaults, BusyControllerIsAskedAgainWithinTheBudget)
{
    const struct {
        std::uint8_t code;
        int times;
        std::uint8_t target;
        std::uint8_t outcome;
        std::chrono::nanoseconds longest;
    } rows[] = {
        {0xC0, 1, 0x20, 0, 20ms},  {0xC3, 5, 0x20, 0, 1s},    {0xD2, 10, 0x20, 0, 5s},   {0xC0, 1000, 0x20, 0xC0, 5s},
        {0xC1, 1, 0x20, 0xC1, 0s}, {0x83, 1, 0x20, 0x83, 0s}, {0x83, 2, 0x2C, 0, 100ms}, {0x81, 1000, 0x2C, 0x81, 2s},
    };
    for (const auto& row : rows) {
        resetTransportForTests();
        InitilizeIPMB_Interface();
        refuse(row.code, row.times);
        EXPECT_EQ(ask(1, row.target).code, row.code) << "plainly the code is the answer";
        refuse(row.code, row.times);
        const common::ScopedPolicy practical(common::practicalPolicy());
        const Outcome outcome = ask(1, row.target);
        EXPECT_TRUE(outcome.answered);
        EXPECT_EQ(outcome.code, row.outcome) << +row.code;
        EXPECT_LE(outcome.took, row.longest) << +row.code;
        EXPECT_LE(outcome.exchanges, 20U);
    }
}

TEST_F(DriverFaults, RequestThatIsAlwaysBusyIsAskedOnceUntilItIsAnswered)
{
    const common::ScopedPolicy practical(common::practicalPolicy());
    refuse(0xC3, 1'000);
    EXPECT_EQ(ask(1).took, 5s);
    EXPECT_EQ(ask(1).exchanges, 1U);
    refuse(0xC3, 2);
    EXPECT_EQ(ask(2).value, 0x42) << "another sensor gets its time";
    EXPECT_EQ(ask(1).value, 0x42);
    refuse(0xC3, 2);
    EXPECT_EQ(ask(1).value, 0x42);
}

TEST_F(DriverFaults, SwitchingOfTheHostIsNotRepeatedAfterATimeout)
{
    const common::ScopedPolicy practical(common::practicalPolicy());
    BMC_RESPONSE response{};
    for (const auto& [code, repeated] : {std::pair{0xC3, false}, {0xC0, true}}) {
        const std::uint8_t action = code == 0xC3 ? 2 : 3;
        const BMC_REQUEST request{0x20, 0x02, 0x00, 0, 1, &action};
        driver.requests.clear();
        driver.on(0x00, 0x02, IpmiAnswer{static_cast<std::uint8_t>(code)});
        EXPECT_TRUE(sendRequest(request, response, 3));
        EXPECT_EQ(driver.requests.size() > 1, repeated) << code;
    }
}

TEST_F(DriverFaults, SlowControllerIsWaitedForAndOneThatCannotMakeItIsNot)
{
    driver.answerTime = 2s;
    const common::ScopedPolicy practical(common::practicalPolicy());
    EXPECT_EQ(ask().value, 0x42);
    refuse(0xC3, 1'000);
    driver.answerTime = 4s;
    const Outcome busy = ask();
    EXPECT_EQ(busy.took, 5s);
    EXPECT_LE(busy.exchanges, 2U);
}

TEST_F(DriverFaults, CodeFFForEveryAnswerIsNotAskedForFiftyTimes)
{
    refuse(0xFF, 1'000);
    EXPECT_EQ(ask().exchanges, 50U);
    const common::ScopedPolicy practical(common::practicalPolicy());
    EXPECT_EQ(ask().exchanges, 5U);
    driver.answerTime = 3s; // as from hardware that the driver gives up on
    EXPECT_LE(ask().took, 5s);
    driver.answerTime = 0s;
    refuse(0xFF, 2);
    EXPECT_EQ(ask().value, 0x42);
}

TEST_F(DriverFaults, LateAnswerToAnEarlierRequestIsDropped)
{
    const common::ScopedPolicy practical(common::practicalPolicy());
    driver.on(sensorEvent, getReading, [](const IpmiRequest& request) { return IpmiAnswer{0, request.data[0]}; });
    driver.answerTime = 6s;
    EXPECT_FALSE(ask(1).answered);
    driver.answerTime = 0s;
    clock.advance(2s); // now it is there, in front
    const Outcome outcome = ask(2);
    EXPECT_EQ(outcome.value, 2);
    EXPECT_EQ(outcome.took, 0s) << "without a pause";
}

TEST_F(DriverFaults, AnswersThatAreNoneArePassedOver)
{
    const common::ScopedPolicy practical(common::practicalPolicy());
    driver.anothersFirst = true;
    EXPECT_EQ(ask().value, 0x42) << "network function 0, command 0";
    driver.emptyHanded = true;
    EXPECT_EQ(ask().value, 0x42) << "ready, and then no message";
    for (const int error : {EMSGSIZE, EAGAIN, EFAULT}) {
        driver.sendError = driver.receiveError = error;
        EXPECT_FALSE(ask().answered) << error;
    }
}

TEST_F(DriverFaults, DeviceThatWentAwayIsOpenedAgainWhenItIsBack)
{
    const common::ScopedPolicy practical(common::practicalPolicy());
    EXPECT_EQ(ask().value, 0x42);
    driver.sendError = driver.receiveError = ENODEV;
    driver.errors = 1;
    driver.present = false;
    EXPECT_FALSE(ask().answered);
    EXPECT_EQ(driver.closed, 1);
    const std::size_t opened = driver.opened.size();
    for (int i = 0; i < 10; ++i)
        EXPECT_FALSE(ask().answered);
    EXPECT_EQ(driver.opened.size(), opened) << "at most once a second";
    driver.present = true;
    clock.advance(1s);
    EXPECT_EQ(ask().value, 0x42);
}

TEST_F(DriverFaults, DeviceThatWasNotThereAtTheStartIsFoundLater)
{
    resetTransportForTests();
    driver.present = false;
    EXPECT_EQ(InitilizeIPMB_Interface(), 1);
    driver.present = true;
    EXPECT_EQ(InitilizeIPMB_Interface(), 1) << "plainly the first search counts for good";
    const common::ScopedPolicy practical(common::practicalPolicy());
    EXPECT_EQ(InitilizeIPMB_Interface(), 0);
    EXPECT_EQ(ask().value, 0x42);
}

} // namespace

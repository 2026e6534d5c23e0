#include "transport/OpenIpmi.hpp"

#include "common/Policy.hpp"
#include "tests/support/FakePrograms.hpp"
#include "tests/support/TempRoot.hpp"
#include "tests/transport/TroubledDriver.hpp"

#include <memory>

using namespace transport;

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class OpenIpmi : public testing::Test, protected DriverMachine {
protected:
    OpenIpmi()
    {
        transportState().OpenIPMIPresence = 1;
        *request = {
            .target = 0x20, .netFn = 6, .lun = 3, .cmd = 1, .data = {0xA1, 0xB2}, .length = 2, .completionCode = 0};
        driver.on(6, 1, IpmiAnswer{0x00, 0x11, 0x22, 0x33});
    }

    int exchange(long msgid = 1) { return OpenIPMIProcessMessage(request.get(), response.get(), msgid); }

    std::unique_ptr<BMC_MESSAGE> request = std::make_unique<BMC_MESSAGE>();
    std::unique_ptr<BMC_MESSAGE> response = std::make_unique<BMC_MESSAGE>();
};

TEST_F(OpenIpmi, RequestIsAddressedByItsTargetAndAnswerTakenApart)
{
    const std::pair<std::uint8_t, std::uint8_t> channels[] = {{0x2C, 6}, {0x88, 6}, {0xC0, 0}, {0x20, 15}};
    for (const auto& [target, channel] : channels) {
        request->target = target;
        ASSERT_EQ(exchange(), 0);
        EXPECT_EQ(driver.requests.back().target, target);
        EXPECT_EQ(driver.requests.back().channel, channel);
        EXPECT_EQ(driver.requests.back().lun, 0) << "the request's LUN is not used";
        EXPECT_EQ(response->target, target);
        const common::ScopedPolicy carrying(common::Policy{.carriesLun = true});
        ASSERT_EQ(exchange(), 0);
        EXPECT_EQ(driver.requests.back().lun, 3);
    }
    EXPECT_THAT(driver.requests.back().data, ElementsAre(0xA1, 0xB2));
    EXPECT_EQ(OpenIPMIProcessSendMessage(request.get(), response.get(), 0, 0x2C), 0);
    EXPECT_EQ(driver.requests.back().target, 0x2C);
    EXPECT_THAT((std::vector<int>{response->netFn, response->lun, response->cmd, response->completionCode}),
                ElementsAre(6, 0, 1, 0));
    EXPECT_THAT(std::vector(response->data, response->data + response->length), ElementsAre(0x11, 0x22, 0x33));
}

TEST_F(OpenIpmi, ErrorsOfTheDriverHaveTheirNumbers)
{
    const struct {
        int systemError, onSend, onReceive;
    } rows[] = {{ENOMEM, -520, -504},   {EFAULT, -518, -518}, {EINVAL, -516, -516},
                {EMSGSIZE, -519, -519}, {EAGAIN, -504, -517}, {ENODEV, -504, -504}};
    for (const auto& row : rows) {
        driver.sendError = row.systemError;
        EXPECT_EQ(exchange(), row.onSend) << row.systemError;
        driver.sendError = 0;
        driver.receiveError = row.systemError;
        EXPECT_EQ(exchange(), row.onReceive) << row.systemError;
        driver.receiveError = 0;
    }
    driver.sendError = EINVAL;
    response->completionCode = 0;
    EXPECT_EQ(ProcessMessage(request.get(), response.get(), 1), 0) << "the BMC's own are not told";
    request->target = 0xC0;
    EXPECT_EQ(ProcessMessage(request.get(), response.get(), 1), ipmiInvalidArgument);
}

TEST_F(OpenIpmi, WaitsTenSpellsOfWhichInterruptedOnesCount)
{
    driver.waitResults = {0, -1, 0, 0, 0, -1, 0, 0, 0};
    EXPECT_EQ(exchange(), 0) << "ready in the tenth";
    driver.on(6, 1, IpmiAnswer{});
    driver.waits.clear();
    EXPECT_EQ(exchange(), ipmiTimeout);
    EXPECT_EQ(driver.waits, std::vector(10, std::chrono::milliseconds(10s)));
}

TEST_F(OpenIpmi, AnswersToOtherMsgidsAreDropped)
{
    driver.strays = {{9, {0}}, {8, {0}}, {7, {0}}, {6, {0}}};
    EXPECT_EQ(exchange(5), 0);
    EXPECT_EQ(response->data[0], 0x11);
    EXPECT_THAT(clock.sleeps, ElementsAre(1s, 1s, 1s, 1s));
    driver.strays = {{9, {0}}, {8, {0}}, {7, {0}}, {6, {0}}, {4, {0}}};
    EXPECT_EQ(exchange(5), ipmiTimeout);
}

TEST_F(OpenIpmi, EmptyAnswerReadsAsLengthBelowZeroAndWhatIsTooLongIsRefused)
{
    driver.strays = {{1, {}}};
    response->data[0] = 0x77;
    ASSERT_EQ(exchange(), 0);
    EXPECT_EQ(response->length, 0xFFFFFFFFu);
    EXPECT_EQ(response->completionCode, 0xA1) << "the buffer still holds the request";
    EXPECT_EQ(response->data[0], 0x77);
    driver.on(6, 1, IpmiAnswer(273));
    EXPECT_EQ(exchange(2), ipmiMessageSize) << "longer than the buffer it came in";
    driver.requests.clear();
    driver.on(6, 1, IpmiAnswer{0});
    request->length = 272;
    EXPECT_EQ(exchange(), 0);
    request->length = 273;
    EXPECT_EQ(exchange(), ipmiMessageSize);
    EXPECT_EQ(driver.requests.size(), 1u);
}

TEST_F(OpenIpmi, FirstNodeTakesPrecedence)
{
    EXPECT_EQ(init_openipmi(), 0);
    driver.onlyNode = "/dev/ipmidev/0";
    EXPECT_EQ(init_openipmi(), 0);
    EXPECT_THAT(driver.opened, ElementsAre("/dev/ipmi0", "/dev/ipmi0", "/dev/ipmidev/0"));
    driver.present = false;
    testing::internal::CaptureStdout();
    EXPECT_EQ(init_openipmi(), -1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "OpenIPMI driver is disabled. Please refer to release note to start "
              "OpenIPMI driver and try again.\n");
}

TEST_F(OpenIpmi, ModulesGoAndComeOnlyWhileUsbIsInUse)
{
    FakePrograms programs;
    const ScopedSeam<CommandRunner> usePrograms(programs);
    EXPECT_EQ(deinit_openipmi(), 0);
    EXPECT_EQ(Reinitialize_OpenIPMI(), 0);
    EXPECT_TRUE(programs.asked.empty());

    transportState().g_UseUSB = 1;
    EXPECT_EQ(deinit_openipmi(), 127) << "the result of the last command";
    EXPECT_EQ(driver.closed, 1);
    EXPECT_EQ(Reinitialize_OpenIPMI(), 0);
    driver.present = false;
    EXPECT_EQ(Reinitialize_OpenIPMI(), -1);
    EXPECT_LT(transportState().openIPMIfd, 0);
    EXPECT_EQ(transportState().OpenIPMIPresence, 1);
    std::string commands;
    for (const auto& argv : programs.asked)
        commands += argv.at(0) + " " + argv.at(1) + "; ";
    EXPECT_THAT(commands,
                testing::StartsWith("rmmod ipmi_si; rmmod ipmi_msghandler; rmmod ipmi_devintf; modprobe ipmi_si; "
                                    "modprobe ipmi_msghandler; modprobe ipmi_devintf; "));
    EXPECT_THAT(clock.sleeps, ElementsAre(5s, 5s));
}

TEST(DetectOpenIPMIModules, CountsLinesWhoseFirstWordIsAModule)
{
    TempRoot files;
    EXPECT_FALSE(DetectOpenIPMIModules()) << "no file";
    const std::string longLine = "ipmi_msghandler 122880 3 " + std::string(300, 'x') + " ipmi_si \n";
    const std::pair<std::string, bool> rows[] = {
        {"", false},
        {"ipmi_si 1 0 - Live\nipmi_devintf 1 0\n", false},
        {"a 1\nipmi_si 1 0\n" + longLine + "ipmi_devintf 1 0\n", true},
        {"ipmi_si 1\nipmi_devintf 2\nipmi_msghandler\n", false},
        {"ipmi_si2 1\n ipmi_si 1\nipmi_devintf 2\nipmi_msghandler 3\n", false},
    };
    for (const auto& [text, expected] : rows) {
        files.write("/proc/modules", text);
        EXPECT_EQ(DetectOpenIPMIModules(), expected) << text;
    }
}

} // namespace

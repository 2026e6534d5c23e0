#include "transport/BmcMessage.hpp"

#include "common/Policy.hpp"
#include "tests/support/ModelBmc.hpp"
#include "tests/support/TempRoot.hpp"
#include "tests/transport/FakeKcs.hpp"
#include "transport/TransportState.hpp"

#include <algorithm>

using namespace transport;

namespace {

using namespace std::chrono_literals;
using Bytes = FakeKcs::Bytes;
using testing::ElementsAre;

/// Both roads stand ready; the driver is in force until a test closes it.
class Message : public testing::Test {
protected:
    Message()
    {
        transportState().OpenIPMIPresence = 1;
        bmc.on(6, 1, [this](const IpmiRequest&) { return Bytes(answers.at(std::min(served++, answers.size() - 1))); });
        ports.answer = [this](const Bytes& frame) {
            frames.push_back(frame);
            return kcsAnswer;
        };
        response.unused3 = response.unused6 = 0x99;
    }

    int send(int retries = 0, std::uint8_t target = 0x20)
    {
        const BMC_REQUEST request{target, 1, 6, 2, static_cast<std::uint32_t>(payload.size()), payload.data()};
        return SendRequest_Linux(&request, &response, retries);
    }

    ModelBmc bmc;
    PortMachine machine;
    FakeKcs& ports = machine.bmc;
    FakeClock& clock = machine.clock;
    ScopedSeam<DeviceFile> useDevice{bmc};
    std::vector<Bytes> answers{{0x00, 0x41, 0x42}};
    std::size_t served = 0;
    Bytes payload, kcsAnswer;
    std::vector<Bytes> frames;
    BMC_RESPONSE response{};
};

TEST_F(Message, DirectKcsExchangeKeepsTheRequestsHeader)
{
    transportState().OpenIPMIPresence = 0;
    kcsAnswer = {0x1C, 0x01, 0xC1, 0x07};
    ASSERT_EQ(send(), 0);
    EXPECT_THAT(frames, ElementsAre(Bytes{0x18, 0x01})) << "without data two bytes, and never a LUN";
    EXPECT_THAT((Bytes{response.length, response.completionCode, response.netFn, response.data[0]}),
                ElementsAre(1, 0xC1, 6, 7));
    EXPECT_EQ(ports.acquired, 1);
    const common::ScopedPolicy practical(common::practicalPolicy());
    ASSERT_EQ(send(), 0);
    EXPECT_EQ(frames.back()[0], 0x1A) << "but in the mode";
}

TEST_F(Message, AnswerToAnotherRequestIsRefusedAndOursAskedForAgain)
{
    transportState().OpenIPMIPresence = 0;
    const Bytes ours{0x1C, 0x01, 0x00, 0x41};
    for (const Bytes& another :
         {Bytes{0x1C, 0x02, 0x00, 0x99}, Bytes{0x2C, 0x01, 0x00, 0x99}, Bytes{0x18, 0x01, 0x00, 0x99}}) {
        int asked = 0;
        ports.answer = [&](const Bytes&) { return asked++ == 0 ? another : ours; };
        EXPECT_EQ(send(), 0);
        EXPECT_EQ(response.data[0], 0x41);
        EXPECT_EQ(asked, 2);
        ports.answer = [&](const Bytes&) { return another; };
        EXPECT_EQ(send(), 1) << "without ours there is none";
    }
}

TEST_F(Message, UnusableAnswersAreTriedAgainAndLongOnesKeepTheirLength)
{
    const BMC_REQUEST request{0x20, 1, 6, 0, 0, nullptr};
    answers = {Bytes(260)};
    EXPECT_EQ(transport::sendRequest(request, response, 0), 259u);
    transportState().OpenIPMIPresence = 0;
    const std::pair<std::size_t, int> rows[] = {{0, 1},        {1, 1},        {2, 1},    {3, 0},
                                                {3 + 1023, 0}, {3 + 1024, 1}, {65534, 1}};
    for (const auto& [frameLength, expected] : rows) {
        kcsAnswer = {0x1C, 0x01};
        kcsAnswer.resize(frameLength);
        frames.clear();
        EXPECT_EQ(send(3), expected) << frameLength;
        EXPECT_EQ(frames.size(), expected ? 4u : 1u) << frameLength;
        EXPECT_TRUE(expected || response.length == static_cast<std::uint8_t>(frameLength - 3));
    }
    kcsAnswer = Bytes(260, 0x5A);
    kcsAnswer[0] = 0x1C, kcsAnswer[1] = 1, kcsAnswer[2] = 0;
    EXPECT_EQ(transport::sendRequest(request, response, 0), 257u);
    EXPECT_EQ(response.data[256], 0x5A);
}

TEST_F(Message, RequestAboveItsLimitIsRefusedUnsent)
{
    payload.resize(65536);
    EXPECT_EQ(send(3), 1);
    transportState().OpenIPMIPresence = 0;
    payload.resize(65534);
    EXPECT_EQ(send(3), 1) << "no KCS frame holds it";
    EXPECT_TRUE(ports.writes.empty());
    EXPECT_TRUE(bmc.requests.empty());
}

TEST_F(Message, InitialisationHappensOnce)
{
    resetTransportForTests();
    EXPECT_EQ(InitilizeIPMB_Interface(), 0);
    EXPECT_EQ(transportState().OpenIPMIPresence, 1);
    bmc.present = false;
    EXPECT_EQ(InitilizeIPMB_Interface(), 0);

    const TempRoot withoutMemory;
    resetTransportForTests();
    EXPECT_EQ(InitilizeIPMB_Interface(), 1);
    EXPECT_EQ(InitilizeIPMB_Interface(), 1);
    EXPECT_FALSE(Freelibrary()) << "a later initialisation says 0 even so";
    resetTransportForTests();
    EXPECT_EQ(BmcLibInitialize(), noBmcInterface);
}

TEST_F(Message, TypeAndVersionAreReadTwiceAndThenCached)
{
    std::uint32_t type = 0, version = 9;
    answers = {{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x12, 0x43}};
    for (const auto& [code, expected] : {std::pair{0x51, 1u}, {0x02, 2u}, {0x03, 0u}}) {
        resetTransportForTests();
        transportState().OpenIPMIPresence = 1;
        answers[0][5] = static_cast<std::uint8_t>(code);
        served = 0;
        EXPECT_EQ(GetBmcTypeVersion(&type, &version), 0);
        EXPECT_EQ(GetBmcTypeVersion(&type, &version), 0);
        EXPECT_EQ(version, expected);
        EXPECT_EQ(type, 2u);
        EXPECT_EQ(served, 2u);
    }
    resetTransportForTests();
    ports.absent = true;
    EXPECT_EQ(GetBmcTypeVersion(&type, &version), deviceIdFailed);
    EXPECT_EQ(GetBmcType(&type), 1);
    EXPECT_EQ(type, 0u);
}

} // namespace

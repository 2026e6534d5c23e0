#include "common/Policy.hpp"
#include "tests/transport/FakeKcs.hpp"
#include "transport/BmcMessage.hpp"
#include "transport/TransportState.hpp"

#include <deque>
#include <memory>

using namespace transport;

namespace {

using namespace std::chrono_literals;
using Bytes = FakeKcs::Bytes;
using testing::Each;
using testing::ElementsAre;

constexpr std::uint8_t empty = 0x80, refused = 0x83;

/// A BMC behind KCS with a controller on its IPMB that answers each bridged request, unless the test scripts otherwise.
class Bridge : public testing::Test, protected PortMachine {
protected:
    Bridge()
    {
        bmc.latency = 0;
        bmc.attention = true;
        bmc.answer = [this](const Bytes& frame) { return serve(frame); };
        *request = {
            .target = 0xC0, .netFn = 4, .lun = 1, .cmd = 0x2D, .data = {0x33}, .length = 1, .completionCode = 0};
    }

    Bytes serve(const Bytes& frame)
    {
        const bool sends = frame[1] == 0x34;
        Bytes reply{0x1C, frame[1], 0};
        if (sends)
            sent.emplace_back(frame.begin() + 2, frame.end());
        else
            ++gets;
        std::deque<Bytes>& script = sends ? sendScript : getScript;
        const Bytes& always = sends ? sendAlways : getAlways;
        if (script.empty() && always.empty())
            return sends ? reply : answerTo(sent.back());
        reply.resize(2);
        const Bytes scripted = script.empty() ? always : script.front();
        if (!script.empty())
            script.pop_front();
        reply.insert(reply.end(), scripted.begin(), scripted.end());
        return reply;
    }

    static Bytes answerTo(const Bytes& message)
    {
        const auto sequence = static_cast<std::uint8_t>((message[5] & 0xFC) | 1);
        return {0x1C, 0x33, 0, 0x40, 0x14, 0xCC, message[1], sequence, message[6], 0x05, 0x71, 0x72, 0xEE};
    }

    static Bytes stale() { return {0x00, 0x40, 0x14, 0xCC, 0xC0, 0xFC, 0x2D, 0x00, 0x99, 0xEE}; }

    int exchange() { return ProcessMessage(request.get(), response.get(), 1); }

    int exchangePx(std::uint8_t netFn = 4)
    {
        const BMC_REQUEST flat{0xC0, 0x2D, netFn, 0, 0, nullptr};
        return SendMessagePX_Linux(&flat, &flatResponse, 0, 0xC0);
    }

    std::vector<Bytes> sent;
    int gets = 0;
    std::deque<Bytes> sendScript, getScript; ///< completion code and data, one for each command
    Bytes sendAlways, getAlways;             ///< the same once the script is over; empty: a sound answer
    std::unique_ptr<BMC_MESSAGE> request = std::make_unique<BMC_MESSAGE>();
    std::unique_ptr<BMC_MESSAGE> response = std::make_unique<BMC_MESSAGE>();
    BMC_RESPONSE flatResponse{};
};

TEST_F(Bridge, StaleShortAndRefusedMessagesUseUpNoRound)
{
    const Bytes cutShort{0x00, 0x40, 0x14, 0xCC, 0xC0, 0x05, 0x2D, 0x00};
    getScript.assign(99, Bytes{empty});
    for (int i = 0; i < 50; ++i)
        getScript.insert(getScript.begin() + i * 2, {stale(), Bytes{refused}, cutShort, Bytes(1 + i % 8)});
    ASSERT_EQ(exchange(), 0);
    EXPECT_EQ(sent.size(), 1u);
    EXPECT_EQ(response->data[0], 0x71);
}

TEST_F(Bridge, EmptyQueueOrFailedGetMessageSendsAgainWithinTheBudget)
{
    const std::deque<Bytes> failures[] = {std::deque(100, Bytes{empty}), {Bytes{0xC1}}, {Bytes{}}};
    for (const auto& failure : failures) {
        sent.clear();
        getScript = failure;
        EXPECT_EQ(exchange(), 0);
        EXPECT_EQ(sent.size(), 2u);
        EXPECT_EQ(response->data[0], 0x71);
    }
    getScript = {Bytes{0xC1}};
    clock.perReading = 2600ms; // noted, read in the round, read at the time check
    EXPECT_EQ(exchange(), -504);
    EXPECT_EQ(response->completionCode, empty);
}

TEST_F(Bridge, BudgetEndsWhatWouldLoopForGoodWithoutAdvancingTheSequence)
{
    clock.perReading = 100ms;
    for (const Bytes& answer : {Bytes{refused}, stale(), Bytes{0, 1, 2}}) {
        getAlways = answer;
        EXPECT_EQ(exchange(), -504);
    }
    bmc.answer = [](const Bytes&) { return Bytes{0x1C, 0x34}; };
    EXPECT_EQ(exchange(), -504) << "the Send Message itself fails";
    EXPECT_EQ(transportState().processSendSequence.current(), 1);
    clock.perReading = 0ms; // the time of day is set back, and only the steady clock goes on
    getAlways = Bytes{refused};
    bmc.answer = [this](const Bytes& frame) {
        clock.time -= 1h;
        clock.steadyTime += 100ms;
        return gets < 1000 ? serve(frame) : answerTo(sent.back());
    };
    EXPECT_EQ(exchange(), -504);
}

TEST_F(Bridge, RefusedSendIsRepeatedAtOnceButCode83Ends)
{
    sendScript.assign(5000, Bytes{0xC0});
    clock.perReading = 1ms;
    EXPECT_EQ(exchange(), 0);
    EXPECT_EQ(sent.size(), 5001u);
    EXPECT_EQ(response->data[0], 0x71);

    sendScript = {Bytes{refused}};
    gets = 0;
    response->length = 0;
    EXPECT_EQ(exchange(), 0);
    EXPECT_EQ(gets, 0);
    EXPECT_EQ(response->length, 0u);
    EXPECT_EQ(transportState().processSendSequence.current(), 3);
}

TEST_F(Bridge, WithinABudgetARefusedSendIsTheAnswerAndNothingLoopsForGood)
{
    const common::ScopedPolicy practical(common::practicalPolicy());
    clock.perReading = 1ms;
    const std::uint8_t sensor = 1;
    const BMC_REQUEST flat{0xC0, 0x2D, 4, 0, 1, &sensor};
    const auto ask = [&] {
        const auto start = clock.steadyTime;
        const bool answered = sendRequest(flat, flatResponse, 3).has_value();
        EXPECT_LT(clock.steadyTime - start, 5200ms);
        return answered;
    };
    sendAlways = {0xC1};
    EXPECT_TRUE(ask());
    EXPECT_EQ(flatResponse.completionCode, 0xC1);
    EXPECT_EQ(sent.size(), 1u);
    sendAlways = {refused};
    EXPECT_TRUE(ask());
    EXPECT_EQ(flatResponse.completionCode, refused);
    EXPECT_LT(sent.size(), 20u);
    sendAlways = {};
    for (const Bytes& always : {Bytes{empty}, Bytes{refused}, stale()}) {
        getAlways = always;
        EXPECT_FALSE(ask());
    }
    getAlways = {};
    sendScript = {Bytes{refused}, Bytes{0xC0}};
    transportState().lostRequests = {};
    EXPECT_TRUE(ask());
    EXPECT_EQ(flatResponse.data[0], 0x71);
}

TEST_F(Bridge, ResetOfTheSatelliteAwaitsNoAnswer)
{
    request->target = 0x22;
    request->cmd = 4;
    getScript = {Bytes{empty}};
    EXPECT_EQ(exchange(), 0);
    EXPECT_EQ(gets, 1);
    EXPECT_EQ(transportState().processSendSequence.current(), 1);

    request->cmd = 5;
    getScript.assign(999, Bytes{empty});
    EXPECT_EQ(exchange(), 0) << "its other commands have 1000 rounds";
    EXPECT_EQ(sent.size(), 2u);
}

TEST_F(Bridge, WaitsForAttentionBeforeTheFirstGetMessage)
{
    ASSERT_EQ(exchange(), 0);
    EXPECT_TRUE(clock.sleeps.empty());
    bmc.attention = false;
    ASSERT_EQ(exchange(), 0);
    EXPECT_EQ(clock.sleeps.size(), 251u);
    EXPECT_THAT(clock.sleeps, Each(std::chrono::nanoseconds(2ms)));
}

TEST_F(Bridge, RequestThatFitsNoSendMessageIsRefused)
{
    request->length = 65529;
    EXPECT_EQ(exchange(), ipmiMessageSize);
    const BMC_REQUEST flat{0xC0, 1, 6, 0, 65529, request->data};
    EXPECT_EQ(SendMessagePX_Linux(&flat, &flatResponse, 0, 0xC0), 1);
    EXPECT_TRUE(bmc.writes.empty());
}

TEST_F(Bridge, PxCountsAttemptsInPlaceOfAClock)
{
    sendAlways = {0xC0};
    EXPECT_EQ(exchangePx(), 1);
    EXPECT_EQ(sent.size(), 5u);
    EXPECT_EQ(exchangePx(8), 1);
    EXPECT_EQ(sent.size(), 28u);

    sendAlways = {0x00};
    Bytes tooLong(1 + 8 + 1024);
    tooLong[5] = 3 << 2;
    for (const Bytes& answer : {Bytes{empty}, Bytes{0xC1}, Bytes{0, 1, 2}, tooLong}) {
        transportState().sendMessagePxSequence = {};
        transportState().sendMessagePxSequence.advance();
        transportState().sendMessagePxSequence.advance();
        sent.clear();
        getAlways = answer;
        EXPECT_EQ(exchangePx(), 1);
        EXPECT_EQ(sent.size(), 5u) << answer.size();
    }
}

TEST_F(Bridge, PxIsPatientForGoodAfterCode83)
{
    sendScript = {Bytes{refused}};
    getScript.assign(999, Bytes{empty});
    EXPECT_EQ(exchangePx(), 0);
    EXPECT_EQ(sent.size(), 2u);
    EXPECT_THAT(clock.sleeps, ElementsAre(1s));
    getScript.assign(999, Bytes{empty});
    getScript.push_back(stale());
    EXPECT_EQ(exchangePx(), 0);
    EXPECT_EQ(sent.size(), 3u);
    EXPECT_THAT((Bytes{flatResponse.length, flatResponse.completionCode, flatResponse.data[0], flatResponse.data[1]}),
                ElementsAre(2, 0x05, 0x71, 0x72));
}

TEST_F(Bridge, UnrestrictedFormSucceedsWithAndWithoutAnswer)
{
    const BMC_REQUEST flat{0xC0, 0x2D, 4, 1, 1, request->data};
    sendScript = {Bytes{refused}};
    getScript = {stale(), Bytes{refused}, Bytes{empty}, Bytes(4)};
    EXPECT_EQ(SendMessage_Linux(&flat, &flatResponse, 6, 0x2C), 0);
    EXPECT_EQ(sent.size(), 4u);
    EXPECT_EQ(sent[0][0], 6);
    EXPECT_EQ(flatResponse.length, 2);
    EXPECT_EQ(flatResponse.data[1], 0x72);

    sent.clear();
    sendAlways = {refused};
    EXPECT_EQ(SendMessage_Linux(&flat, &flatResponse, 6, 0x2C), 0);
    EXPECT_EQ(sent.size(), 200u);
}

} // namespace

#include "common/Policy.hpp"
#include "common/Seams.hpp"
#include "ipmi/Codes.hpp"
#include "transport/BmcMessage.hpp"
#include "transport/Deadline.hpp"
#include "transport/Kcs.hpp"
#include "transport/MachineIo.hpp"
#include "transport/MessageRecords.hpp"
#include "transport/OpenIpmi.hpp"
#include "transport/TransportState.hpp"

#include <algorithm>
#include <chrono>
#include <memory>
#include <new>
#include <numeric>
#include <vector>

using namespace transport;

namespace {

using namespace std::chrono_literals;

constexpr unsigned exchangeTimeoutSeconds = 5;
constexpr std::chrono::seconds budgetTime{5};
constexpr std::uint8_t requesterLun = 2;

// Send Message data around the bridged bytes: channel, three bytes of header and checksum, three of header, checksum.
constexpr std::uint32_t bridgeOverhead = 8;

// Get Message data (IPMI 2.0, 22.6): channel, then the IPMB message.
constexpr std::uint32_t gotNetFn = 1, gotResponder = 3, gotSequence = 4, gotCommand = 5, gotCode = 6, gotData = 7;

constexpr int roundsUsual = 100;
constexpr int roundsSatellite = 1000;
constexpr int attentionPauseMs = 2;
constexpr int attentionLimitMs = 500;

constexpr int pxAttemptsUsual = 5;
constexpr int pxAttemptsFirmware = 23;
constexpr unsigned pxTimeoutSeconds = 1;
constexpr int sendMessageRounds = 200;
constexpr int sendMessageRetries = 3;

/// What of a request goes into the IPMB message.
struct Bridged {
    std::uint8_t netFn, lun, cmd;
    const std::uint8_t* data;
    std::uint32_t length;
};

template<class Request>
Bridged bridged(const Request& request)
{
    return {request.netFn, request.lun, request.cmd, request.data, request.length};
}

/// Writes the data of a Send Message, `length` + bridgeOverhead bytes.
void writeBridgeFrame(std::uint8_t* out, const Bridged& request, std::uint8_t channel, std::uint8_t target,
                      std::uint8_t sequence)
{
    out[0] = channel;
    out[1] = target;
    out[2] = static_cast<std::uint8_t>(request.netFn << 2 | (request.lun & 3));
    out[3] = CalculateChecksum(out + 1, 2);
    out[4] = ipmi::address::bmc;
    out[5] = static_cast<std::uint8_t>(sequence << 2 | requesterLun);
    out[6] = request.cmd;
    std::copy_n(request.data, request.length, out + 7);
    out[7 + request.length] = CalculateChecksum(out + 4, static_cast<int>(request.length) + 3);
}

/// False when the message cannot hold the request.
bool fillSendMessage(BMC_MESSAGE& send, const Bridged& request, std::uint8_t channel, std::uint8_t target,
                     std::uint8_t sequence)
{
    if (request.length > sizeof send.data - bridgeOverhead)
        return false;
    fillPlainRequest(send, ipmi::netfn::app, ipmi::cmd::sendMessage);
    writeBridgeFrame(send.data, request, channel, target, sequence);
    send.length = request.length + bridgeOverhead;
    return true;
}

bool isWholeMessage(const BMC_MESSAGE& got)
{
    return got.length >= bridgeOverhead && got.length <= sizeof got.data;
}

bool answersSequence(const BMC_MESSAGE& got, std::uint8_t sequence)
{
    return isWholeMessage(got) && got.data[gotSequence] >> 2 == sequence;
}

void takeAnswer(BMC_MESSAGE& response, const BMC_MESSAGE& got)
{
    response.target = got.data[gotResponder];
    response.netFn = got.data[gotNetFn] >> 2;
    response.lun = got.data[gotSequence] & 3;
    response.cmd = got.data[gotCommand];
    response.completionCode = got.data[gotCode];
    response.length = got.length - bridgeOverhead;
    std::copy_n(got.data + gotData, response.length, response.data);
}

bool givesNoAnswer(std::uint8_t target, std::uint8_t cmd)
{
    return target == ipmi::address::frontPanel && cmd == ipmi::cmd::satelliteReset;
}

void waitForAttention()
{
    for (int waited = 0; waited <= attentionLimitMs && !Deadline::passed(); waited += attentionPauseMs) {
        if (KCSMessageReady())
            return;
        current<Clock>().sleepFor(std::chrono::milliseconds(attentionPauseMs));
    }
}

/// By the steady clock: the time of day may be set at any moment.
class Budget {
public:
    bool exhausted() const { return Deadline::passed() || current<Clock>().steady() - start >= budgetTime; }

private:
    Clock::SteadyPoint start = current<Clock>().steady();
};

/// Between two looks into an empty queue: growing, where the policy spares the controller.
class QueuePause {
public:
    void make()
    {
        if (!common::policy().retriesBusyController)
            return;
        current<Clock>().sleepFor(std::min(next, Deadline::left()));
        next = std::min(2 * next, longest);
    }

private:
    static constexpr std::chrono::nanoseconds longest = 100ms;
    std::chrono::nanoseconds next = 2ms;
};

enum class Got { answer, noneAwaited, budgetExhausted, nothing };

/// What a loop of Get Message waits for.
struct Awaited {
    std::uint8_t target, cmd, sequence;
    int rounds; ///< empty queues until it gives up
    unsigned timeoutSeconds;
    const Budget* budget; ///< none: only the rounds end it
};

/// Gets messages into `got` until one answers. Stale and refused ones use up no round. Without a budget a message too
/// short to carry a sequence number ends the loop, or a BMC that sends nothing else would hold the caller.
Got getMessages(const Awaited& awaited, BMC_MESSAGE& got)
{
    BMC_MESSAGE get;
    fillPlainRequest(get, ipmi::netfn::app, ipmi::cmd::getMessage);
    QueuePause pause;
    for (int rounds = awaited.rounds; rounds > 0 && !Deadline::passed();) {
        clearHeader(got);
        if (ProcessMessage(&get, &got, awaited.timeoutSeconds) != 0)
            return Got::nothing;
        if (givesNoAnswer(awaited.target, awaited.cmd))
            return Got::noneAwaited;
        if (awaited.budget && awaited.budget->exhausted())
            return Got::budgetExhausted;
        if (got.completionCode == ipmi::completion::nakOnWrite || got.completionCode == ipmi::completion::queueEmpty) {
            rounds -= got.completionCode == ipmi::completion::queueEmpty;
            pause.make();
            continue;
        }
        if (got.completionCode != ipmi::completion::ok || (!awaited.budget && !isWholeMessage(got)))
            return Got::nothing;
        if (answersSequence(got, awaited.sequence))
            return Got::answer;
    }
    return Got::nothing;
}

Got collectAnswer(const BMC_MESSAGE& request, BMC_MESSAGE& response, std::uint8_t target, const Budget& budget)
{
    BMC_MESSAGE got;
    const Awaited awaited{.target = target,
                          .cmd = request.cmd,
                          .sequence = transportState().processSendSequence.current(),
                          .rounds = target == ipmi::address::frontPanel ? roundsSatellite : roundsUsual,
                          .timeoutSeconds = exchangeTimeoutSeconds,
                          .budget = &budget};
    const Got result = getMessages(awaited, got);
    if (result == Got::answer)
        takeAnswer(response, got);
    if (result == Got::nothing)
        response.completionCode = ipmi::completion::queueEmpty;
    return result;
}

Got collectPxAnswer(const BMC_REQUEST& request, BMC_RESPONSE& response, std::uint8_t target)
{
    BMC_MESSAGE got;
    const bool patient = target == ipmi::address::frontPanel || transportState().incTestCount;
    const Awaited awaited{.target = target,
                          .cmd = request.cmd,
                          .sequence = transportState().sendMessagePxSequence.current(),
                          .rounds = patient ? roundsSatellite : roundsUsual,
                          .timeoutSeconds = pxTimeoutSeconds,
                          .budget = nullptr};
    const Got result = getMessages(awaited, got);
    if (result != Got::answer)
        return result;
    const std::uint32_t length = got.length - bridgeOverhead;
    if (length > maxResponseData)
        return Got::nothing;
    response.length = static_cast<std::uint8_t>(length);
    response.completionCode = got.data[gotCode];
    std::copy_n(got.data + gotData, length, response.data);
    return result;
}

Got attemptPx(BMC_MESSAGE& send, const BMC_REQUEST& request, BMC_RESPONSE& response, std::uint8_t target)
{
    BMC_MESSAGE sent;
    clearHeader(sent);
    if (ProcessMessage(&send, &sent, pxTimeoutSeconds) != 0)
        return Got::nothing;
    if (sent.completionCode == ipmi::completion::nakOnWrite) {
        current<Clock>().sleepFor(std::min(std::chrono::nanoseconds(1s), Deadline::left()));
        transportState().incTestCount = true;
    }
    if (sent.completionCode != ipmi::completion::ok)
        return Got::nothing;
    waitForAttention();
    return collectPxAnswer(request, response, target);
}

enum class Round { answer, again, giveUp };

/// One Get Message loop of SendMessage_Linux; `got` is its buffer.
Round collectPlainAnswer(BMC_RESPONSE& got, BMC_RESPONSE& response)
{
    const BMC_REQUEST get{ipmi::address::bmc, ipmi::cmd::getMessage, ipmi::netfn::app, 0, 0, nullptr};
    while (!Deadline::passed()) {
        if (SendRequest_Linux(&get, &got, sendMessageRetries) != 0 ||
            got.completionCode == ipmi::completion::queueEmpty)
            return Round::again;
        if (got.completionCode == ipmi::completion::nakOnWrite)
            continue;
        if (got.completionCode != ipmi::completion::ok)
            return Round::giveUp;
        if (got.length < bridgeOverhead)
            return Round::again;
        if (got.data[gotSequence] >> 2 != transportState().sendMessageSequence.current())
            continue;
        response.length = static_cast<std::uint8_t>(got.length - bridgeOverhead);
        response.completionCode = got.data[gotCode];
        std::copy_n(got.data + gotData, response.length, response.data);
        return Round::answer;
    }
    return Round::giveUp;
}

Round runPlainRound(const BMC_REQUEST& send, BMC_RESPONSE& sent, BMC_RESPONSE& got, BMC_RESPONSE& response)
{
    if (SendRequest_Linux(&send, &sent, sendMessageRetries) != 0)
        return Round::again;
    if (sent.completionCode == ipmi::completion::nakOnWrite)
        return Round::again;
    return sent.completionCode == ipmi::completion::ok ? collectPlainAnswer(got, response) : Round::giveUp;
}

void runPlainRounds(const BMC_REQUEST& request, BMC_RESPONSE& response, std::uint8_t channel, std::uint8_t target)
{
    std::vector<std::uint8_t> frame(std::size_t{request.length} + bridgeOverhead);
    const auto sent = std::make_unique<BMC_RESPONSE>();
    const auto got = std::make_unique<BMC_RESPONSE>();
    writeBridgeFrame(frame.data(), bridged(request), channel, target, transportState().sendMessageSequence.current());
    const BMC_REQUEST send{
        ipmi::address::bmc, ipmi::cmd::sendMessage, ipmi::netfn::app, 0, static_cast<std::uint32_t>(frame.size()),
        frame.data()};
    const Deadline deadline;
    for (int i = 0; i < sendMessageRounds && !Deadline::passed(); ++i)
        if (runPlainRound(send, *sent, *got, response) != Round::again)
            return;
}

} // namespace

std::uint8_t CalculateChecksum(const std::uint8_t* bytes, int count)
{
    const unsigned sum = count < 1 ? 0 : std::accumulate(bytes, bytes + count, 0U);
    return static_cast<std::uint8_t>(0 - sum);
}

int ProcessSendMessage(BMC_MESSAGE* request, BMC_MESSAGE* response, std::uint8_t channel, std::uint8_t target, unsigned)
{
    TransportState& state = transportState();
    if (state.OpenIPMIPresence)
        return OpenIPMIProcessSendMessage(request, response, channel, target);
    BMC_MESSAGE send;
    if (!fillSendMessage(send, bridged(*request), channel, target, state.processSendSequence.current()))
        return ipmiMessageSize;

    const Deadline deadline;
    const Budget budget;
    for (;;) {
        BMC_MESSAGE sent;
        Got result = Got::nothing;
        if (ProcessMessage(&send, &sent, exchangeTimeoutSeconds) == 0) {
            if (common::policy().limitsExchanges && sent.completionCode != ipmi::completion::ok) {
                response->completionCode = sent.completionCode; // the refusal is the answer: the caller judges it
                break;
            }
            if (sent.completionCode == ipmi::completion::nakOnWrite)
                break;
            if (sent.completionCode != ipmi::completion::ok)
                continue;
            waitForAttention();
            result = collectAnswer(*request, *response, target, budget);
        }
        if (result == Got::noneAwaited)
            return 0;
        if (result == Got::answer)
            break;
        if (result == Got::budgetExhausted || budget.exhausted())
            return ipmiTimeout;
    }
    state.processSendSequence.advance();
    return 0;
}

int SendMessagePX_Linux(const BMC_REQUEST* request, BMC_RESPONSE* response, std::uint8_t channel, std::uint8_t target)
{
    TransportState& state = transportState();
    BMC_MESSAGE send;
    if (!fillSendMessage(send, bridged(*request), channel, target, state.sendMessagePxSequence.current()))
        return 1;
    const Deadline deadline;
    int attempts = request->netFn == ipmi::netfn::firmware ? pxAttemptsFirmware : pxAttemptsUsual;
    Got result = Got::nothing;
    while (attempts > 0 && result == Got::nothing && !Deadline::passed()) {
        result = attemptPx(send, *request, *response, target);
        --attempts;
    }
    if (result == Got::noneAwaited)
        return 0;
    state.sendMessagePxSequence.advance();
    return result == Got::answer ? 0 : 1;
}

int SendMessage_Linux(const BMC_REQUEST* request, BMC_RESPONSE* response, std::uint8_t channel, std::uint8_t target)
{
    try {
        runPlainRounds(*request, *response, channel, target);
    } catch (const std::bad_alloc&) {
        return 1;
    }
    transportState().sendMessageSequence.advance();
    return 0;
}

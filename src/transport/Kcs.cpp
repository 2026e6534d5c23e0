#include "transport/Kcs.hpp"

#include "common/Policy.hpp"
#include "common/Seams.hpp"
#include "ipmi/Codes.hpp"
#include "transport/Deadline.hpp"
#include "transport/MachineIo.hpp"
#include "transport/TransportState.hpp"

#include <algorithm>
#include <chrono>

using namespace transport;

namespace {

using namespace std::chrono_literals;

constexpr unsigned waitLimit = 5'000'000;
constexpr unsigned waitSeconds = 15;
constexpr int recoveryTries = 5;

// Of a wait that sleeps. Most bytes are taken within the first of these.
constexpr std::chrono::nanoseconds spinTime = 100us, longestPause = 10ms;
constexpr int pauseShare = 8; ///< a pause is this part of what was waited so far
/// For the byte behind a frame, which some controllers never offer.
constexpr std::chrono::nanoseconds dummyPatience = 20ms;

std::uint8_t readStatus()
{
    return current<PortIo>().in(kcsStatusPort);
}

std::uint8_t readState()
{
    return readStatus() & kcsStateMask;
}

std::uint8_t readData()
{
    return current<PortIo>().in(KCSAddress);
}

void writeCommand(std::uint8_t code)
{
    current<PortIo>().out(kcsStatusPort, code);
}

void writeData(std::uint8_t byte)
{
    current<PortIo>().out(KCSAddress, byte);
}

void drainOutput()
{
    if (readStatus() & kcsObf)
        readData();
}

class AlarmScope {
public:
    AlarmScope() { alarm.arm(waitSeconds); }
    ~AlarmScope() { alarm.disarm(); }
    AlarmScope(const AlarmScope&) = delete;
    AlarmScope& operator=(const AlarmScope&) = delete;
    bool fired() { return alarm.fired(); }

private:
    Alarm& alarm = current<Alarm>();
};

bool shows(std::uint8_t bit, bool set)
{
    return ((readStatus() & bit) != 0) == set;
}

/// A controller of a second an answer takes a hundred looks this way, and the processor serves others meanwhile.
int sleepUntil(std::uint8_t bit, bool set, std::chrono::nanoseconds limit)
{
    const Clock::SteadyPoint start = current<Clock>().steady();
    while (!shows(bit, set)) {
        const std::chrono::nanoseconds waited = current<Clock>().steady() - start;
        if (waited >= limit || Deadline::passed())
            return 1;
        if (waited >= spinTime)
            current<Clock>().sleepFor(std::min(waited / pauseShare, longestPause));
    }
    return 0;
}

/// The limit counts nothing by itself: the counter stands still until the alarm throws it above every limit in use.
int spinUntil(std::uint8_t bit, bool set, unsigned limit)
{
    if (common::policy().sleepsInPortWaits)
        return sleepUntil(bit, set, std::chrono::seconds(waitSeconds));
    AlarmScope alarm;
    unsigned counter = 0;
    while (!shows(bit, set)) {
        if (limit < counter || Deadline::passed())
            return 1;
        if (alarm.fired())
            counter = waitLimit + 1;
    }
    return 0;
}

/// After each byte of the write phase: taken, still in the WRITE state, nothing left in the output register.
int finishWrite()
{
    if (WaitWhileIbf(waitLimit))
        return kcsTimeout;
    if (readState() != kcsWriteState)
        return kcsWrongState;
    drainOutput();
    return kcsDone;
}

int sendFrame(const unsigned char* frame, unsigned length)
{
    if (length == 0 || WaitWhileIbf(waitLimit))
        return kcsBusy;
    drainOutput();
    writeCommand(kcsWriteStart);
    if (const int result = finishWrite())
        return result;
    for (unsigned i = 0; i + 1 < length; ++i) {
        writeData(frame[i]);
        if (const int result = finishWrite())
            return result;
    }
    writeCommand(kcsWriteEnd);
    if (const int result = finishWrite())
        return result;
    writeData(frame[length - 1]);
    return kcsDone;
}

/// Second half of a recovery try: takes the BMC's error status and looks whether it is idle then.
int leaveErrorState()
{
    if (WaitWhileIbf(waitLimit))
        return kcsTimeout;
    readData();
    writeData(kcsRead);
    if (WaitWhileIbf(waitLimit))
        return kcsTimeout;
    if (readStatus() >= kcsReadState)
        return kcsWrongState;
    if (WaitTilObf(waitLimit))
        return kcsTimeout;
    drainOutput();
    return kcsDone;
}

int tryRecovery()
{
    writeCommand(kcsGetStatusAbort);
    if (WaitWhileIbf(waitLimit))
        return kcsTimeout;
    drainOutput();
    writeData(0);
    if (WaitWhileIbf(waitLimit))
        return kcsTimeout;
    return readState() == kcsReadState ? leaveErrorState() : kcsWrongState;
}

/// The end of a frame: the BMC offers a dummy byte in the idle state, or has gone wrong.
int finishRead()
{
    if (transportState().Status != kcsIdleState) {
        KCSBMCErrorHandler();
        return kcsWrongState;
    }
    if (common::policy().keepsUndummiedFrames && sleepUntil(kcsObf, true, dummyPatience))
        return kcsDone;
    if (WaitTilObf(waitLimit))
        return kcsTimeout;
    readData();
    return kcsDone;
}

} // namespace

int KCSSendMessage(const unsigned char* frame, unsigned length)
{
    const int result = sendFrame(frame, length);
    // A controller that was left in the middle of an exchange may take no new one before an abort.
    if (result == kcsWrongState && common::policy().recoversFailedSends && KCSBMCErrorHandler() == kcsDone)
        return sendFrame(frame, length);
    return result;
}

int KCSReadBMCData(unsigned char* buffer, unsigned size, unsigned* count)
{
    *count = 0;
    if (size == 0)
        return kcsBufferFull;
    for (;;) {
        if (WaitWhileIbf(waitLimit))
            return kcsTimeout;
        transportState().Status = readState();
        if (transportState().Status != kcsReadState)
            return finishRead();
        if (WaitTilObf(waitLimit))
            return kcsTimeout;
        buffer[(*count)++] = readData();
        writeData(kcsRead);
        if (*count == size)
            return kcsBufferFull;
    }
}

int KCSBMCErrorHandler()
{
    for (int failures = 0; failures < recoveryTries; ++failures) {
        if (WaitWhileIbf(waitLimit))
            return kcsTimeout;
        const int result = tryRecovery();
        if (result != kcsWrongState)
            return result;
    }
    return kcsWrongState;
}

int WaitTilObf(unsigned limit)
{
    return spinUntil(kcsObf, true, limit);
}

int WaitWhileIbf(unsigned limit)
{
    return spinUntil(kcsIbf, false, limit);
}

bool IsKCS()
{
    return readStatus() != 0xFF || readData() != 0xFF;
}

bool KCSMessageReady()
{
    return (readStatus() & kcsSmsAtn) != 0;
}

int CheckMessageReady(unsigned char target, unsigned timeoutMs)
{
    unsigned timer = 0;
    SetMsTimeout(&timer, timeoutMs);
    const std::uint8_t awaited = target == ipmi::address::bmc ? kcsObf : kcsSmsAtn;
    for (;;) {
        const std::uint8_t status = readStatus();
        if (target == ipmi::address::bmc)
            transportState().Status = status;
        if (status & awaited)
            return 0;
        if (CheckMsTimeout(timer))
            return 1;
    }
}

int SetMsTimeout(unsigned*, unsigned)
{
    return 0;
}

int CheckMsTimeout(unsigned)
{
    return 0;
}

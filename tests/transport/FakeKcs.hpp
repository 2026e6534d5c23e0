#pragma once

#include "tests/support/FakeClock.hpp"
#include "transport/Kcs.hpp"
#include "transport/MachineIo.hpp"
#include "transport/TransportState.hpp"

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

/// The BMC's side of the KCS interface as a state machine behind the two ports (IPMI 2.0, 9.7 to 9.15), with the faults
/// that hardware is known for. Each byte is taken, and each byte offered, `latency` status reads late.
class FakeKcs : public transport::PortIo {
public:
    using Bytes = std::vector<std::uint8_t>;

    /// Gives the answer frame for a request frame, a sound one with the byte 42h.
    std::function<Bytes(const Bytes&)> answer = [](const Bytes& frame) {
        return Bytes{static_cast<std::uint8_t>(frame[0] | 4), frame[1], 0, 0x42};
    };
    /// With a clock a request takes its time before there is an answer.
    FakeClock* clock = nullptr;
    std::chrono::nanoseconds answerTime{0};
    int looks = 0;

    int latency = 2;
    bool privilege = true;
    bool absent = false;          ///< an empty bus: every port reads FFh
    bool stuckIbf = false;        ///< IBF never falls
    bool stuckObf = false;        ///< OBF never rises in the READ state
    bool noDummy = false;         ///< no byte is offered at the end of a frame
    bool attention = false;       ///< SMS_ATN
    int errorAtWrite = -1;        ///< goes into the ERROR state at this write to the ports, counted from 0
    bool errorInRead = false;     ///< goes into the ERROR state instead of offering the second byte
    int failedRecoveries = 0;     ///< so many aborts are answered with the ERROR state again
    bool startsWhenIdle = false;  ///< goes into the ERROR state at a WRITE_START in any other state
    bool leaveByteBehind = false; ///< a byte of an old exchange waits in the output register

    int acquired = 0;
    std::vector<std::pair<std::uint16_t, std::uint8_t>> writes;

    /// Whether the output register holds a byte, or is about to.
    bool hasByte() const { return offered; }

    bool acquire() override
    {
        ++acquired;
        return privilege;
    }

    std::uint8_t in(std::uint16_t port) override
    {
        ++looks;
        if (clock && clock->steadyTime < busyUntil)
            return transport::kcsIbf;
        if (absent)
            return 0xFF;
        return port == transport::kcsStatusPort ? readStatus() : takeByte();
    }

    void out(std::uint16_t port, std::uint8_t value) override
    {
        writes.emplace_back(port, value);
        ibfReads = latency;
        if (obf) // a byte that nobody took: the answer's place is not free
            enterError();
        else if (static_cast<int>(writes.size()) == errorAtWrite + 1)
            enterError();
        else if (port == transport::kcsStatusPort)
            takeCommand(value);
        else
            takeData(value);
    }

private:
    std::uint8_t readStatus()
    {
        if (leaveByteBehind)
            offer(0xEE);
        leaveByteBehind = false;
        if (ibfReads > 0)
            --ibfReads;
        else if (offered && --obfReads < 0)
            obf = true;
        const int flags = (stuckIbf || ibfReads > 0 ? transport::kcsIbf : 0) | (obf ? transport::kcsObf : 0) |
                          (attention ? transport::kcsSmsAtn : 0);
        return static_cast<std::uint8_t>(state | flags);
    }

    std::uint8_t takeByte()
    {
        obf = offered = false;
        return output;
    }

    void offer(std::uint8_t byte)
    {
        if (stuckObf && state == transport::kcsReadState)
            return;
        output = byte;
        offered = true;
        obfReads = latency;
    }

    void enterError()
    {
        state = transport::kcsErrorState;
        obf = offered = false;
    }

    void takeCommand(std::uint8_t code)
    {
        lastByte = code == transport::kcsWriteEnd;
        if (code == transport::kcsGetStatusAbort) {
            state = transport::kcsErrorState;
            aborting = true;
        } else if (code == transport::kcsWriteStart && startsWhenIdle && state != transport::kcsIdleState) {
            enterError();
        } else if (code == transport::kcsWriteStart) {
            state = transport::kcsWriteState;
            request.clear();
        }
    }

    void takeData(std::uint8_t byte)
    {
        if (aborting) {
            aborting = false;
            startReading(failedRecoveries-- > 0 ? Bytes{} : Bytes{0x01});
        } else if (state == transport::kcsWriteState) {
            request.push_back(byte);
            if (lastByte && clock)
                busyUntil = clock->steadyTime + answerTime;
            if (lastByte)
                startReading(answer(request));
        } else if (state == transport::kcsReadState && byte == transport::kcsRead) {
            offerNext();
        }
    }

    void startReading(Bytes bytes)
    {
        response = std::move(bytes);
        position = 0;
        if (response.empty())
            return enterError();
        state = transport::kcsReadState;
        offerNext();
    }

    void offerNext()
    {
        if (errorInRead && position == 1) {
            errorInRead = false;
            return enterError();
        }
        if (position < response.size())
            return offer(response[position++]);
        state = transport::kcsIdleState;
        if (!noDummy)
            offer(0);
    }

    std::uint8_t state = transport::kcsIdleState, output = 0;
    bool obf = false, offered = false, lastByte = false, aborting = false;
    int ibfReads = 0, obfReads = 0;
    Bytes request, response;
    std::size_t position = 0;
    Clock::SteadyPoint busyUntil{};
};

/// Rings after a number of fruitless looks at the status.
class FakeAlarm : public transport::Alarm {
public:
    int patience = 50;
    int rung = 0, armed = 0, disarmed = 0;
    unsigned seconds = 0;

    void arm(unsigned wanted) override
    {
        seconds = wanted;
        looks = 0;
        ++armed;
    }

    bool fired() override
    {
        const bool rings = ++looks == patience;
        rung += rings;
        return looks >= patience;
    }

    void disarm() override { ++disarmed; }

private:
    int looks = 0;
};

/// Ports, alarm and clock of a machine whose BMC is reached by KCS, in force for the object's life; nothing is known of
/// it yet.
struct PortMachine {
    PortMachine() { transport::resetTransportForTests(); }
    ~PortMachine() { transport::resetTransportForTests(); }

    FakeKcs bmc;
    FakeAlarm alarm;
    FakeClock clock;
    ScopedSeam<transport::PortIo> usePorts{bmc};
    ScopedSeam<transport::Alarm> useAlarm{alarm};
    ScopedSeam<Clock> useClock{clock};
};

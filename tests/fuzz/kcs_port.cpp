#include "tests/fuzz/World.hpp"

#include "tests/transport/FakeKcs.hpp"

#include <memory>

// The two ports of a BMC: every status and data byte from the input, or a sound state machine with faults and with
// answers from the input; in direct exchanges and in bridged ones of each form.

namespace {

enum Choice : std::uint8_t { SOUND_MACHINE = 0x01, BRIDGED = 0x02, ATTENTION = 0x04, BY_HAND = 0x18 };

/// The input's bytes in the order in which they are read, then an empty bus.
class InputPorts : public transport::PortIo {
public:
    explicit InputPorts(Input& input_) : input(input_) {}
    bool acquire() override { return true; }
    std::uint8_t in(std::uint16_t) override { return input.empty() ? std::uint8_t{0xFF} : input.byte(); }
    void out(std::uint16_t, std::uint8_t) override {}

private:
    Input& input;
};

void makeFaulty(FakeKcs& bmc, unsigned faults)
{
    bmc.latency = faults & 1;
    bmc.stuckIbf = (faults & 0x0E) == 0x0E;
    bmc.stuckObf = (faults & 0x0E) == 0x0C;
    bmc.noDummy = (faults & 0x0E) == 0x0A;
    bmc.errorInRead = (faults & 0x0E) == 0x08;
    bmc.leaveByteBehind = (faults & 0x10) != 0;
    bmc.errorAtWrite = faults & 0x20 ? static_cast<int>(faults >> 6) : -1;
    bmc.failedRecoveries = static_cast<int>(faults >> 6);
}

/// The head of an answer to the request of `frame`, with the rest of it from the input; nothing when that has run out.
FakeKcs::Bytes answerTo(const FakeKcs::Bytes& frame, Input& input)
{
    if (frame.size() < 2 || input.empty())
        return {};
    FakeKcs::Bytes answer{static_cast<std::uint8_t>(frame[0] | 4), frame[1]};
    const FakeKcs::Bytes rest = input.part();
    answer.insert(answer.end(), rest.begin(), rest.end());
    return answer;
}

void exchange(unsigned choice)
{
    const std::uint8_t data[] = {0x12, 0x34};
    const std::uint8_t target = choice & BRIDGED ? 0xC0 : 0x20;
    const BMC_REQUEST request{target, 0x01, 0x06, 0, sizeof data, data};
    const auto response = std::make_unique<BMC_RESPONSE>();
    if ((choice & BY_HAND) == BY_HAND) {
        SendMessagePX_Linux(&request, response.get(), 0, target);
        SendMessage_Linux(&request, response.get(), 0, target);
        return;
    }
    const auto count = transport::sendRequest(request, *response, 1);
    require(!count || *count <= transport::maxResponseData);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    World world(input);
    world.clock.perReading = std::chrono::milliseconds(500);
    const std::uint8_t choice = input.byte(), faults = input.byte();
    FakeKcs machine;
    makeFaulty(machine, faults);
    machine.attention = (choice & ATTENTION) != 0;
    machine.answer = [&](const FakeKcs::Bytes& frame) { return answerTo(frame, input); };
    InputPorts raw(input);
    FakeAlarm alarm;
    alarm.patience = 5;
    const ScopedSeam<transport::Alarm> useAlarm(alarm);
    const ScopedSeam<transport::PortIo> usePorts(choice & SOUND_MACHINE ? static_cast<transport::PortIo&>(machine)
                                                                        : raw);
    exchange(choice);
    return 0;
}

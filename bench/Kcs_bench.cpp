// Exchanges over bare KCS ports whose controller takes its time: what they cost the processor. Arguments: milliseconds
// an answer; whether waits sleep (the practical mode). A look at a port takes the microsecond of a slow bus.

#include "common/Policy.hpp"
#include "tests/transport/FakeKcs.hpp"
#include "transport/Kcs.hpp"

#include <benchmark/benchmark.h>

#include <array>
#include <chrono>

namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

class SlowPorts : public FakeKcs {
public:
    explicit SlowPorts(std::chrono::milliseconds taken)
    {
        answer = [this, taken](const Bytes& frame) {
            readyAt = SteadyClock::now() + taken;
            return Bytes{static_cast<std::uint8_t>(frame[0] | 4), frame[1], 0, 0x42};
        };
    }

    std::uint8_t in(std::uint16_t port) override
    {
        const auto asked = SteadyClock::now();
        while (SteadyClock::now() - asked < 1us) {
        }
        ++looksInAll;
        return asked < readyAt ? transport::kcsIbf : FakeKcs::in(port);
    }

    int looksInAll = 0;

private:
    SteadyClock::time_point readyAt{};
};

void BM_KcsExchange(benchmark::State& state)
{
    SlowPorts ports(std::chrono::milliseconds(state.range(0)));
    const ScopedSeam<transport::PortIo> usePorts(ports);
    const common::ScopedPolicy policy({.sleepsInPortWaits = state.range(1) != 0});
    const std::array<unsigned char, 2> request{0x18, 0x01};
    std::array<unsigned char, 64> buffer{};
    unsigned count = 0;
    for (auto _ : state)
        if (KCSSendMessage(request.data(), request.size()) != transport::kcsDone ||
            KCSReadBMCData(buffer.data(), buffer.size(), &count) != transport::kcsDone || count != 4)
            state.SkipWithError("no answer");
    state.counters["looks"] = benchmark::Counter(ports.looksInAll, benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_KcsExchange)
    ->ArgsProduct({{20, 100, 1000}, {0, 1}})
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace

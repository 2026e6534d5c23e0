// Polls of the event log as the agent makes them, exchanges answered in process: one that finds nothing new, and ones
// that bring new records. "exchanges" is what a poll costs of them.

#include "bench/BenchBmc.hpp"
#include "ipmi/SelView.hpp"
#include "modules/System.hpp"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

namespace {

constexpr unsigned sensors = 100;
constexpr unsigned char locksOnLogOff = 33;

/// A log of events of all sensors, whose last record has the id `last`.
IpmiAnswer readEntry(const IpmiRequest& request, unsigned last)
{
    const auto low = [](unsigned value) { return static_cast<std::uint8_t>(value); };
    const unsigned id = request.data[2] + 256U * request.data[3];
    const unsigned next = id == last ? ipmi::lastSelId : id + 1;
    const std::uint8_t sensor = low(1 + id % sensors), type = low(1 + sensor % 4);
    return {0, low(next), low(next >> 8), low(id), low(id >> 8), 2,    low(id), 0, 0, 0x60, 0x20, 0,
            4, type,      sensor,         1,       0x57,         0x5A, 0x50};
}

void BM_SelPoll(benchmark::State& state)
{
    const unsigned mark = 100, newRecords = static_cast<unsigned>(state.range(0));
    setenv("HRS_PATH_QL", HWAGENT_TRANSLATIONS, 1);
    BenchBmc bmc(sensors);
    bmc.on(0x0A, 0x43, [=](const IpmiRequest& request) { return readEntry(request, mark + newRecords); });
    SDK::System system;
    system.SetFlags(locksOnLogOff);
    const SDK::QueryMap poll = {{"/BMC/SEL/TRANSLATED", {{"RECORD_ID", "64"}, {"RANGE", "3000"}}}};
    std::size_t exchanges = 0;
    const auto ask = [&] {
        SDK::QueryMap queries = poll;
        ResultMap results;
        system.Get(queries, results);
        benchmark::DoNotOptimize(results);
        exchanges = bmc.takeExchanges();
    };
    ask(); // the translation files and the sensors' records are read once a process
    for (auto _ : state)
        ask();
    state.counters["exchanges"] = static_cast<double>(exchanges);
}
BENCHMARK(BM_SelPoll)->Arg(0)->Arg(10)->Arg(1000)->Unit(benchmark::kMicrosecond);

} // namespace

// Start-up of the sensor groups on a board of 100 analog sensors: repository, thresholds, first readings. Exchanges are
// answered in process and locks are off, so the time is the engine's and the client's own.

#include "bench/BenchBmc.hpp"
#include "client/groups/clThresholdProbes.hpp"
#include "client/query/QLInterface.hpp"
#include "client/words/Trace.hpp"
#include "modules/System.hpp"
#include "modules/bmc/subjects/Cache.hpp"

#include <benchmark/benchmark.h>

namespace {

constexpr unsigned sensors = 100;
constexpr unsigned char logOff = 32;

/// Exchanges that the design asks for: one reservation, a header and the body's 16-byte pieces a record, thresholds
/// once for each of the six bounds a sensor has, and one reading.
constexpr std::size_t requiredExchanges(std::size_t bodyLength)
{
    constexpr std::size_t piece = 16;
    return 1 + sensors * (1 + (bodyLength + piece - 1) / piece + 6 + 1);
}

void readAllGroups()
{
    temperatureProbe().init();
    voltageProbe().init();
    currentProbe().init();
    coolingDevice().init();
}

void BM_FirstFillOfHundredSensors(benchmark::State& state)
{
    BenchBmc bmc(sensors);
    SDK::System().SetFlags(logOff);
    client::words::traceWanted = false;
    InitQL();
    SDK::System().SetFlags(logOff);
    std::size_t exchanges = 0;
    for (auto _ : state) {
        Module::BMCConfig::Cache::instance().Clear();
        {
            const std::scoped_lock lock(ql_initialized_flag_mtx);
            cache_map.clear();
        }
        readAllGroups();
        exchanges = bmc.takeExchanges();
    }
    state.counters["exchanges"] = static_cast<double>(exchanges);
    state.counters["required"] = static_cast<double>(requiredExchanges(48 - 5 + 10));
    state.counters["cpu_per_exchange"] = benchmark::Counter(
        static_cast<double>(exchanges), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_FirstFillOfHundredSensors)->Unit(benchmark::kMillisecond);

} // namespace

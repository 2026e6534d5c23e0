// What one query costs in the engine, exchanges answered in process. "locks" says how many named locks it takes: each
// is a semaphore made and unlinked, whose cost BM_NamedLock gives.

#include "bench/BenchBmc.hpp"
#include "common/CMySemLock.hpp"
#include "modules/System.hpp"
#include "modules/bmc/BMCConfigModule.hpp"
#include "modules/bmc/catalogue/Catalogue.hpp"

#include <malloc.h>

#include <benchmark/benchmark.h>

namespace {

constexpr unsigned char logOff = 32;
constexpr unsigned char locksOnLogOff = 33;

void BM_NamedLock(benchmark::State& state)
{
    Common::CMySemLock::SetThreadFlag(true);
    for (auto _ : state)
        const Common::NamedLock lock("BENCH_LOCK");
}
BENCHMARK(BM_NamedLock);

void runVersionQuery(benchmark::State& state, unsigned char flags)
{
    BenchBmc bmc(1);
    SDK::System system;
    system.SetFlags(flags);
    ResultMap results;
    for (auto _ : state) {
        system.Get("/BMC/INFO/VERSION", results);
        bmc.requests.clear();
    }
}

void BM_VersionQueryWithoutLocks(benchmark::State& state)
{
    runVersionQuery(state, logOff);
}
BENCHMARK(BM_VersionQueryWithoutLocks);

void BM_VersionQueryAsInService(benchmark::State& state)
{
    runVersionQuery(state, locksOnLogOff);
}
BENCHMARK(BM_VersionQueryAsInService);

/// The same script on a part of the catalogue and on all of it: the cost may not grow with the size.
void BM_VersionQueryByCatalogue(benchmark::State& state)
{
    using namespace Module::BMCConfig;
    BenchBmc bmc(1);
    SDK::System().SetFlags(logOff);
    const unsigned long mask =
        state.range(0) ? 0UL : static_cast<unsigned long>(BMC_CONFIG | IPMI_CONFIG | INFO_CONFIG);
    state.counters["templates"] = static_cast<double>(catalogue(mask, true)->templates.size());
    ResultMap results;
    for (auto _ : state) {
        BMCConfigModule(mask).Process("/BMC/INFO/VERSION", results);
        bmc.requests.clear();
    }
}
BENCHMARK(BM_VersionQueryByCatalogue)->Arg(0)->Arg(1);

/// All of the catalogue, and what it takes in memory: a bit that no class has makes a mask that was not built yet.
void BM_CatalogueBuilt(benchmark::State& state)
{
    using namespace Module::BMCConfig;
    unsigned long unused = 1UL << 62;
    const std::size_t before = mallinfo2().uordblks;
    for (auto _ : state) {
        benchmark::DoNotOptimize(catalogue(wholeCatalogue & ~unused, true));
        unused >>= 1;
    }
    state.counters["bytes"] =
        static_cast<double>(mallinfo2().uordblks - before) / static_cast<double>(state.iterations());
}
BENCHMARK(BM_CatalogueBuilt)->Iterations(20)->Unit(benchmark::kMillisecond);

} // namespace

#include "translator/TranslatorImpl.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace {

using Record = std::array<unsigned char, 16>;

/// A voltage of the BMC, sensor 5.
std::vector<std::uint8_t> voltageSdr()
{
    std::vector<std::uint8_t> sdr(64);
    sdr[3] = 0x01;
    sdr[5] = 0x20;
    sdr[7] = 0x05;
    sdr[21] = 0x04;
    sdr[24] = 25;
    sdr[29] = 0xD0;
    sdr[47] = 0xC3;
    std::ranges::copy(std::string_view("P5V"), sdr.begin() + 48);
    return sdr;
}

Record recordOf(unsigned char sensorType, unsigned char eventType, unsigned char event1)
{
    return {0x01, 0x00, 0x02,       0x0D, 0x0C,      0x0B,   0x4A, 0x20,
            0x00, 0x04, sensorType, 0x05, eventType, event1, 0x23, 0x14};
}

void runRecord(benchmark::State& state, const Record& record)
{
    TranslatorImpl translator(HWAGENT_TRANSLATIONS "hrs_enu.ini", "", true);
    translator.setPlatformID(0x28);
    translator.setSDRRepository({voltageSdr()});
    for (auto _ : state)
        benchmark::DoNotOptimize(translator.translate(record.data(), record.size()));
    state.SetItemsProcessed(state.iterations());
}

void TranslateThreshold(benchmark::State& state)
{
    runRecord(state, recordOf(0x02, 0x01, 0x52));
}
BENCHMARK(TranslateThreshold);

void TranslateMemoryError(benchmark::State& state)
{
    runRecord(state, recordOf(0x0C, 0x6F, 0x20));
}
BENCHMARK(TranslateMemoryError);

void TranslateRedundancy(benchmark::State& state)
{
    runRecord(state, recordOf(0x09, 0x0B, 0x01));
}
BENCHMARK(TranslateRedundancy);

void LoadTranslationFile(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(TranslationFile(HWAGENT_TRANSLATIONS "hrs_enu.ini", ""));
}
BENCHMARK(LoadTranslationFile)->Unit(benchmark::kMillisecond);

} // namespace

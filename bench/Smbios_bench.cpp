// Firmware tables: a table of 64 KB and 300 structures, found, checked and read into all its values, and a query on it.

#include "protocol/SMBIOSProtocolImpl.hpp"
#include "tests/support/SmbiosImage.hpp"

#include <benchmark/benchmark.h>

namespace {

using Protocol::SMBIOS::SMBIOSProtocolImpl;

constexpr unsigned structures = 300;
constexpr std::size_t tableBytes = 64 * 1000; // what the entry point's 16-bit length can say, less a structure

/// A chassis, a memory array, and memory devices with long strings until table and count are full.
SmbiosImage fullImage()
{
    SmbiosImage image(2, 7);
    image.add(3, SmbiosImage::Body().text("Maker").byte(0x17).text("R1").text("S1").text("T1").bytes({3, 3, 3, 3}));
    const unsigned array = image.add(16, SmbiosImage::Body().bytes({3, 3, 6}).dword(0x1000000).word(0xFFFE).word(250));
    while (image.count < structures) {
        const std::size_t left = (tableBytes - image.table.size()) / (structures - image.count);
        const std::string text(left > 120 ? (left - 60) / 4 : 15, 'x');
        image.add(17, SmbiosImage::Body()
                          .word(array)
                          .word(0xFFFE)
                          .word(72)
                          .word(64)
                          .word(8192)
                          .bytes({9, 0})
                          .text(text)
                          .text(text)
                          .byte(0x18)
                          .word(0x80)
                          .word(1600)
                          .text(text)
                          .text(text));
    }
    return image;
}

void BM_SmbiosTableIntoValues(benchmark::State& state)
{
    TempRoot root;
    const SmbiosImage image = fullImage();
    image.place(root);
    state.counters["bytes"] = static_cast<double>(image.table.size());
    state.counters["structures"] = image.count;
    for (auto _ : state) {
        SMBIOSProtocolImpl::DeleteInstance();
        benchmark::DoNotOptimize(SMBIOSProtocolImpl::CreateInstance());
    }
    SMBIOSProtocolImpl::DeleteInstance();
}
BENCHMARK(BM_SmbiosTableIntoValues)->Unit(benchmark::kMillisecond);

void BM_SmbiosQuery(benchmark::State& state)
{
    TempRoot root;
    fullImage().place(root);
    SMBIOSProtocolImpl::DeleteInstance();
    const auto tables = SMBIOSProtocolImpl::CreateInstance();
    for (auto _ : state) {
        ResultMap results;
        tables->SMBiosSearch("/SMBIOS/Type3", results);
        benchmark::DoNotOptimize(results);
    }
    SMBIOSProtocolImpl::DeleteInstance();
}
BENCHMARK(BM_SmbiosQuery);

} // namespace

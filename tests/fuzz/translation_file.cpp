#include "common/ResultStatus.hpp"
#include "tests/fuzz/MemoryFile.hpp"
#include "tests/translator/TranslatorSupport.hpp"

// A translation file, and texts made with it for an event of each kind.

namespace {

constexpr Event events[] = {
    {.sensorType = 0x02, .eventType = 0x01, .event1 = 0x57, .event2 = 0x80, .event3 = 0x7F},
    {.sensorType = 0x02, .eventType = 0x03, .event1 = 0x01, .deasserted = true},
    {.sensorType = 0x07, .event1 = 0x07},
    {.sensorType = 0x0C, .event1 = 0xA1, .event2 = 0x10, .event3 = 0x0F},
    {.sensorType = 0x23, .event1 = 0xC1, .event2 = 0x24},
    {.sensorType = 0xDC, .eventType = 0x70, .event1 = 0x0F},
    {.recordType = 0xC0},
    {.sensorType = 0x0C, .recordType = 0xE0},
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const unsigned platform = input.byte();
    const MemoryFile file(input.restAsText());
    TranslatorImpl translator(file.path().c_str(), "", true);
    translator.setPlatformID(static_cast<unsigned short>(platform));
    translator.setSDRRepository({voltageSdr()});
    for (const Event& event : events)
        failureOf([&] { translated(translator, event); });
    return 0;
}

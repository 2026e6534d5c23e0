#include "tests/fuzz/World.hpp"

#include "ipmi/Hex.hpp"
#include "translator/TranslatorImpl.hpp"
#include "translator/WideText.hpp"

#include <cstdlib>

// Records of the event log into text: by the shipped files for the platforms that they know, beside a sensor record
// that is part of the input, and as the hexadecimal text that programs hand in.

namespace {

constexpr std::uint16_t platforms[] = {40, 58, 62, 90, 0x4311, 65535};

class Files {
public:
    Files() { setenv("HRS_PATH_QL", HWAGENT_TRANSLATIONS, 1); }

    TranslatorImpl& choose(unsigned number) { return *files[number % std::size(files)]; }

private:
    TranslatorImpl english{HWAGENT_TRANSLATIONS "hrs_enu.ini", "", true};
    TranslatorImpl german{HWAGENT_TRANSLATIONS "hrs_enu.ini", "de_DE.utf8", true};
    TranslatorImpl alder{HWAGENT_TRANSLATIONS "hrs_alder.ini", "", true};
    TranslatorImpl* const files[3] = {&english, &german, &alder};
};

void translate(Translator& file, const Input::Bytes& record)
{
    constexpr std::size_t standard = 16;
    if (record.size() < standard)
        return;
    try {
        require(file.translate(record.data(), record.size()) == file.getDescription());
    } catch (const ResultStatus&) { // an event that the file does not know
    }
    for (const std::wstring* text : {&file.getEventSeverity(), &file.getSensorName(), &file.getSensorType(),
                                     &file.getGenerator(), &file.getTimeStamp()})
        translator::narrowText(*text);
    file.getVoltageFaultSensorOffset(record.data(), record.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Files files;
    Input input(data, size);
    World world(input);
    const std::uint8_t choice = input.byte();
    Translator& file = files.choose(choice);
    file.setPlatformID(platforms[choice / 3 % std::size(platforms)]);
    file.setSDRRepository({input.part()});
    const std::string given = input.text(choice >> 5);
    file.setSensorName(given.c_str());
    const Input::Bytes record = input.part();
    translate(file, record);

    std::string text = input.restAsText();
    if (text.empty())
        text = record.empty() ? "-" : ipmi::hexBytes(record);
    world.ask("/BMC/SEL/TRANSLATED", {{"/SEL/RAW_SEL_RECORD", text}, {"/SEL/LOCALE", "de_DE.utf8"}});
    return 0;
}

#pragma once

#include "ipmi/Hex.hpp"
#include "tests/support/Failure.hpp"
#include "tests/support/TempRoot.hpp"
#include "tests/support/TextTable.hpp"
#include "translator/TranslatorImpl.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

/// The fields of a system event record that matter here; the sensor is number 5 of the BMC.
struct Event {
    int sensorType = 0;
    int eventType = 0x6F;
    int event1 = 0;
    int event2 = 0xFF;
    int event3 = 0xFF;
    bool deasserted = false;
    int recordType = 0x02;

    std::array<unsigned char, 16> record() const
    {
        std::array<unsigned char, 16> bytes{0x01, 0x00, 0x02, 0x0D, 0x0C, 0x0B, 0x4A, 0x20, 0x00, 0x04, 0, 0x05};
        const std::pair<std::size_t, int> fields[] = {
            {2, recordType}, {10, sensorType}, {12, eventType | (deasserted ? 0x80 : 0)},
            {13, event1},    {14, event2},     {15, event3}};
        for (const auto& [place, value] : fields)
            bytes[place] = static_cast<unsigned char>(value);
        return bytes;
    }
};

/// The event of these bytes: sensor type, event type with its direction, event data (FFh where they end), record type.
inline Event eventOf(const std::string& hex)
{
    std::vector<std::uint8_t> bytes = ipmi::parseBytes(hex);
    bytes.resize(std::max<std::size_t>(bytes.size(), 3));
    bytes.resize(std::max<std::size_t>(bytes.size(), 5), 0xFF);
    return {bytes[0], bytes[1] & 0x7F, bytes[2], bytes[3], bytes[4], bytes[1] > 0x7F, bytes.size() > 5 ? bytes[5] : 2};
}

inline std::wstring translated(Translator& translator, const Event& event)
{
    const auto record = event.record();
    return translator.translate(record.data(), record.size());
}

/// A full record of sensor 5, a voltage of the BMC: value = (25 raw - 7) / 1000, called "P5V".
inline std::vector<std::uint8_t> voltageSdr()
{
    auto sdr =
        ipmi::parseBytes("00 00 00 01 00 20 00 05 00 00 00 00 02 00 00 00 00 00 00 00 00 04 00 00 19 00 F9 C0 00 D0");
    sdr.resize(47);
    sdr.insert(sdr.end(), {0xC3, 'P', '5', 'V'}); // B is -7 in ten bits, the result's exponent -3
    return sdr;
}

#pragma once

#include "tests/support/Failure.hpp"
#include "tests/support/TempRoot.hpp"
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
        const int direction = deasserted ? 0x80 : 0;
        bytes[2] = static_cast<unsigned char>(recordType);
        bytes[10] = static_cast<unsigned char>(sensorType);
        bytes[12] = static_cast<unsigned char>(eventType | direction);
        bytes[13] = static_cast<unsigned char>(event1);
        bytes[14] = static_cast<unsigned char>(event2);
        bytes[15] = static_cast<unsigned char>(event3);
        return bytes;
    }
};

inline std::wstring translated(Translator& translator, const Event& event)
{
    const auto record = event.record();
    return translator.translate(record.data(), record.size());
}

/// A full record of sensor 5, a voltage of the BMC: value = (25 raw - 7) / 1000, called "P5V".
inline std::vector<std::uint8_t> voltageSdr()
{
    std::vector<std::uint8_t> sdr(51);
    sdr[3] = 0x01;
    sdr[5] = 0x20;
    sdr[7] = 0x05;
    sdr[12] = 0x02;
    sdr[21] = 0x04;
    sdr[24] = 25;
    sdr[26] = 0xF9; // B = -7, ten bits of two's complement
    sdr[27] = 0xC0;
    sdr[29] = 0xD0; // result exponent -3
    sdr[47] = 0xC3;
    std::ranges::copy(std::string_view("P5V"), sdr.begin() + 48);
    return sdr;
}

#pragma once

#include <array>
#include <cstdint>
#include <string>

/// A sensor data record (IPMI 2.0, 43), of which the first 64 bytes are kept.
class SDREntry {
public:
    static constexpr int notIndexable = -1; ///< FFFFFFFFh: no sensor of its own stands behind the record
    static constexpr std::size_t keptLength = 64;

    SDREntry() = default;
    /// Copies at most 64 bytes of `record`; what is missing of them reads as 0.
    SDREntry(const unsigned char* record, int length);

    std::uint8_t getRecordType() const { return bytes[3]; }
    std::uint8_t getSensorNumber() const { return bytes[7]; }
    std::uint8_t getEntityID() const { return bytes[8]; }
    std::uint8_t getEntityInstance() const { return bytes[9]; }
    /// Owner id, owner channel and LUN, and sensor number in one number; that of SELEntry for the same sensor.
    int getIndex() const;
    /// True for a full record whose reading converts by its factors.
    bool isLinear() const;
    /// Writes M, B, K1 (exponent of B) and K2 (exponent of the result) of a full record to factors[0..3].
    void getConversionFactors(short* factors) const;
    /// The sensor's name, empty without one.
    std::wstring getIDString() const;

    /// Byte 20: data format, rate, modifier use, percentage; bytes 21 and 22: unit codes.
    std::uint8_t unitFlags() const { return bytes[20]; }
    std::uint8_t baseUnit() const { return bytes[21]; }
    std::uint8_t modifierUnit() const { return bytes[22]; }
    std::uint8_t linearization() const { return bytes[23] & 0x7F; }

    bool operator==(const SDREntry& other) const { return getIndex() == other.getIndex(); }

private:
    std::array<std::uint8_t, keptLength> bytes{};
};

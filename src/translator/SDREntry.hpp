#pragma once

#include "ipmi/SdrView.hpp"

#include <array>
#include <string>

/// A sensor data record (IPMI 2.0, 43), of which the first 64 bytes are kept.
class SDREntry {
public:
    static constexpr int notIndexable = -1; ///< FFFFFFFFh: no sensor of its own stands behind the record
    static constexpr std::size_t keptLength = 64;

    SDREntry() = default;
    /// Copies at most 64 bytes of `record`; what is missing of them reads as 0.
    SDREntry(const unsigned char* record, int length);

    /// The record's fields; the view holds for the life of the entry.
    ipmi::SdrView view() const { return ipmi::SdrView(bytes); }
    std::uint8_t getSensorNumber() const { return view().number(); }
    std::uint8_t getEntityID() const { return view().entityId(); }
    std::uint8_t getEntityInstance() const { return view().entityInstance(); }
    /// Owner id, owner channel and LUN, and sensor number in one number; that of SELEntry for the same sensor.
    int getIndex() const;
    /// True for a full record whose reading converts by its factors.
    bool isLinear() const { return view().isLinear(); }
    /// Writes M, B, K1 (exponent of B) and K2 (exponent of the result) of a full record to factors[0..3].
    void getConversionFactors(short* factors) const;
    /// The sensor's name, empty without one.
    std::wstring getIDString() const;

    bool operator==(const SDREntry& other) const { return getIndex() == other.getIndex(); }

private:
    std::array<std::uint8_t, keptLength> bytes{};
};

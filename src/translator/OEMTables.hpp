#pragma once

#include "translator/EventTable.hpp"

#include <array>
#include <span>
#include <vector>

namespace translator {

constexpr std::size_t oemTimeByteCount = 6;     ///< behind the manufacturer id of a timestamped OEM record
constexpr std::size_t oemNonTimeByteCount = 13; ///< of an OEM record without a time

/// An OEM record of a translation file; a byte of FFh stands for any.
template<std::size_t Count>
struct OemRecord {
    std::array<std::uint8_t, Count> bytes{};
    std::uint8_t recommendAction = anyByte;
    std::wstring translation;

    bool matches(std::span<const std::uint8_t, Count> record) const
    {
        for (std::size_t i = 0; i < Count; ++i)
            if (bytes[i] != anyByte && bytes[i] != record[i])
                return false;
        return !translation.empty();
    }
};

} // namespace translator

using oemTime = translator::OemRecord<translator::oemTimeByteCount>;
using oemNonTime = translator::OemRecord<translator::oemNonTimeByteCount>;

/// Timestamped OEM records (types C0h to DFh) by manufacturer id and bytes; of several that match, the first added,
/// those of `anyManufacturer` last.
class OEMTSTable {
public:
    static constexpr std::uint32_t anyManufacturer = 0xFFFFFF;

    void add(std::uint32_t manufacturer, oemTime record);
    /// OEMTableError without one.
    const oemTime& findTranslation(std::uint32_t manufacturer,
                                   std::span<const std::uint8_t, translator::oemTimeByteCount> bytes) const;

private:
    const oemTime* find(std::uint32_t manufacturer,
                        std::span<const std::uint8_t, translator::oemTimeByteCount> bytes) const;

    std::unordered_map<std::uint32_t, std::vector<oemTime>> records;
};

/// OEM records without a time (types E0h to FFh) by their bytes; of several that match, the first added.
class OEMNonTSTable {
public:
    void add(oemNonTime record);
    /// OEMTableError without one.
    const oemNonTime& findTranslation(std::span<const std::uint8_t, translator::oemNonTimeByteCount> bytes) const;

private:
    std::vector<oemNonTime> records;
};

#pragma once

#include "modules/bmc/engine/Handler.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Module::BMCConfig {

/// Keys of the engine's cache under which the sensor data records live.
inline const std::string sdrListKey = "GET://BMC/SDR";
inline const std::string sdrCountKey = "GET://BMC/SDR/NUMBER";
/// Marks the cached records as those that the decoded repository was made from; cleared with each reading.
inline const std::string sdrStampKey = "GET://BMC/SDR/STAMP";

/// "SDR[n]" as a path, and the key of its record.
std::string sdrPath(std::size_t number);
std::string sdrKey(std::size_t number);

/// Bytes of a record that any reader names (IPMI 2.0, 43), counted from 0.
namespace SdrByte {
inline constexpr std::size_t version = 2, recordType = 3, length = 4, owner = 5, lun = 6, sensorNumber = 7,
                             entityId = 8, entityInstance = 9, eventOnlySensorType = 10, sensorType = 12,
                             readingType = 13, mask1 = 18, mask2 = 19, units1 = 20, baseUnit = 21, modifierUnit = 22,
                             linearisation = 23, m = 24, mTolerance = 25, b = 26, bAccuracy = 27, accuracy = 28,
                             exponents = 29;
} // namespace SdrByte

enum SdrRecordType : int { SDR_FULL = 1, SDR_COMPACT = 2, SDR_EVENT_ONLY = 3 };

/// One record, decoded once for all queries.
struct SdrRecord {
    std::string text; ///< as it is cached: two-digit hexadecimal, a blank in front of each byte
    std::vector<std::uint8_t> bytes;

    bool has(std::size_t index) const { return index < bytes.size(); }
    /// The byte at `index`, -1 past the end.
    int at(std::size_t index) const { return has(index) ? bytes[index] : -1; }
    /// True for full, compact and event-only records, which alone have an owner, a LUN and a sensor number.
    bool isSensor() const;
    /// The sensor type, from the byte where the record's type has it; -1 without one.
    int sensorType() const;
};

/// The cached records, decoded. Never changes once made; record n of the cache is at n - 1.
struct SdrRepository {
    std::string stamp;
    std::vector<SdrRecord> records;

    /// Record number `number`, null if there is none.
    const SdrRecord* record(std::size_t number) const;

    /// The repository that stands for what the cache holds now, null if the cache holds no records. Costs one look into
    /// the cache when nothing has changed.
    static std::shared_ptr<const SdrRepository> current(_BMC_EXEC exec);
};

} // namespace Module::BMCConfig

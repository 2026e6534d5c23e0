#pragma once

#include "ipmi/SdrView.hpp"
#include "modules/bmc/engine/Handler.hpp"

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

/// One record, decoded once for all queries.
struct SdrRecord {
    std::string text; ///< as it is cached: two-digit hexadecimal, a blank in front of each byte
    ipmi::Bytes bytes;

    /// The record's fields; the view holds as long as the record.
    ipmi::SdrView view() const { return ipmi::SdrView(bytes); }
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

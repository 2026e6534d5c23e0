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

/// What else is remembered of a reading: the size of pieces that the controller took; the state in which the repository
/// was (see SdrState.hpp); before when one that could not be read, or not as a whole, is left alone, in nanoseconds of
/// the steady clock; whether the next query reads it anew; and whether a part has been read and the rest is to follow.
inline const std::string sdrPieceKey = "GET://BMC/SDR/PIECE";
inline const std::string sdrMarkKey = "GET://BMC/SDR/MARK";
inline const std::string sdrRetryKey = "GET://BMC/SDR/RETRY";
inline const std::string sdrAnewKey = "GET://BMC/SDR/ANEW";
inline const std::string sdrWalkKey = "GET://BMC/SDR/WALK";

/// Whether a moment that sdrRetryKey names has come.
bool hasCome(const std::string& moment);

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

    /// Whether the controller has another repository than the cached one, or the rest of it may be had by now (an
    /// exchange; Policy::followsRepository). The next query reads it anew then; should that fail, the cached one stands
    /// and this is true again a while later. Never for a controller that keeps no time stamps. Throws ResultStatus.
    static bool changed(_BMC_EXEC exec);
};

} // namespace Module::BMCConfig

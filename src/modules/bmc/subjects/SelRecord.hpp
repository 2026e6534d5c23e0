#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace Module::BMCConfig {

/// Bytes of an event record (IPMI 2.0, 32), counted from 0.
namespace SelByte {
inline constexpr std::size_t idLow = 0, idHigh = 1, recordType = 2, time = 3, generator = 7, channelAndLun = 8,
                             sensorNumber = 11;
} // namespace SelByte

/// Record types: below the first are system events, from the second on records without a time.
inline constexpr std::uint8_t firstOemType = 0xC0, firstTimelessType = 0xE0;

/// Ids with a meaning of their own (IPMI 2.0, 31.5): the log's first record, and its last one or, as the id of a next
/// record, the end.
inline constexpr unsigned firstSelId = 0, lastSelId = 0xFFFF;

/// One record of the log, with the id of the one behind it.
struct SelRecord {
    static constexpr std::size_t size = 16; ///< of a standard record; an extended one is longer

    unsigned next = lastSelId;
    std::vector<std::uint8_t> bytes; ///< at least `size`

    unsigned id() const { return bytes[SelByte::idLow] | static_cast<unsigned>(bytes[SelByte::idHigh]) << 8; }
    std::uint8_t type() const { return bytes[SelByte::recordType]; }
    /// Seconds since 1970; all ones, the unspecified time, for a record that has none.
    std::uint32_t seconds() const;
    std::span<const std::uint8_t> standard() const { return std::span(bytes).first(size); }

    /// The bytes as two-digit hexadecimal text with a blank between them.
    static std::string text(std::span<const std::uint8_t> bytes);
    /// A record from such text, nothing if it holds anything else or fewer bytes than a record has.
    static std::optional<SelRecord> parse(const std::string& text);
};

/// The number in `count` bytes, the least significant first.
std::uint32_t littleEndian(std::span<const std::uint8_t> bytes);
/// "%02X%02X", the high byte first.
std::string selIdText(unsigned id);

/// Up to four hexadecimal digits as a record id, 0 for none; anything else throws ResultStatus 1089.
unsigned parseSelId(const std::string& text);

} // namespace Module::BMCConfig

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

/// Pure decoders of FRU inventory data (Platform Management FRU Information Storage Definition 1.3). Lengths are those
/// of the spans; what the bytes claim is believed only within them.
namespace Module::BMCConfig {

enum class FruArea { Chassis, Board, Product };

inline constexpr std::size_t fruAreaCount = 3, fruHeaderSize = 8;
/// Every area is a multiple of this long, in bytes, and begins at one.
inline constexpr std::size_t fruAreaUnit = 8;

/// Where the areas begin, in bytes, by FruArea; 0 for an area that is not there. A header that is short, of another
/// version or with a wrong checksum names no areas.
std::array<std::size_t, fruAreaCount> fruAreaOffsets(std::span<const std::uint8_t> header);

/// The length in bytes that an area claims for itself; 0 if `start`, its first bytes, is short or of another version.
std::size_t fruAreaLength(std::span<const std::uint8_t> start);

/// Name and text of each field in the area's order: first all fields that the definition names, then those of the
/// maker as "CUSTOM_FIELD[1]" and so on. Of an area that is short or fails its checksum no byte is trusted: all texts
/// are empty. A field that runs past the area ends it; it and what would follow are empty.
std::vector<std::pair<std::string, std::string>> decodeFruArea(FruArea kind, std::span<const std::uint8_t> area);

/// The text of a field in UTF-8, by the two type bits of its type/length byte; binary ones as hexadecimal.
/// `english`: codes are Latin-1, not 16 bits of Unicode. Padding at the end is cut off.
std::string fruText(std::uint8_t typeLength, std::span<const std::uint8_t> bytes, bool english);

} // namespace Module::BMCConfig

#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace common {

/// One structure of the firmware's SMBIOS table (DSP0134, 6.1).
struct SmbiosStructure {
    std::span<const std::uint8_t> formatted; ///< the formatted area, its header of four bytes included
    std::span<const std::uint8_t> strings;   ///< each string with its zero; empty without strings
};

/// Type, length and handle in front of every structure (DSP0134, 6.1.2).
inline constexpr std::size_t smbiosHeader = 4;

/// Takes the structure in front of `table` off it, whatever its type. Its strings go to the first two zeros side by
/// side, also when the first string is empty; without these two they go to the end of the table. Nothing when the
/// structure is shorter than its header or reaches past the end.
std::optional<SmbiosStructure> takeSmbiosStructure(std::span<const std::uint8_t>& table);

} // namespace common

#pragma once

#include <cstdint>
#include <string>

/// Time stamps (IPMI 2.0, 37): seconds since 1970, in 32 bits.
namespace ipmi {

inline constexpr std::uint32_t unspecifiedTime = 0xFFFFFFFF;
/// Up to here a stamp counts the seconds since the controller's own start.
inline constexpr std::uint32_t lastPreInitTime = 0x20000000;
/// The start of the minutes in which a board's inventory dates its making: 1996 (FRU Storage Definition 1.0, 11).
inline constexpr std::int64_t fruEpoch = 820454400;

/// "%m/%d/%Y-%H:%M:%S" of a time in seconds since 1970, in UTC.
std::string dateAndTime(std::int64_t seconds);
/// The same of a stamp; those that are no time say so: "Invalid Time Stamp", "Pre-Init Time Stamp".
std::string timeStampText(std::uint32_t stamp);

} // namespace ipmi

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// Bytes of a message or record, and the ways in which IPMI makes numbers of them (IPMI 2.0, 1.6: the least significant
/// byte comes first).
namespace ipmi {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

/// The byte at `at`, 0 beyond the end: what a record does not have reads as nothing set.
constexpr std::uint8_t byteAt(ByteView bytes, std::size_t at)
{
    return at < bytes.size() ? bytes[at] : std::uint8_t{0};
}

/// The number in up to four bytes.
constexpr std::uint32_t littleEndian(ByteView bytes)
{
    std::uint32_t number = 0;
    for (std::size_t at = bytes.size(); at-- > 0;)
        number = number << 8 | bytes[at];
    return number;
}

/// The number in the two bytes from `at` on.
constexpr std::uint16_t wordAt(ByteView bytes, std::size_t at)
{
    return static_cast<std::uint16_t>(byteAt(bytes, at) | byteAt(bytes, at + 1) << 8);
}

/// The low `bits` of `value` as a number in two's complement.
constexpr int signExtend(unsigned value, unsigned bits)
{
    const unsigned sign = 1U << (bits - 1);
    return static_cast<int>(value & (sign - 1)) - static_cast<int>(value & sign);
}

} // namespace ipmi

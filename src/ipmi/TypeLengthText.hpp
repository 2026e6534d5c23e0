#pragma once

#include "ipmi/Bytes.hpp"

#include <string>
#include <string_view>

/// Fields of text with a type/length byte: names in sensor records (IPMI 2.0, 43.15) and fields of FRU inventory
/// (Platform Management FRU Information Storage Definition 1.0, 13).
namespace ipmi {

/// Bits 7 and 6 of the byte. In a sensor record `first` is Unicode and `last` 8-bit ASCII, in a FRU area `first` is
/// binary and `last` goes by the area's language.
enum class TextCoding : std::uint8_t { first, bcdPlus, sixBit, last };

struct TypeLengthText {
    TextCoding coding = TextCoding::last;
    ByteView bytes; ///< as many of the field's as there are
};

inline constexpr std::uint8_t sdrTextLength = 0x1F, fruTextLength = 0x3F; ///< bits of the byte that are the length
inline constexpr std::uint8_t endOfFruFields = 0xC1;

constexpr TextCoding codingOf(std::uint8_t typeLength)
{
    return static_cast<TextCoding>(typeLength >> 6);
}

/// The field that begins with its type/length byte at the head of `field`; nothing of an empty one.
TypeLengthText sdrText(ByteView field);

/// Characters of BCD plus by their code.
inline constexpr std::string_view bcdPlusCharacters = "0123456789 -.:,_";

/// Two characters a byte, the upper half first.
std::string bcdPlusText(ByteView bytes);
/// Four characters in three bytes, the first in the lowest bits; the codes run from the blank on.
std::string sixBitText(ByteView bytes);

} // namespace ipmi

#include "ipmi/TypeLengthText.hpp"

#include <algorithm>

namespace ipmi {

TypeLengthText sdrText(ByteView field)
{
    if (field.empty())
        return {};
    const std::size_t length = field[0] & sdrTextLength;
    return {codingOf(field[0]), field.subspan(1, std::min(length, field.size() - 1))};
}

std::string bcdPlusText(ByteView bytes)
{
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += bcdPlusCharacters[byte >> 4];
        text += bcdPlusCharacters[byte & 0x0F];
    }
    return text;
}

std::string sixBitText(ByteView bytes)
{
    std::string text;
    for (std::size_t bit = 0; bit + 6 <= bytes.size() * 8; bit += 6)
        text += static_cast<char>(' ' + (wordAt(bytes, bit / 8) >> bit % 8 & 0x3F));
    return text;
}

} // namespace ipmi

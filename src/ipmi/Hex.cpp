#include "ipmi/Hex.hpp"

#include <algorithm>
#include <cstdlib>

namespace ipmi {

namespace {

constexpr char digits[] = "0123456789ABCDEF";

void appendByte(std::string& text, std::uint8_t byte)
{
    text += digits[byte >> 4];
    text += digits[byte & 0x0F];
}

} // namespace

std::uint8_t parseByte(const std::string& hex)
{
    return static_cast<std::uint8_t>(std::strtoul(hex.c_str(), nullptr, 16));
}

std::string hexByte(std::uint8_t byte)
{
    std::string text;
    appendByte(text, byte);
    return text;
}

Bytes parseBytes(std::string_view text)
{
    Bytes bytes;
    bytes.reserve(text.size() / 3 + 1);
    for (std::size_t at = 0; (at = text.find_first_not_of(' ', at)) != std::string_view::npos;) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        bytes.push_back(parseByte(std::string(text.substr(at, end - at))));
        at = end;
    }
    return bytes;
}

Bytes parseBytes(std::span<const std::string> items)
{
    Bytes bytes(items.size());
    std::ranges::transform(items, bytes.begin(), parseByte);
    return bytes;
}

std::string hexBytes(ByteView bytes)
{
    std::string text;
    text.reserve(bytes.size() * 3);
    for (const std::uint8_t byte : bytes) {
        if (!text.empty())
            text += ' ';
        appendByte(text, byte);
    }
    return text;
}

} // namespace ipmi

#include "translator/SDREntry.hpp"

#include <algorithm>
#include <span>
#include <string_view>

namespace {

constexpr std::uint8_t fullRecord = 1;
constexpr unsigned firstNonLinear = 0x70;

/// Where the type and length byte of the id string stands in each type of record.
struct IdPlace {
    std::uint8_t recordType;
    std::uint8_t typeLength;
};
constexpr IdPlace idPlaces[] = {
    {0x01, 47}, {0x02, 31}, {0x03, 16}, {0x10, 15}, {0x11, 15}, {0x12, 15},
};

int signExtend(unsigned value, unsigned bits)
{
    const unsigned sign = 1u << (bits - 1);
    return static_cast<int>(value ^ sign) - static_cast<int>(sign);
}

/// UCS-2, the low byte of each character first.
std::wstring decodeUnicode(std::span<const std::uint8_t> text)
{
    std::wstring name;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2)
        name.push_back(static_cast<wchar_t>(text[i] | text[i + 1] << 8));
    return name;
}

std::wstring decodeBcdPlus(std::span<const std::uint8_t> text)
{
    constexpr std::wstring_view digits = L"0123456789 -.:,_";
    std::wstring name;
    for (const std::uint8_t byte : text) {
        name.push_back(digits[byte >> 4]);
        name.push_back(digits[byte & 15]);
    }
    return name;
}

/// Four characters in three bytes, the lowest bits first; 0 is the blank.
std::wstring decodeSixBit(std::span<const std::uint8_t> text)
{
    std::wstring name;
    unsigned bits = 0;
    unsigned count = 0;
    for (const std::uint8_t byte : text) {
        bits |= unsigned{byte} << count;
        count += 8;
        for (; count >= 6; count -= 6, bits >>= 6)
            name.push_back(static_cast<wchar_t>(L' ' + (bits & 0x3F)));
    }
    return name;
}

std::wstring decodeAscii(std::span<const std::uint8_t> text)
{
    return {text.begin(), text.end()};
}

} // namespace

SDREntry::SDREntry(const unsigned char* record, int length)
{
    if (record && length > 0)
        std::copy_n(record, std::min(static_cast<std::size_t>(length), keptLength), bytes.begin());
}

int SDREntry::getIndex() const
{
    if (bytes[5] == 0 && bytes[6] == 0 && bytes[12] == 0 && bytes[7] == 0)
        return notIndexable;
    return (bytes[5] * 256 + bytes[6]) * 256 + bytes[7];
}

bool SDREntry::isLinear() const
{
    return getRecordType() == fullRecord && linearization() < firstNonLinear;
}

void SDREntry::getConversionFactors(short* factors) const
{
    factors[0] = static_cast<short>(signExtend(bytes[24] | (bytes[25] & 0xC0u) << 2, 10));
    factors[1] = static_cast<short>(signExtend(bytes[26] | (bytes[27] & 0xC0u) << 2, 10));
    factors[2] = static_cast<short>(signExtend(bytes[29] & 0x0Fu, 4));
    factors[3] = static_cast<short>(signExtend(bytes[29] >> 4u, 4));
}

std::wstring SDREntry::getIDString() const
{
    const auto place = std::ranges::find(idPlaces, getRecordType(), &IdPlace::recordType);
    if (place == std::end(idPlaces))
        return {};
    const std::uint8_t typeLength = bytes[place->typeLength];
    const std::size_t start = place->typeLength + 1u;
    const std::span text =
        std::span(bytes).subspan(start, std::min<std::size_t>(typeLength & 0x1F, keptLength - start));
    constexpr std::wstring (*decoders[])(std::span<const std::uint8_t>){decodeUnicode, decodeBcdPlus, decodeSixBit,
                                                                        decodeAscii};
    std::wstring name = decoders[typeLength >> 6](text);
    return name.substr(0, name.find(L'\0'));
}

#include "modules/bmc/subjects/FruAreas.hpp"

#include "ipmi/Hex.hpp"
#include "ipmi/TimeStamp.hpp"
#include "ipmi/TypeLengthText.hpp"
#include "protocol/SmbiosWords.hpp"

#include <algorithm>
#include <numeric>
#include <optional>
#include <string_view>

namespace Module::BMCConfig {

namespace {

using Bytes = ipmi::ByteView;
using Fields = std::vector<std::pair<std::string, std::string>>;

constexpr std::uint8_t formatVersion = 1, formatVersionMask = 0x0F;
constexpr std::size_t chassisPointer = 2; ///< in the header; board and product follow

// Bytes of an area.
constexpr std::size_t lengthAt = 1, chassisTypeAt = 2, languageAt = 2, dateAt = 3, chassisHead = 3, boardHead = 6,
                      productHead = 3;

struct NamedField {
    std::string_view name;
    bool alwaysEnglish = false; ///< whatever the area's language
};

constexpr NamedField chassisFields[] = {{"PART_NUMBER"}, {"SERIAL_NUMBER"}};
constexpr NamedField boardFields[] = {
    {"MANUFACTURER"}, {"PRODUCT_NAME"}, {"SERIAL_NUMBER", true}, {"PART_NUMBER"}, {"FRU_FILE_ID", true},
};
constexpr NamedField productFields[] = {
    {"MANUFACTURER"},        {"PRODUCT_NAME"}, {"PART_NUMBER"},       {"VERSION"},
    {"SERIAL_NUMBER", true}, {"ASSET_TAG"},    {"FRU_FILE_ID", true},
};

std::uint8_t sumOf(Bytes bytes)
{
    return std::accumulate(bytes.begin(), bytes.end(), std::uint8_t{0},
                           [](std::uint8_t sum, std::uint8_t byte) { return static_cast<std::uint8_t>(sum + byte); });
}

bool hasKnownFormat(Bytes bytes)
{
    return !bytes.empty() && (bytes[0] & formatVersionMask) == formatVersion;
}

/// The area's own bytes; nothing if they are not all there or do not sum up.
std::optional<Bytes> soundArea(Bytes area)
{
    const std::size_t length = fruAreaLength(area);
    if (length == 0 || length > area.size() || sumOf(area.first(length)) != 0)
        return std::nullopt;
    return area.first(length);
}

bool isEnglish(std::uint8_t language)
{
    constexpr std::uint8_t unspecified = 0, english = 25;
    return language == unspecified || language == english;
}

void appendUtf8(std::string& text, char32_t code)
{
    const auto tail = [&](unsigned shift) { text += static_cast<char>(0x80 | (code >> shift & 0x3F)); };
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text += static_cast<char>(0xC0 | code >> 6);
        tail(0);
    } else if (code < 0x10000) {
        text += static_cast<char>(0xE0 | code >> 12);
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | code >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

/// Control characters would cut the text short, or garble the terminal of whoever reads it.
char32_t printable(char32_t code)
{
    return code < 0x20 || (code >= 0x7F && code < 0xA0) ? U' ' : code;
}

std::string latin1Text(Bytes bytes)
{
    std::string text;
    for (const std::uint8_t byte : bytes)
        appendUtf8(text, printable(byte));
    return text;
}

/// Sixteen-bit codes, low byte first; a surrogate without its other half becomes the replacement character.
std::string unicodeText(Bytes bytes)
{
    constexpr char32_t replacement = 0xFFFD, surrogate = 0xD800, low = 0xDC00, halfMask = 0xFC00, halfBits = 0x3FF;
    const auto unit = [&](std::size_t at) -> char32_t {
        return at + 1 < bytes.size() ? static_cast<char32_t>(bytes[at] | bytes[at + 1] << 8) : 0;
    };
    std::string text;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        char32_t code = unit(at);
        if ((code & halfMask) == surrogate && (unit(at + 2) & halfMask) == low) {
            code = 0x10000 + ((code & halfBits) << 10) + (unit(at + 2) & halfBits);
            at += 2;
        } else if ((code & halfMask) == surrogate || (code & halfMask) == low) {
            code = replacement;
        }
        appendUtf8(text, printable(code));
    }
    return text;
}

std::string chassisTypeText(std::uint8_t type)
{
    const auto& types = Protocol::SMBIOS::chassisTypes;
    const auto row = std::ranges::find_if(types, [=](const auto& entry) { return entry.code == type; });
    return row == std::end(types) ? "Unknown" : row->text;
}

/// Minutes since 1996 (UTC), low byte first; 0 is no date.
std::string dateText(Bytes bytes)
{
    constexpr std::size_t dateSize = 3;
    constexpr std::int64_t secondsPerMinute = 60;
    const std::uint32_t minutes = ipmi::littleEndian(bytes.first(dateSize));
    return minutes == 0 ? std::string() : ipmi::dateAndTime(ipmi::fruEpoch + minutes * secondsPerMinute);
}

/// Walks the fields of an area. After the end mark, or a field that runs past the area, there are none.
class FieldReader {
public:
    explicit FieldReader(Bytes fields) : rest(fields) {}

    /// The next field's text; nothing at the end.
    std::optional<std::string> next(bool english)
    {
        const std::size_t length = rest.empty() ? 0 : rest[0] & ipmi::fruTextLength;
        if (rest.empty() || rest[0] == ipmi::endOfFruFields || 1 + length > rest.size()) {
            rest = {};
            return std::nullopt;
        }
        std::string text = fruText(rest[0], rest.subspan(1, length), english);
        rest = rest.subspan(1 + length);
        return text;
    }

private:
    Bytes rest;
};

void addFields(Fields& fields, std::span<const NamedField> names, Bytes bytes, bool english)
{
    FieldReader reader(bytes);
    for (const NamedField& field : names)
        fields.emplace_back(field.name, reader.next(english || field.alwaysEnglish).value_or(""));
    for (std::size_t number = 1; auto text = reader.next(english); ++number)
        fields.emplace_back("CUSTOM_FIELD[" + std::to_string(number) + "]", std::move(*text));
}

/// The bytes of the fields: behind the area's head, before its checksum.
Bytes fieldsOf(const std::optional<Bytes>& area, std::size_t head)
{
    return area ? area->subspan(head, area->size() - head - 1) : Bytes{};
}

bool isEnglish(const std::optional<Bytes>& area)
{
    return area && isEnglish((*area)[languageAt]);
}

std::string languageText(const std::optional<Bytes>& area)
{
    return area ? std::to_string((*area)[languageAt]) : std::string();
}

Fields decodeChassis(const std::optional<Bytes>& area)
{
    Fields fields{{"TYPE", area ? chassisTypeText((*area)[chassisTypeAt]) : std::string()}};
    addFields(fields, chassisFields, fieldsOf(area, chassisHead), true);
    return fields;
}

Fields decodeBoard(const std::optional<Bytes>& area)
{
    Fields fields{{"LANGUAGE", languageText(area)},
                  {"MFG_DATE", area ? dateText(area->subspan(dateAt)) : std::string()}};
    addFields(fields, boardFields, fieldsOf(area, boardHead), isEnglish(area));
    return fields;
}

Fields decodeProduct(const std::optional<Bytes>& area)
{
    Fields fields{{"LANGUAGE", languageText(area)}};
    addFields(fields, productFields, fieldsOf(area, productHead), isEnglish(area));
    return fields;
}

} // namespace

std::array<std::size_t, fruAreaCount> fruAreaOffsets(Bytes header)
{
    std::array<std::size_t, fruAreaCount> offsets{};
    if (header.size() < fruHeaderSize || !hasKnownFormat(header) || sumOf(header.first(fruHeaderSize)) != 0)
        return offsets;
    for (std::size_t area = 0; area < fruAreaCount; ++area)
        offsets[area] = header[chassisPointer + area] * fruAreaUnit;
    return offsets;
}

std::size_t fruAreaLength(Bytes start)
{
    return start.size() > lengthAt && hasKnownFormat(start) ? start[lengthAt] * fruAreaUnit : 0;
}

std::vector<std::pair<std::string, std::string>> decodeFruArea(FruArea kind, Bytes area)
{
    const std::optional<Bytes> sound = soundArea(area);
    switch (kind) {
    case FruArea::Chassis:
        return decodeChassis(sound);
    case FruArea::Board:
        return decodeBoard(sound);
    case FruArea::Product:
        return decodeProduct(sound);
    }
    return {};
}

std::string fruText(std::uint8_t typeLength, Bytes bytes, bool english)
{
    std::string text;
    switch (ipmi::codingOf(typeLength)) {
    case ipmi::TextCoding::first:
        return ipmi::hexBytes(bytes);
    case ipmi::TextCoding::bcdPlus:
        text = ipmi::bcdPlusText(bytes);
        break;
    case ipmi::TextCoding::sixBit:
        text = ipmi::sixBitText(bytes);
        break;
    case ipmi::TextCoding::last:
        text = english ? latin1Text(bytes) : unicodeText(bytes);
        break;
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

} // namespace Module::BMCConfig

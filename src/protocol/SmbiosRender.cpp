#include "protocol/SmbiosRender.hpp"

#include "protocol/SmbiosWords.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace Protocol::SMBIOS {

namespace {

constexpr const char* hexDigits = "0123456789abcdef";

const char* findText(std::span<const ValueText> values, std::uint64_t code, Catalogue catalogue)
{
    const auto row = std::lower_bound(values.begin(), values.end(), code,
                                      [](const ValueText& one, std::uint64_t wanted) { return one.code < wanted; });
    return row != values.end() && row->code == code && row->since <= catalogue ? row->text : nullptr;
}

void add(FieldValues& values, const FieldInfo& field, std::string value)
{
    values.emplace_back(field.name, std::move(value));
}

void addBelow(FieldValues& values, const FieldInfo& field, std::string_view entry, std::string value)
{
    std::string path(field.name);
    path.append("/").append(entry);
    values.emplace_back(std::move(path), std::move(value));
}

std::string extract(const FieldInfo& field, const SMBRecordInfo& record, int kind)
{
    std::string text;
    ExtractField(&record.formatted[field.offset], text, field.size(), kind);
    return text;
}

std::uint64_t numberOf(const FieldInfo& field, const SMBRecordInfo& record)
{
    const std::uint64_t number = record.number(field.offset, field.size());
    return field.width == 0 ? number : number >> field.shift & ((1U << field.width) - 1);
}

/// A code without a word stays legible as bytes.
std::string wordOf(const FieldInfo& field, const SMBRecordInfo& record, Catalogue catalogue)
{
    const char* const word = findText(field.values, numberOf(field, record), catalogue);
    return word ? word : extract(field, record, TEXT_HEX_3);
}

void renderSpecial(const FieldInfo& field, const SMBRecordInfo& record, Catalogue catalogue, FieldValues& values)
{
    if (field.special)
        field.special(field, record, catalogue, values);
    else
        add(values, field, extract(field, record, TEXT_PAIRS));
}

void renderValues(const FieldInfo& field, const SMBRecordInfo& record, Catalogue catalogue, FieldValues& values)
{
    if (field.special)
        field.special(field, record, catalogue, values);
    else
        add(values, field, wordOf(field, record, catalogue));
}

std::string bitText(bool set)
{
    return set ? "Supported" : "Not Supported";
}

/// True if the map has a mask and that has a 0 for `bit`.
bool isReserved(std::span<const ValueText> values, std::size_t bit)
{
    if (values.empty() || values.front().code != 0)
        return false;
    const std::string_view mask = values.front().text;
    return bit < mask.size() && mask[bit] == '0';
}

std::string inKilobytes(std::uint64_t size)
{
    return std::to_string(size) + " KB";
}

} // namespace

void ExtractField(const std::uint8_t* source, std::string& text, std::size_t length, int kind)
{
    if (kind == TEXT_DECIMAL) {
        if (length != FIELD_BYTE && length != FIELD_WORD && length != FIELD_DWORD && length != FIELD_QWORD)
            return;
        std::uint64_t number = 0;
        std::memcpy(&number, source, length);
        char digits[24];
        std::snprintf(digits, sizeof digits, "%lld", static_cast<long long>(number));
        text += digits;
        return;
    }
    if (kind != TEXT_PAIRS)
        text += "0X";
    for (std::size_t i = 0; i < length; ++i) {
        text += hexDigits[source[i] >> 4];
        text += hexDigits[source[i] & 0x0F];
    }
}

void FillFieldInterpretation(const FieldInfo& field, const SMBRecordInfo& record, Catalogue catalogue,
                             FieldValues& values)
{
    if (!record.holds(field.offset, field.size()))
        return;
    switch (field.interpretation) {
    case INTERPRET_PLAIN:
        if (std::string text = extract(field, record, TEXT_DECIMAL); !text.empty())
            add(values, field, std::move(text));
        break;
    case INTERPRET_STRING:
        add(values, field, record.string(record.formatted[field.offset]));
        break;
    case INTERPRET_VALUES:
        renderValues(field, record, catalogue, values);
        break;
    case INTERPRET_SPECIAL:
        renderSpecial(field, record, catalogue, values);
        break;
    }
    if (field.name.find("ProcessorFamily") != std::string_view::npos)
        values.emplace_back(std::string(field.name) + "_Raw", std::to_string(numberOf(field, record)));
}

void RenderBits(const FieldInfo& field, const SMBRecordInfo& record, Catalogue catalogue, FieldValues& values)
{
    const std::uint64_t bits = numberOf(field, record);
    for (const ValueText& row : field.values)
        if (row.code != 0 && row.since <= catalogue && !isReserved(field.values, row.code - 1U))
            addBelow(values, field, row.text, bitText(bits >> (row.code - 1U) & 1));
}

void CalculateBIOSRomSize(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    add(values, field, inKilobytes((numberOf(field, record) + 1) * 64));
}

void RenderChassisType(const FieldInfo& field, const SMBRecordInfo& record, Catalogue catalogue, FieldValues& values)
{
    constexpr std::uint64_t lockBit = 0x80;
    const std::uint64_t byte = numberOf(field, record);
    const char* const word = findText(field.values, byte & ~lockBit, catalogue);
    add(values, field, word ? word : extract(field, record, TEXT_HEX_3));
    values.emplace_back("ChassisLock", byte & lockBit ? "Present" : "Not Present");
}

void RenderContainedElements(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    const std::size_t count = record.number(field.offset - 2U, 1);
    const std::size_t length = record.number(field.offset - 1U, 1);
    std::string list;
    for (std::size_t i = 0; i < count && length > 0 && record.holds(field.offset + i * length, length); ++i) {
        list += list.empty() ? "" : " ";
        ExtractField(&record.formatted[field.offset + i * length], list, length, TEXT_HEX_0);
    }
    if (!list.empty())
        add(values, field, list);
}

void RenderChassisSku(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    const std::size_t elements = record.number(field.offset - 2U, 1) * record.number(field.offset - 1U, 1);
    if (record.holds(field.offset + elements, 1))
        add(values, field, record.string(record.number(field.offset + elements, 1)));
}

void CalculateProcessorStatus(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    constexpr const char* states[] = {"Unknown", "Enabled",  "Disabled by user", "Disabled by BIOS",
                                      "Idle",    "Reserved", "Reserved",         "Other"};
    constexpr std::uint64_t populatedBit = 0x40;
    const std::uint64_t status = numberOf(field, record);
    add(values, field, status & populatedBit ? std::string("Populated, ") + states[status & 7] : "Unpopulated");
}

void CalculateProcessorVoltage(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    constexpr std::uint64_t currentBit = 0x80;
    constexpr const char* offered[] = {"5000 mV", "3300 mV", "2900 mV"};
    const std::uint64_t voltage = numberOf(field, record);
    if (voltage & currentBit)
        return add(values, field, std::to_string((voltage & ~currentBit) * 100) + " mV");
    std::string list;
    for (std::size_t bit = 0; bit < std::size(offered); ++bit)
        if (voltage >> bit & 1)
            list.append(list.empty() ? "" : ", ").append(offered[bit]);
    add(values, field, list.empty() ? "Unknown" : list);
}

void CalculateExtendedRomSize(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    constexpr std::uint64_t reservedBit = 0x8000;
    constexpr std::uint64_t gigabytesBit = 0x4000;
    constexpr std::uint64_t sizeBits = 0x3FFF;
    const std::uint64_t size = numberOf(field, record);
    if (size & reservedBit)
        return add(values, field, "Unknown");
    add(values, field, inKilobytes((size & sizeBits) << (size & gigabytesBit ? 20 : 10)));
}

void CalculateWideCacheSize(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    constexpr std::uint64_t coarseBit = 0x80000000;
    const std::uint64_t size = numberOf(field, record);
    add(values, field, inKilobytes(size & coarseBit ? (size & ~coarseBit) * 64 : size));
}

void RenderWideCount(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    constexpr std::uint64_t reserved = 0xFFFF;
    const std::uint64_t count = numberOf(field, record);
    add(values, field, count == reserved ? "Unknown" : std::to_string(count));
}

void RenderWideSpeed(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    add(values, field, std::to_string(numberOf(field, record) & 0x7FFFFFFF));
}

void RenderPortionSize(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    constexpr int megabyte = 20;
    const std::uint64_t size = numberOf(field, record);
    add(values, field, ~size == 0 ? "Unknown" : std::to_string(size >> megabyte));
}

void CalculateCacheSize(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    constexpr std::uint64_t coarseBit = 0x8000;
    const std::uint64_t size = numberOf(field, record);
    add(values, field, inKilobytes(size & coarseBit ? (size & ~coarseBit) * 64 : size));
}

void CalculateCacheConfiguration(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    constexpr const char* locations[] = {"Internal", "External", "Reserved", "Unknown"};
    constexpr const char* modes[] = {"Write Through", "Write Back", "Varies with Memory Address", "Unknown"};
    const std::uint64_t word = numberOf(field, record);
    addBelow(values, field, "Level", std::to_string((word & 7) + 1));
    addBelow(values, field, "Socketed", word >> 3 & 1 ? "Socketed" : "Not Socketed");
    addBelow(values, field, "Location", locations[word >> 5 & 3]);
    addBelow(values, field, "State", word >> 7 & 1 ? "Enabled" : "Disabled");
    addBelow(values, field, "OperationalMode", modes[word >> 8 & 3]);
}

void CalculateFlag(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    add(values, field, numberOf(field, record) & 1 ? "Abbreviated" : "Long");
}

void CalculateHardwareSecuritySettings(const FieldInfo& field, const SMBRecordInfo& record, Catalogue,
                                       FieldValues& values)
{
    constexpr const char* states[] = {"Disabled", "Enabled", "Not Implemented", "Unknown"};
    constexpr const char* settings[] = {"FrontPanelReset", "AdministratorPassword", "KeyboardPassword",
                                        "PowerOnPassword"};
    const std::uint64_t byte = numberOf(field, record);
    for (std::size_t i = 0; i < std::size(settings); ++i)
        addBelow(values, field, settings[i], states[byte >> (2 * i) & 3]);
}

void CalculateIPMISpecRev(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    const std::uint64_t revision = numberOf(field, record);
    add(values, field, std::to_string(revision >> 4) + "." + std::to_string(revision & 0x0F));
}

void interpretUUID(const FieldInfo& field, const SMBRecordInfo& record, Catalogue catalogue, FieldValues& values)
{
    constexpr std::size_t bigEndian[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
    constexpr std::size_t mixedEndian[] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    const Bytes uuid = record.formatted.subspan(field.offset, FIELD_UUID);
    const auto isAll = [uuid](std::uint8_t byte) { return std::ranges::count(uuid, byte) == FIELD_UUID; };
    if (isAll(0xFF))
        return add(values, field, "Not Present");
    if (isAll(0))
        return add(values, field, "Not Settable");
    std::string text;
    for (std::size_t i = 0; i < FIELD_UUID; ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text += '-';
        ExtractField(&uuid[(catalogue >= v2_6 ? mixedEndian : bigEndian)[i]], text, 1, TEXT_PAIRS);
    }
    add(values, field, text);
}

void RenderCountedStrings(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    const std::size_t count = numberOf(field, record);
    add(values, field, std::to_string(count));
    for (std::size_t i = 1; i <= std::min(count, record.strings.size()); ++i)
        values.emplace_back(subscripted("String", i), record.string(i));
}

void RenderOnBoardTypes(const FieldInfo& field, const SMBRecordInfo& record, Catalogue catalogue, FieldValues& values)
{
    constexpr std::uint64_t enabledBit = 0x80;
    for (std::size_t i = 0; record.holds(field.offset + 2 * i, 2); ++i) {
        const std::uint64_t byte = record.number(field.offset + 2 * i, 1);
        const char* const word = findText(field.values, byte & ~enabledBit, catalogue);
        const std::string type = word ? word : std::to_string(byte & ~enabledBit);
        const std::string state = byte & enabledBit ? "Enabled" : "Disabled";
        if (i == 0) {
            add(values, field, type);
            values.emplace_back("DeviceStatus", state);
        }
        values.emplace_back(subscripted(field.name, i + 1), type);
        values.emplace_back(subscripted("DeviceStatus", i + 1), state);
    }
}

void RenderOnBoardDescriptions(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    for (std::size_t i = 0; record.holds(field.offset + 2 * i, 1); ++i) {
        const std::string& description = record.string(record.number(field.offset + 2 * i, 1));
        if (i == 0)
            add(values, field, description);
        values.emplace_back(subscripted(field.name, i + 1), description);
    }
}

void RenderSlotShape(const FieldInfo& field, const SMBRecordInfo& record, Catalogue catalogue, FieldValues& values)
{
    constexpr std::size_t peerSize = 5;
    const std::size_t place = field.offset + record.number(field.offset - 1U, 1) * peerSize;
    const auto addWord = [&](std::size_t at, std::string_view name, std::span<const ValueText> words) {
        const char* const word = findText(words, record.number(at, 1), catalogue);
        if (word && record.holds(at, 1))
            values.emplace_back(name, word);
    };
    if (record.holds(place, 1))
        values.emplace_back("SlotInformation", std::to_string(record.number(place, 1)));
    addWord(place + 1, "SlotPhysicalWidth", field.values);
    if (record.holds(place + 2, 2))
        values.emplace_back("SlotPitch", std::to_string(record.number(place + 2, 2)));
    addWord(place + 4, "SlotHeight", slotHeights);
}

void RenderProbeValue(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    const auto number = static_cast<std::int16_t>(numberOf(field, record));
    add(values, field, number == INT16_MIN ? "Unknown" : std::to_string(number));
}

void RenderRating(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    constexpr std::uint64_t unknown = 0x8000;
    const std::uint64_t number = numberOf(field, record);
    add(values, field, number == unknown ? "Unknown" : std::to_string(number));
}

void RenderImageSize(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    const std::uint64_t size = numberOf(field, record);
    add(values, field, ~size == 0 ? "Unknown" : std::to_string(size));
}

void RenderVendorId(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    std::string id;
    for (const std::uint8_t character : record.formatted.subspan(field.offset, field.size()))
        if (character != 0)
            id += character >= ' ' && character <= '~' ? static_cast<char>(character) : '.';
    add(values, field, id);
}

void RenderTypeDetail(const FieldInfo& field, const SMBRecordInfo& record, Catalogue catalogue, FieldValues& values)
{
    RenderBits(field, record, catalogue, values);
    for (auto& [path, value] : values)
        if (path == "TypeDetail/EDO")
            path = "TypeDetails/EDO";
}

void RenderMemorySize(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    constexpr std::uint64_t unknown = 0xFFFF;
    constexpr std::uint64_t extended = 0x7FFF;
    constexpr std::uint64_t kilobytesBit = 0x8000;
    constexpr std::size_t extendedSize = 0x1C;
    const std::uint64_t size = numberOf(field, record);
    if (size == unknown)
        return add(values, field, "Unknown");
    if (size == extended && record.holds(extendedSize, FIELD_DWORD))
        return add(values, field, std::to_string(record.number(extendedSize, FIELD_DWORD) & 0x7FFFFFFF));
    add(values, field, std::to_string(size & kilobytesBit ? (size & ~kilobytesBit) / 1024 : size));
}

void RenderMemoryCapacity(const FieldInfo& field, const SMBRecordInfo& record, Catalogue, FieldValues& values)
{
    constexpr std::uint64_t extended = 0x80000000;
    constexpr std::size_t extendedCapacity = 0x0F;
    const std::uint64_t capacity = numberOf(field, record);
    const bool isExtended = capacity == extended && record.holds(extendedCapacity, FIELD_QWORD);
    add(values, field, std::to_string(isExtended ? record.number(extendedCapacity, FIELD_QWORD) / 1024 : capacity));
}

} // namespace Protocol::SMBIOS

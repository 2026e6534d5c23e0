#include "protocol/SmbiosTable.hpp"

#include "common/SmbiosWalk.hpp"

#include <algorithm>
#include <cstring>
#include <limits>
#include <numeric>

namespace Protocol::SMBIOS {

namespace {

/// Where a form has what (DSP0134, 5.2.1 and 5.2.2).
struct EntryLayout {
    std::string_view anchor;
    std::size_t needed; ///< bytes that are read
    std::size_t length; ///< offset of the byte with the length
    std::size_t major;
    std::size_t minor;
};
constexpr EntryLayout layouts[] = {{"_SM_", 0x1E, 0x05, 0x06, 0x07}, {"_SM3_", 0x18, 0x06, 0x07, 0x08}};

constexpr const EntryLayout& layoutOf(EntryForm form)
{
    return layouts[static_cast<std::size_t>(form)];
}

constexpr std::size_t longestString = 255;

template<class Number>
Number readAt(Bytes bytes, std::size_t offset)
{
    Number number;
    std::memcpy(&number, &bytes[offset], sizeof number);
    return number;
}

void readNarrow(Bytes bytes, EntryPoint& entry)
{
    entry.tableLength = readAt<std::uint16_t>(bytes, 0x16);
    entry.tableAddress = readAt<std::uint32_t>(bytes, 0x18);
    entry.structureCount = readAt<std::uint16_t>(bytes, 0x1C);
}

void readWide(Bytes bytes, EntryPoint& entry)
{
    entry.tableLength = readAt<std::uint32_t>(bytes, 0x0C);
    entry.tableAddress = readAt<std::uint64_t>(bytes, 0x10);
    entry.structureCount = std::numeric_limits<std::size_t>::max();
}

/// What stands behind the last zero is no string.
std::vector<std::string> splitStrings(Bytes bytes)
{
    std::vector<std::string> strings;
    for (auto end = std::ranges::find(bytes, std::uint8_t{0}); end != bytes.end();
         end = std::ranges::find(bytes, std::uint8_t{0})) {
        const auto length = static_cast<std::size_t>(end - bytes.begin());
        strings.emplace_back(reinterpret_cast<const char*>(bytes.data()), std::min(length, longestString));
        bytes = bytes.subspan(length + 1);
    }
    return strings;
}

} // namespace

std::string EntryPoint::version() const
{
    return std::to_string(major) + "." + std::to_string(minor);
}

std::optional<Bytes> findAnchor(Bytes memory, std::size_t step, EntryForm form)
{
    const std::string_view anchor = layoutOf(form).anchor;
    for (std::size_t at = 0; at + anchor.size() <= memory.size(); at += step)
        if (std::memcmp(&memory[at], anchor.data(), anchor.size()) == 0)
            return memory.subspan(at);
    return std::nullopt;
}

std::optional<EntryPoint> decodeEntryPoint(Bytes bytes, EntryForm form)
{
    const EntryLayout& layout = layoutOf(form);
    if (bytes.size() < layout.needed)
        return std::nullopt;
    const std::size_t length = bytes[layout.length];
    // A length that leaves fields out of the sum would let anything pass for an entry point.
    if (length < layout.needed || length > bytes.size())
        return std::nullopt;
    const Bytes summed = bytes.first(length);
    if (std::accumulate(summed.begin(), summed.end(), 0U) % 256 != 0)
        return std::nullopt;
    EntryPoint entry{.major = bytes[layout.major], .minor = bytes[layout.minor]};
    if (form == EntryForm::bits64)
        readWide(bytes, entry);
    else
        readNarrow(bytes, entry);
    return entry;
}

std::vector<SMBRecordInfo> parseStructures(Bytes table, std::size_t count)
{
    std::vector<SMBRecordInfo> records;
    while (records.size() < count) {
        const auto structure = common::takeSmbiosStructure(table);
        if (!structure || structure->formatted[0] == TYPE_END_OF_TABLE)
            break;
        records.push_back({.type = structure->formatted[0],
                           .handle = readAt<std::uint16_t>(structure->formatted, 2),
                           .formatted = structure->formatted,
                           .strings = splitStrings(structure->strings)});
    }
    return records;
}

} // namespace Protocol::SMBIOS

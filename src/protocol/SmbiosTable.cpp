#include "protocol/SmbiosTable.hpp"

#include "common/SmbiosWalk.hpp"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace Protocol::SMBIOS {

namespace {

constexpr std::string_view anchor = "_SM_";

// Offsets in the entry point (DSP0134, 5.2.1).
constexpr std::size_t entryLength = 0x05;
constexpr std::size_t entryMajor = 0x06;
constexpr std::size_t entryMinor = 0x07;
constexpr std::size_t entryTableLength = 0x16;
constexpr std::size_t entryTableAddress = 0x18;
constexpr std::size_t entryStructureCount = 0x1C;

constexpr std::size_t longestString = 255;

template<class Number>
Number readAt(Bytes bytes, std::size_t offset)
{
    Number number;
    std::memcpy(&number, &bytes[offset], sizeof number);
    return number;
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

bool hasAnchor(Bytes bytes)
{
    return bytes.size() >= anchor.size() && std::memcmp(bytes.data(), anchor.data(), anchor.size()) == 0;
}

std::optional<Bytes> findAnchor(Bytes memory, std::size_t step)
{
    for (std::size_t at = 0; at < memory.size(); at += step)
        if (hasAnchor(memory.subspan(at)))
            return memory.subspan(at);
    return std::nullopt;
}

std::optional<EntryPoint> decodeEntryPoint(Bytes bytes)
{
    if (bytes.size() < entryPointNeeded)
        return std::nullopt;
    const std::size_t length = bytes[entryLength];
    // A length that leaves fields out of the sum would let anything pass for an entry point.
    if (length < entryPointNeeded || length > bytes.size())
        return std::nullopt;
    const Bytes summed = bytes.first(length);
    if (std::accumulate(summed.begin(), summed.end(), 0U) % 256 != 0)
        return std::nullopt;
    return EntryPoint{.major = bytes[entryMajor],
                      .minor = bytes[entryMinor],
                      .tableLength = readAt<std::uint16_t>(bytes, entryTableLength),
                      .tableAddress = readAt<std::uint32_t>(bytes, entryTableAddress),
                      .structureCount = readAt<std::uint16_t>(bytes, entryStructureCount)};
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

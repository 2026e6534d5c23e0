#include "common/CMySemLock.hpp"
#include "common/Descriptor.hpp"
#include "common/ErrorName.hpp"
#include "common/ResultStatus.hpp"
#include "common/Seams.hpp"
#include "protocol/MemMapDriverImpl.hpp"
#include "protocol/SMBIOSProtocolImpl.hpp"

#include <cstdlib>
#include <cstring>

namespace Protocol::SMBIOS {

namespace {

using OS::Driver::MemMapDriverImpl;
using OS::Driver::UnmapDeleter;

constexpr const char* errorDetail = "/SMBIOS";

constexpr unsigned biosSegment = 0xF0000;
constexpr unsigned biosSegmentLength = 65534;
constexpr std::size_t paragraph = 16;

constexpr const char* systemTables[] = {"/sys/firmware/efi/systab", "/proc/efi/systab"};
constexpr std::size_t longestLine = 63;

/// Maps from the page's start on: a window that begins within a page would stay mapped.
std::vector<std::uint8_t> readMemory(MemMapDriverImpl& memory, unsigned address, unsigned length)
{
    constexpr unsigned pageOffset = 0xFFF;
    const unsigned offset = address & pageOffset;
    HW_NAMED_LOCK(lock, "GLOBAL_MEMORY_MAPPING");
    std::unique_ptr<UnmapDeleter> window;
    memory.Map(address - offset, length + offset, window);
    return {window->pointer + offset, window->pointer + offset + length};
}

common::File openSystemTable()
{
    for (const char* path : systemTables)
        if (auto file = common::openToRead(systemPath(path)))
            return file;
    throwError(ERROR_NO_SMBIOS_ENTRY_PTR, errorDetail, COMMAND_GET);
}

/// The address of a line such as "SMBIOS=0xf0000", cut to 32 bits. The kernel names the 64-bit entry point first, in a
/// line that begins alike; that entry point has another anchor.
std::optional<std::uint32_t> addressOfLine(const char* line)
{
    if (std::strncmp(line, "SMBIOS", 6) != 0 || std::strncmp(line, "SMBIOS3", 7) == 0)
        return std::nullopt;
    const char* const equals = std::strchr(line, '=');
    if (!equals)
        return std::nullopt;
    return static_cast<std::uint32_t>(std::strtoul(equals + 1, nullptr, 0));
}

std::uint32_t findEfiAddress()
{
    const common::File file = openSystemTable();
    char line[longestLine + 1];
    while (std::fgets(line, sizeof line, file.get()))
        if (const auto address = addressOfLine(line))
            return *address;
    throwError(ERROR_NO_SMBIOS_ENTRY_PTR, errorDetail, COMMAND_GET);
}

EntryPoint requireEntryPoint(Bytes bytes)
{
    const auto entry = decodeEntryPoint(bytes);
    if (!entry)
        throwError(ERROR_CHECKSUM_INCORRECT, errorDetail, COMMAND_GET);
    return *entry;
}

EntryPoint locateEntryPoint(MemMapDriverImpl& memory)
{
    const std::vector<std::uint8_t> segment = readMemory(memory, biosSegment, biosSegmentLength);
    if (const auto low = findAnchor(segment, paragraph))
        return requireEntryPoint(*low);
    const std::vector<std::uint8_t> efi = readMemory(memory, findEfiAddress(), entryPointLength);
    if (!hasAnchor(efi))
        throwError(ERROR_NO_SMBIOS_ENTRY_PTR, errorDetail, COMMAND_GET);
    return requireEntryPoint(efi);
}

} // namespace

void SMBIOSProtocolImpl::GetSMBiosEntryPtr()
{
    MemMapDriverImpl memory;
    const EntryPoint entry = locateEntryPoint(memory);
    acceptEntryPoint(entry);
    if (entry.tableLength > 0)
        table = readMemory(memory, entry.tableAddress, entry.tableLength);
}

void SMBIOSProtocolImpl::GetSMBiosEntryPtr(const unsigned char* image, unsigned length)
{
    const Bytes bytes(image, length);
    const auto found = findAnchor(bytes, 1);
    if (!found)
        throwError(ERROR_NO_SMBIOS_ENTRY_PTR, errorDetail, COMMAND_GET);
    const EntryPoint entry = requireEntryPoint(*found);
    if (entry.tableAddress > length)
        throwError(ERROR_NO_SMBIOS_ENTRY_PTR, errorDetail, COMMAND_GET);
    acceptEntryPoint(entry);
    const Bytes rest = bytes.subspan(entry.tableAddress);
    const Bytes wanted = rest.first(std::min<std::size_t>(entry.tableLength, rest.size()));
    table.assign(wanted.begin(), wanted.end());
}

void SMBIOSProtocolImpl::acceptEntryPoint(const EntryPoint& entry)
{
    versionText = entry.version();
    structureCount = entry.structureCount;
}

} // namespace Protocol::SMBIOS

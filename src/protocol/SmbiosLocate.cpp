#include "common/CMySemLock.hpp"
#include "common/Descriptor.hpp"
#include "common/ErrorName.hpp"
#include "common/Policy.hpp"
#include "common/ResultStatus.hpp"
#include "common/Seams.hpp"
#include "protocol/MemMapDriverImpl.hpp"
#include "protocol/SMBIOSProtocolImpl.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

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

constexpr const char* kernelEntryPoint = "/sys/firmware/dmi/tables/smbios_entry_point";
constexpr const char* kernelTable = "/sys/firmware/dmi/tables/DMI";
/// Far more than any firmware's table has.
constexpr std::size_t longestTable = 4 << 20;
constexpr std::size_t longestEntryPoint = 0xFF;

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

/// The forms that are known, in the order in which they are looked for.
std::span<const EntryForm> knownForms()
{
    static constexpr EntryForm forms[] = {EntryForm::bits64, EntryForm::bits32};
    return common::policy().takesWideEntries ? forms : std::span(forms).last(1);
}

/// Looked for at every `step` bytes; nothing without an anchor. Error 1024 where the first cannot be trusted.
std::optional<EntryPoint> findEntryPoint(Bytes memory, std::size_t step)
{
    for (const EntryForm form : knownForms())
        if (const auto found = findAnchor(memory, step, form)) {
            const auto entry = decodeEntryPoint(*found, form);
            if (!entry)
                throwError(ERROR_CHECKSUM_INCORRECT, errorDetail, COMMAND_GET);
            return entry;
        }
    return std::nullopt;
}

EntryPoint requireEntryPoint(Bytes memory, std::size_t step)
{
    const auto entry = findEntryPoint(memory, step);
    if (!entry)
        throwError(ERROR_NO_SMBIOS_ENTRY_PTR, errorDetail, COMMAND_GET);
    return *entry;
}

EntryPoint locateEntryPoint(MemMapDriverImpl& memory)
{
    const std::vector<std::uint8_t> segment = readMemory(memory, biosSegment, biosSegmentLength);
    if (const auto low = findEntryPoint(segment, paragraph))
        return *low;
    const std::vector<std::uint8_t> efi = readMemory(memory, findEfiAddress(), entryPointLength);
    return requireEntryPoint(efi, efi.size());
}

} // namespace

void SMBIOSProtocolImpl::GetSMBiosEntryPtr()
{
    if (common::policy().readsKernelTables && takeKernelTables())
        return;
    MemMapDriverImpl memory;
    entryPoint = locateEntryPoint(memory);
    if (entryPoint.tableAddress > std::numeric_limits<unsigned>::max())
        throwError(ERROR_PHY_VIRT_MAPPING, errorDetail, COMMAND_GET);
    if (entryPoint.tableLength > 0)
        table = readMemory(memory, static_cast<unsigned>(entryPoint.tableAddress), entryPoint.tableLength);
}

/// The kernel offers the firmware's tables as files also where memory is out of reach. False if it has none.
bool SMBIOSProtocolImpl::takeKernelTables()
{
    const auto entry = common::readSmallFile(systemPath(kernelEntryPoint), longestEntryPoint);
    if (entry.empty())
        return false;
    entryPoint = requireEntryPoint(entry, entry.size());
    table = common::readSmallFile(systemPath(kernelTable), std::min<std::size_t>(entryPoint.tableLength, longestTable));
    if (table.empty())
        throwError(ERROR_NO_SMBIOS_ENTRY_PTR, kernelTable, COMMAND_GET);
    return true;
}

void SMBIOSProtocolImpl::GetSMBiosEntryPtr(const unsigned char* image, unsigned length)
{
    const Bytes bytes(image, length);
    entryPoint = requireEntryPoint(bytes, 1);
    if (entryPoint.tableAddress > length)
        throwError(ERROR_NO_SMBIOS_ENTRY_PTR, errorDetail, COMMAND_GET);
    const Bytes rest = bytes.subspan(entryPoint.tableAddress);
    const Bytes wanted = rest.first(std::min<std::size_t>(entryPoint.tableLength, rest.size()));
    table.assign(wanted.begin(), wanted.end());
}

} // namespace Protocol::SMBIOS

#include "common/Descriptor.hpp"
#include "common/Policy.hpp"
#include "common/Seams.hpp"
#include "common/SmbiosWalk.hpp"
#include "transport/BmcMessage.hpp"
#include "transport/Kcs.hpp"
#include "transport/MachineIo.hpp"
#include "transport/TransportState.hpp"

#include <cstring>
#include <fcntl.h>
#include <limits>
#include <optional>
#include <span>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

using namespace transport;

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::uint64_t biosSegment = 0xF0000;
constexpr std::size_t biosSegmentSize = 65535;
constexpr std::size_t entryPointStep = 16;

// SMBIOS 2.x, 5.2.1: fields of the entry point.
constexpr std::size_t entryTableLength = 0x16;
constexpr std::size_t entryTableAddress = 0x18;
constexpr std::size_t entryStructureCount = 0x1C;
constexpr std::size_t entryNeeded = 0x1E;

// SMBIOS 2.x, 7.39: IPMI Device Information.
constexpr std::uint8_t typeIpmiDevice = 38;
constexpr std::size_t ipmiInterfaceType = 4;
constexpr std::size_t ipmiBaseAddress = 8;
constexpr std::size_t ipmiDeviceNeeded = 12;
constexpr std::uint8_t interfaceKcs = 1;

constexpr const char* kernelTable = "/sys/firmware/dmi/tables/DMI";
constexpr std::size_t longestTable = 4 << 20;

constexpr int mappingFailed = -1;
constexpr int defaultPortSilent = -1;

/// A read-only, shared mapping of physical memory, for the life of the object.
class PhysicalWindow {
public:
    PhysicalWindow(const common::Descriptor& memory, std::uint64_t address, std::size_t wanted)
    {
        const auto pageSize = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
        const std::uint64_t rounding = address % pageSize;
        length = wanted + rounding;
        base = mmap(nullptr, length, PROT_READ, MAP_SHARED, memory.get(), static_cast<off_t>(address - rounding));
        if (base != MAP_FAILED)
            view = Bytes(static_cast<const std::uint8_t*>(base) + rounding, wanted);
    }
    ~PhysicalWindow()
    {
        if (base != MAP_FAILED)
            munmap(base, length);
    }
    PhysicalWindow(const PhysicalWindow&) = delete;
    PhysicalWindow& operator=(const PhysicalWindow&) = delete;
    bool mapped() const { return base != MAP_FAILED; }
    Bytes bytes() const { return view; }

private:
    std::size_t length;
    void* base;
    Bytes view;
};

template<class Number>
Number readAt(Bytes bytes, std::size_t offset)
{
    Number number;
    std::memcpy(&number, bytes.subspan(offset, sizeof number).data(), sizeof number);
    return number;
}

Bytes findEntryPoint(Bytes segment)
{
    for (std::size_t at = 0; at + entryNeeded <= segment.size(); at += entryPointStep)
        if (std::memcmp(&segment[at], "_SM_", 4) == 0)
            return segment.subspan(at, entryNeeded);
    return {};
}

/// The IPMI Device Information structure, or nothing when the table has none that is whole.
Bytes findIpmiDevice(Bytes table, unsigned count)
{
    for (; count > 0; --count) {
        const auto structure = common::takeSmbiosStructure(table);
        if (!structure)
            break;
        if (structure->formatted[0] == typeIpmiDevice)
            return structure->formatted.size() < ipmiDeviceNeeded ? Bytes{} : structure->formatted;
    }
    return {};
}

int probePort(std::uint32_t base, int silentResult)
{
    transportState().kcsBaseAddress = base;
    if (!current<PortIo>().acquire())
        return silentResult;
    const std::uint8_t status = current<PortIo>().in(static_cast<std::uint16_t>(base + 1));
    return status == 0xFF ? silentResult : 0;
}

int probeDevice(Bytes device)
{
    if (device.empty())
        return probePort(KCSAddress, defaultPortSilent);
    if (device[ipmiInterfaceType] == interfaceKcs)
        return probePort(readAt<std::uint32_t>(device, ipmiBaseAddress) - 1, noBmcInterface);
    transportState().g_Mbmcsupport = 1;
    return noBmcInterface;
}

} // namespace

int startIPMI()
{
    return 0;
}

int endIPMI()
{
    return 0;
}

int MainInit()
{
    if (startIPMI() != 0) {
        transportState().g_Mbmcsupport = 2;
        return 0;
    }
    if (common::policy().probesByKernelTables)
        if (const auto table = common::readSmallFile(systemPath(kernelTable), longestTable); !table.empty())
            return probeDevice(findIpmiDevice(table, std::numeric_limits<unsigned>::max()));
    const common::Descriptor memory(open(systemPath("/dev/mem").c_str(), O_RDONLY | O_CLOEXEC));
    const PhysicalWindow segment(memory, biosSegment, biosSegmentSize);
    if (!segment.mapped())
        return mappingFailed;
    const Bytes entry = findEntryPoint(segment.bytes());
    if (entry.empty())
        return noBmcInterface;
    const PhysicalWindow table(memory, readAt<std::uint32_t>(entry, entryTableAddress),
                               readAt<std::uint16_t>(entry, entryTableLength));
    if (!table.mapped())
        return mappingFailed;
    return probeDevice(findIpmiDevice(table.bytes(), readAt<std::uint16_t>(entry, entryStructureCount)));
}

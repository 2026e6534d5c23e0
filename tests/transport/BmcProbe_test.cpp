#include "common/Policy.hpp"
#include "tests/support/TempRoot.hpp"
#include "tests/transport/FakeKcs.hpp"
#include "transport/BmcMessage.hpp"
#include "transport/TransportState.hpp"

#include <memory>

using namespace transport;

namespace {

constexpr std::uint64_t entryAddress = 0xF0000 + 0x1230;
constexpr std::uint32_t tableAddress = 0x81234;

/// Little-endian bytes of a number.
template<class Number>
std::string bytesOf(Number number)
{
    return {reinterpret_cast<const char*>(&number), sizeof number};
}

std::string structure(std::uint8_t type, std::string formatted, std::string strings = std::string(1, '\0'))
{
    const std::string header{static_cast<char>(type), static_cast<char>(formatted.size() + 4), 1, 0};
    return header + formatted + strings + std::string(1, '\0');
}

std::string ipmiDevice(std::uint8_t interfaceType, std::uint32_t base)
{
    return structure(38, bytesOf(interfaceType) + "\x20\x20\xff" + bytesOf(base) + bytesOf(std::uint32_t{0}));
}

const std::string bios = structure(0, std::string(20, '\x01'), std::string("Maker\0 1.0\0", 11));

/// An image of physical memory with an SMBIOS table, and a port that answers.
class BmcProbe : public testing::Test {
protected:
    BmcProbe() { resetTransportForTests(); }

    void writeImage(const std::string& table, int count, std::uint64_t address = entryAddress)
    {
        root.reset(); // roots nest: the old one has to go before the new one comes
        root = std::make_unique<TempRoot>();
        root->writeAt("/dev/mem", 0xFFFFF, std::string(1, '\0'));
        root->writeAt("/dev/mem", address,
                      "_SM_" + std::string(0x12, '\0') + bytesOf(static_cast<std::uint16_t>(table.size())) +
                          bytesOf(tableAddress) + bytesOf(static_cast<std::uint16_t>(count)));
        root->writeAt("/dev/mem", tableAddress, table);
        transportState() = {};
    }

    FakeKcs ports;
    ScopedSeam<PortIo> usePorts{ports};
    std::unique_ptr<TempRoot> root;
};

TEST_F(BmcProbe, FindsTheBaseBehindOtherStructures)
{
    writeImage(bios + ipmiDevice(1, 0x0CB3), 2);
    EXPECT_EQ(MainInit(), 0);
    EXPECT_EQ(transportState().kcsBaseAddress, 0x0CB2u);
    ports.absent = true;
    EXPECT_EQ(MainInit(), noBmcInterface);
    ports = {};
    ports.privilege = false;
    EXPECT_EQ(MainInit(), noBmcInterface) << "no right to the ports";
    writeImage(bios + ipmiDevice(4, 0x0CB3), 2);
    EXPECT_EQ(MainInit(), noBmcInterface) << "an interface of another type";
    EXPECT_EQ(transportState().g_Mbmcsupport, 1);
    ports = {};
    root->write("/sys/firmware/dmi/tables/DMI", bios + ipmiDevice(1, 0x0CC3));
    const common::ScopedPolicy practical(common::practicalPolicy());
    EXPECT_EQ(MainInit(), 0) << "the kernel's copy comes first";
    EXPECT_EQ(transportState().kcsBaseAddress, 0x0CC2u);
}

TEST_F(BmcProbe, TableWithoutDeviceTakesTheDefault)
{
    const std::string device = ipmiDevice(1, 0x0CB3);
    const std::pair<std::string, int> tables[] = {{bios, 0},
                                                  {bios + device, 1},
                                                  {bios, 9},
                                                  {bios + device.substr(0, 8), 2},
                                                  {bios.substr(0, 20), 40},
                                                  {std::string("\x01\x00\x00\x00\x01", 5), 40},
                                                  {std::string("\x01\xff\x00\x00\x01", 5), 40}};
    for (const auto& [table, count] : tables) {
        writeImage(table, count);
        EXPECT_EQ(MainInit(), 0);
        EXPECT_EQ(transportState().kcsBaseAddress, 0x0CA2u);
        ports.absent = true;
        EXPECT_EQ(MainInit(), -1);
        ports.absent = false;
    }
}

TEST_F(BmcProbe, MemoryThatCannotBeUsedIsAnError)
{
    root = std::make_unique<TempRoot>();
    EXPECT_EQ(MainInit(), -1) << "no file";
    writeImage(bios, 1, entryAddress + 1);
    EXPECT_EQ(MainInit(), noBmcInterface) << "entry point off the paragraph";
    writeImage(bios, 1, 0xFFFF0);
    EXPECT_EQ(MainInit(), noBmcInterface) << "entry point that does not fit into the segment";
}

} // namespace

#include "common/Policy.hpp"
#include "tests/support/SmbiosImage.hpp"
#include "tests/transport/FakeKcs.hpp"
#include "transport/BmcMessage.hpp"
#include "transport/TransportState.hpp"

#include <optional>

using namespace transport;

namespace {

constexpr std::uint32_t entryAddress = 0xF0000 + 0x1230;

std::string structure(unsigned type, const std::string& layout)
{
    SmbiosImage image(2, 4);
    image.add(type, bodyOf(layout));
    return image.table;
}

const std::string bios = structure(0, "'Maker' '1.0' *18");
const std::string device = structure(38, "01 20 20 FF 0000000000000CB3");

/// An image of physical memory with an SMBIOS table, and a port that answers.
class BmcProbe : public testing::Test {
protected:
    BmcProbe() { resetTransportForTests(); }

    void writeImage(const std::string& table, unsigned count, std::uint32_t address = entryAddress)
    {
        root.reset(); // roots nest: the old one has to go before the new one comes
        root.emplace();
        SmbiosImage image(2, 4);
        image.table = table;
        image.count = count;
        image.place(*root, address, 0x81234);
        transportState() = {};
    }

    FakeKcs ports;
    ScopedSeam<PortIo> usePorts{ports};
    std::optional<TempRoot> root;
};

TEST_F(BmcProbe, FindsTheBaseBehindOtherStructures)
{
    writeImage(bios + device, 2);
    EXPECT_EQ(MainInit(), 0);
    EXPECT_EQ(transportState().kcsBaseAddress, 0x0CB2u);
    ports.absent = true;
    EXPECT_EQ(MainInit(), noBmcInterface);
    ports = {};
    ports.privilege = false;
    EXPECT_EQ(MainInit(), noBmcInterface) << "no right to the ports";
    writeImage(bios + structure(38, "04 20 20 FF 0000000000000CB3"), 2);
    EXPECT_EQ(MainInit(), noBmcInterface) << "an interface of another type";
    EXPECT_EQ(transportState().g_Mbmcsupport, 1);
    ports = {};
    root->write("/sys/firmware/dmi/tables/DMI", bios + structure(38, "01 20 20 FF 0000000000000CC3"));
    const common::ScopedPolicy practical(common::practicalPolicy());
    EXPECT_EQ(MainInit(), 0) << "the kernel's copy comes first";
    EXPECT_EQ(transportState().kcsBaseAddress, 0x0CC2u);
}

TEST_F(BmcProbe, TableWithoutDeviceTakesTheDefaultAndMemoryThatCannotBeUsedIsAnError)
{
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
    root.reset();
    root.emplace();
    EXPECT_EQ(MainInit(), -1) << "no file";
    writeImage(bios, 1, entryAddress + 1);
    EXPECT_EQ(MainInit(), noBmcInterface) << "entry point off the paragraph";
    writeImage(bios, 1, 0xFFFF0);
    EXPECT_EQ(MainInit(), noBmcInterface) << "entry point that does not fit into the segment";
}

} // namespace

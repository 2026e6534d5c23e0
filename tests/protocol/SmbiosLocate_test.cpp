#include "common/ErrorName.hpp"
#include "common/Policy.hpp"
#include "protocol/MemMapDriverImpl.hpp"
#include "protocol/SMBIOSProtocolImpl.hpp"
#include "tests/support/CaughtLog.hpp"
#include "tests/support/Failure.hpp"
#include "tests/support/FakeClock.hpp"
#include "tests/support/SmbiosImage.hpp"
#include "tests/support/TempRoot.hpp"

#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

using OS::Driver::MemMapDriverImpl;
using Protocol::SMBIOS::SMBIOSProtocolImpl;

constexpr const char* systab = "/sys/firmware/efi/systab";
constexpr std::uint32_t efiAddress = 0x123458; ///< not at a page's start, outside of the low area

int readMachine()
{
    return failureOf([] { SMBIOSProtocolImpl(); }).code;
}

class SmbiosLocate : public testing::Test {
protected:
    std::string vendor() const
    {
        ResultMap result;
        SMBIOSProtocolImpl().SMBiosSearch("/SMBIOS/Type0/Vendor", result);
        return result.at("/SMBIOS/Type0/Vendor").mXNodeList.front();
    }

    TempRoot root;
    SmbiosImage image = serverImage(2, 7);
};

TEST_F(SmbiosLocate, MemoryThatCannotBeReachedIsNamed)
{
    EXPECT_EQ(failureOf([] { MemMapDriverImpl(); }).words, "Error in opening device \"/dev/mem\"");
    EXPECT_EQ(readMachine(), ERROR_OPEN_DEVICE);
    root.write("/dev/mem", "too short for the low area");
    EXPECT_EQ(readMachine(), ERROR_PHY_VIRT_MAPPING);
}

TEST_F(SmbiosLocate, EntryPointIsFoundAtAnyParagraphOfTheLowArea)
{
    for (const std::uint32_t address : {0xF0000U, 0xF0010U, 0xFFFD0U}) {
        image.place(root, address, 0xE0004);
        EXPECT_EQ(vendor(), "Firmware Maker") << address;
        root.writeAt("/dev/mem", address, SmbiosImage::zeros(32));
    }
    image.place(root, 0xF0008);
    EXPECT_EQ(readMachine(), ERROR_NO_SMBIOS_ENTRY_PTR) << "not at a paragraph";
    root.writeAt("/dev/mem", 0xF0008, SmbiosImage::zeros(32));
    root.writeAt("/dev/mem", 0xFFFF0, image.entryPoint(0xE0000));
    EXPECT_EQ(readMachine(), ERROR_CHECKSUM_INCORRECT) << "reaches out of the area";
    root.writeAt("/dev/mem", 0xF0000, image.entryPoint(0x7FFFFFFF));
    EXPECT_EQ(readMachine(), ERROR_PHY_VIRT_MAPPING) << "table outside of memory";
}

TEST_F(SmbiosLocate, DefectiveLowEntryPointIsNotReplacedByTheEfiOne)
{
    image.place(root, efiAddress, 0xE0123);
    root.write(systab, "SMBIOS=0x123458\n");
    EXPECT_EQ(vendor(), "Firmware Maker");
    std::ifstream maps("/proc/self/maps");
    const std::string mapped{std::istreambuf_iterator<char>(maps), {}};
    EXPECT_EQ(mapped.find(root.resolve("/dev/mem")), std::string::npos) << "nothing stays mapped";
    std::string spoilt = image.entryPoint(0xE0000);
    ++spoilt[8];
    root.writeAt("/dev/mem", 0xF0000, spoilt);
    EXPECT_EQ(readMachine(), ERROR_CHECKSUM_INCORRECT);
}

TEST_F(SmbiosLocate, TheKernelsCopyComesBeforeMemory)
{
    constexpr const char* entryFile = "/sys/firmware/dmi/tables/smbios_entry_point";
    constexpr const char* tableFile = "/sys/firmware/dmi/tables/DMI";
    const std::string wide = image.wideEntryPoint(0), narrow = image.entryPoint(0);
    const std::tuple<const char*, std::string, std::string, int> cases[] = {
        {"32 bits", narrow, image.table, 0},
        {"64 bits", wide, image.table, 0},
        {"spoilt", std::string(wide).replace(7, 1, "x"), image.table, ERROR_CHECKSUM_INCORRECT},
        {"cut off", wide.substr(0, 23), image.table, ERROR_CHECKSUM_INCORRECT},
        {"length 0", std::string(wide).replace(6, 1, 1, '\0'), image.table, ERROR_CHECKSUM_INCORRECT},
        {"no anchor", "_SM2_", image.table, ERROR_NO_SMBIOS_ENTRY_PTR},
        {"no table", wide, "", ERROR_NO_SMBIOS_ENTRY_PTR},
        {"table longer than told", narrow, image.table + "more", ERROR_NO_SMBIOS_ENTRY_PTR},
        {"nothing", "", image.table, ERROR_OPEN_DEVICE},
    };
    root.write(entryFile, narrow);
    root.write(tableFile, image.table);
    EXPECT_EQ(readMachine(), ERROR_OPEN_DEVICE) << "only the policy looks there";
    const common::ScopedPolicy practical(common::practicalPolicy());
    for (const auto& [name, entry, table, error] : cases) {
        root.write(entryFile, entry);
        root.write(tableFile, table);
        EXPECT_EQ(readMachine(), error) << name;
    }
    root.writeAt("/dev/mem", 0x10FFFF, SmbiosImage::zeros(1));
    root.writeAt("/dev/mem", 0xE0000, image.table);
    root.writeAt("/dev/mem", 0xF0000, image.wideEntryPoint(0xE0000));
    EXPECT_EQ(vendor(), "Firmware Maker") << "memory, where the kernel has no copy";
}

TEST_F(SmbiosLocate, FailureIsKeptForTenSecondsAndToldOnce)
{
    const common::ScopedPolicy practical(common::practicalPolicy());
    FakeClock clock;
    ScopedSeam<Clock> use(clock);
    CaughtLog log;
    ScopedSeam<common::SystemLog> catchLog(log);
    SMBIOSProtocolImpl::DeleteInstance();
    const auto instance = [] { return failureOf([] { SMBIOSProtocolImpl::CreateInstance(); }).code; };
    EXPECT_EQ(instance(), ERROR_OPEN_DEVICE);
    clock.advance(std::chrono::seconds(11));
    EXPECT_EQ(instance(), ERROR_OPEN_DEVICE);
    image.place(root);
    clock.advance(std::chrono::milliseconds(9'999));
    EXPECT_EQ(instance(), ERROR_OPEN_DEVICE);
    clock.advance(std::chrono::milliseconds(1));
    EXPECT_EQ(instance(), 0);
    SMBIOSProtocolImpl::DeleteInstance();
    EXPECT_EQ(log.lines, "the firmware tells of no processors and memory: Error in opening device \"/dev/mem\"\n");
}

TEST_F(SmbiosLocate, EfiTableLeadsToTheEntryPoint)
{
    const std::tuple<const char*, std::string, int> cases[] = {
        {"plain", "ACPI=0x1\nSMBIOS=0x123458\n", 0},
        {"decimal", "SMBIOS=1193048\n", 0},
        {"64-bit entry point named first", "SMBIOS3=0x100\nSMBIOS=0x123458\n", 0},
        {"more than 32 bits", "SMBIOS=0x500123458\n", 0},
        {"no line", "ACPI20=0x123458\n", ERROR_NO_SMBIOS_ENTRY_PTR},
        {"no equals sign", "SMBIOS 0x123458\n", ERROR_NO_SMBIOS_ENTRY_PTR},
        {"no address", "SMBIOS=\n", ERROR_NO_SMBIOS_ENTRY_PTR},
        {"elsewhere", "SMBIOS=0x123450\n", ERROR_NO_SMBIOS_ENTRY_PTR},
        {"endless line", "SMBIOS=" + std::string(10'000, '0'), ERROR_NO_SMBIOS_ENTRY_PTR},
        {"empty", "", ERROR_NO_SMBIOS_ENTRY_PTR},
    };
    image.place(root, efiAddress, 0xE0000);
    EXPECT_EQ(readMachine(), ERROR_NO_SMBIOS_ENTRY_PTR) << "no file";
    for (const auto& [name, lines, error] : cases) {
        root.write(systab, lines);
        EXPECT_EQ(readMachine(), error) << name;
    }
    std::filesystem::remove(root.resolve(systab));
    root.write("/proc/efi/systab", "SMBIOS=0x123458\n");
    EXPECT_EQ(readMachine(), 0) << "older place";
}

} // namespace

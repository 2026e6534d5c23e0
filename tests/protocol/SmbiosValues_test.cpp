#include "protocol/SMBIOSProtocolImpl.hpp"
#include "tests/support/SmbiosImage.hpp"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using Protocol::SMBIOS::SMBIOSProtocolImpl;
using testing::ElementsAre;

SMBIOSProtocolImpl readImage(const SmbiosImage& image)
{
    const std::string dump = image.dump();
    return {reinterpret_cast<const unsigned char*>(dump.data()), static_cast<unsigned>(dump.size())};
}

/// The value of a leaf, "(none)" without one.
std::string valueOf(const SMBIOSProtocolImpl& reader, const std::string& path)
{
    ResultMap result;
    reader.SMBiosSearch(path, result);
    const auto node = result.find(path);
    return node == result.end() ? "(none)" : node->second.mXNodeList.front();
}

std::vector<std::string> keysOf(const ResultMap& result)
{
    std::vector<std::string> keys;
    for (const auto& [path, node] : result)
        keys.push_back(path);
    return keys;
}

struct Row {
    const char* path;
    const char* value;
};

TEST(SmbiosValues, EveryStructureReadsAsTheStandardSays)
{
    static constexpr Row rows[] = {
        {"Type0/Vendor", "Firmware Maker"},
        {"Type0/BIOSVersion", "B01.02.0034.5"},
        {"Type0/BIOSStartingAddressSegment", "57344"},
        {"Type0/BIOSReleaseDate", "01/02/2010"},
        {"Type0/BIOSRomSize", "1024 KB"},
        {"Type0/BIOSCharacteristics/PCI is supported", "Supported"},
        {"Type0/BIOSCharacteristics/ISA is supported", "Not Supported"},
        {"Type0/BIOSCharacteristicsExtension1/USB Legacy is supported", "Supported"},
        {"Type0/BIOSCharacteristicsExtension2/Targeted content distribution is enabled", "Supported"},
        {"Type0/SystemBIOSMajorRelease", "4"},
        {"Type0/EmbeddedControllerFirmwareMinorRelease", "9"},
        {"Type1/UUID", "00112233-4455-6677-8899-aabbccddeeff"},
        {"Type1/WakeUpType", "Power Switch"},
        {"Type1/Family", "Family-1"},
        {"Type2/FeatureFlags/Board is hosting board", "Supported"},
        {"Type2/FeatureFlags/the board is removable", "Not Supported"},
        {"Type2/FeatureFlags/board is replaceable", "Supported"},
        {"Type2/BoardType", "Motherboard"},
        {"Type2/ContainObjectHandles", "259 260"},
        {"Type3/ChassisType", "Rack Mount Chassis"},
        {"Type3/ChassisLock", "Present"},
        {"Type3/PowerSupplyState", "Warning"},
        {"Type3/ThermalState", "Non-recoverable"},
        {"Type3/SecurityStatus", "None"},
        {"Type3/OEMDefined", "16909060"},
        {"Type3/ContainedElements", "0X8a0102"},
        {"Type3/SKUNumber", "CSKU"},
        {"Type4[2]/SocketDesignation", "CPU 2"},
        {"Type4[2]/ProcessorType", "Central processor"},
        {"Type4[2]/ProcessorFamily", "Xeon"},
        {"Type4[2]/ProcessorFamily_Raw", "179"},
        {"Type4[2]/ProcessorId", "0Xa5060100fffbebbf"},
        {"Type4[2]/VoltageCapability", "1200 mV"},
        {"Type4[2]/Status", "Populated, Enabled"},
        {"Type4/Status", "Unpopulated"},
        {"Type4[2]/Upgrade", "Socket LGA775"},
        {"Type4[2]/CoreEnabled", "3"},
        {"Type4[2]/ProcessorCharacteristics/64-bit Capable", "Supported"},
        {"Type7/CacheConfiguration/Level", "1"},
        {"Type7/CacheConfiguration/State", "Enabled"},
        {"Type7/CacheConfiguration/OperationalMode", "Write Back"},
        {"Type7/MaximumCacheSize", "256 KB"},
        {"Type7/InstalledSize", "64 KB"},
        {"Type7/SupportedSRAMType/Synchronous", "Supported"},
        {"Type7/Associativity", "8-way Set-associative"},
        {"Type8/ExternalConnectorType", "Access Bus (USB)"},
        {"Type9/SlotType", "PCI Express"},
        {"Type9/SlotDataBusWidth", "16x or x16"},
        {"Type9/SlotCharacteristics1/Provides 3.3 volts", "Supported"},
        {"Type9/BusNumber", "5"},
        {"Type10/DeviceType", "Video"},
        {"Type10/DeviceStatus[2]", "Disabled"},
        {"Type10/Description[2]", "Network"},
        {"Type11/Count", "2"},
        {"Type11/String[2]", "OEM two"},
        {"Type13/Flags", "Abbreviated"},
        {"Type13/Reserved", "(none)"},
        {"Type13/CurrentLanguage", "enUS"},
        {"Type16/Location", "System board or motherboard"},
        {"Type16/MaxCapacity", "8388608"},
        {"Type16[2]/MaxCapacity", "2147483648"},
        {"Type16[2]/ExtendedMaximumCapacity", "2199023255552"},
        {"Type17/Size", "4096"},
        {"Type17/ExtendedSize", "(none)"},
        {"Type17[4]/Size", "65536"},
        {"Type17[4]/ExtendedSize", "65536"},
        {"Type17/ConfiguredMemoryClockSpeed", "1066"},
        {"Type17/TypeDetails/EDO", "Supported"},
        {"Type18/ErrorType", "OK"},
        {"Type19/ExtendedEndingAddress", "8191"},
        {"Type24/HardwareSecuritySettings/PowerOnPassword", "Enabled"},
        {"Type24/HardwareSecuritySettings/KeyboardPassword", "Not Implemented"},
        {"Type24/HardwareSecuritySettings/AdministratorPassword", "Enabled"},
        {"Type24/HardwareSecuritySettings/FrontPanelReset", "Disabled"},
        {"Type38/InterfaceType", "KCS: Keyboard Controller Style"},
        {"Type38/IPMISpecRev", "2.0"},
        {"Type38/BaseAddress", "3235"},
        {"Type133/Address", "3204448256"},
    };
    const SMBIOSProtocolImpl reader = readImage(serverImage(2, 7));
    for (const Row& row : rows)
        EXPECT_EQ(valueOf(reader, std::string("/SMBIOS/") + row.path), row.value) << row.path;
    EXPECT_EQ(reader.BiosReservedAddress(), 0xBF000000U);
    EXPECT_EQ(reader.BiosReservedSize(), 0x100000U);
}

TEST(SmbiosValues, VersionSelectsFieldsAndWords)
{
    struct Version {
        unsigned major, minor;
        std::size_t fields;
        const char* skuNumber;
        const char* coreCount;
        const char* memoryType;
        const char* uuid;
        const char* reserved;
    };
    static constexpr const char* stored = "33221100-5544-7766-8899-aabbccddeeff";
    static constexpr const char* mixed = "00112233-4455-6677-8899-aabbccddeeff";
    static constexpr Version versions[] = {{2, 2, 129, "(none)", "(none)", "0X18", stored, "(none)"},
                                           {2, 3, 129, "(none)", "(none)", "0X18", stored, "(none)"},
                                           {2, 4, 135, "SKU-1", "(none)", "0X18", stored, "(none)"},
                                           {2, 5, 139, "SKU-1", "4", "0X18", stored, "(none)"},
                                           {2, 6, 144, "SKU-1", "4", "DDR3", mixed, "(none)"},
                                           {2, 7, 146, "SKU-1", "4", "DDR3", mixed, "1048576"},
                                           {2, 8, 146, "SKU-1", "4", "DDR3", mixed, "1048576"},
                                           {3, 0, 146, "SKU-1", "4", "DDR3", mixed, "1048576"},
                                           {3, 1, 129, "(none)", "(none)", "0X18", stored, "(none)"}};
    for (const Version& row : versions) {
        SCOPED_TRACE(testing::Message() << row.major << "." << row.minor);
        const SMBIOSProtocolImpl reader = readImage(serverImage(row.major, row.minor));
        std::size_t fields = 0;
        for (const auto& [type, structure] : reader.Tables())
            fields += structure.fields.size();
        EXPECT_EQ(fields, row.fields);
        EXPECT_EQ(valueOf(reader, "/SMBIOS/Type1/SKUNumber"), row.skuNumber);
        EXPECT_EQ(valueOf(reader, "/SMBIOS/Type4/CoreCount"), row.coreCount);
        EXPECT_EQ(valueOf(reader, "/SMBIOS/Type17/MemoryType"), row.memoryType);
        EXPECT_EQ(valueOf(reader, "/SMBIOS/Type1/UUID"), row.uuid);
        EXPECT_EQ(valueOf(reader, "/SMBIOS/Type133/Size"), row.reserved);
    }
}

/// A slip in an offset shows as a gap or an overlap: the standard's formatted areas have neither.
TEST(SmbiosValues, FieldsOfAStructureFollowOneAnother)
{
    const SMBIOSProtocolImpl reader = readImage(serverImage(2, 7));
    for (const auto& [type, structure] : reader.Tables()) {
        std::size_t next = 4;
        for (const auto& field : structure.fields) {
            EXPECT_EQ(field.offset, next) << int{type} << " " << field.name;
            next = field.offset + field.size();
            EXPECT_TRUE(std::ranges::is_sorted(field.values, std::less_equal<>{}, &Protocol::SMBIOS::ValueText::code))
                << field.name;
        }
    }
}

TEST(SmbiosValues, InventoryCountsWhatIsFitted)
{
    static constexpr Row rows[] = {
        {"ProcessorInfo/TotalNoOfProcessor", "2"},
        {"ProcessorInfo/TotalNoOfProcessorPresent", "1"},
        {"ProcessorInfo[1]/SocketDesignation", "CPU 2"},
        {"ProcessorInfo[1]/ClockFrequency", "133"},
        {"ProcessorInfo[2]/SocketDesignation", "(none)"},
        {"MemoryArray/TotalNoOfArray", "2"},
        {"MemoryArray[1]/TotalNoOfDevicePresent", "2"},
        {"MemoryArray[1]/NumMemoryDevices", "3"},
        {"MemoryArray[1]/MemoryErrorCorrection", "Multi-bit ECC"},
        {"MemoryArray[1]/MemoryDevice[2]/DeviceLocator", "DIMM A2"},
        {"MemoryArray[1]/MemoryDevice[2]/DevicePresent", "False"},
        {"MemoryArray[1]/MemoryDevice[3]/DevicePresent", "True"},
        {"MemoryArray[1]/MemoryDevice[3]/TypeDetails/EDO", "Supported"},
        {"MemoryArray[1]/MemoryDevice[3]/TypeDetail/Synchronous", "Supported"},
        {"MemoryArray[1]/MemoryDevice[3]/TypeDetail/EDO", "(none)"},
        {"MemoryArray[2]/TotalNoOfDevicePresent", "0"},
        {"MemoryArray[2]/MemoryDevice[2]/DeviceLocator", "DIMM B2"},
        {"MemoryArray[3]/NumMemoryDevices", "(none)"},
    };
    const SMBIOSProtocolImpl reader = readImage(serverImage(2, 7));
    for (const Row& row : rows)
        EXPECT_EQ(valueOf(reader, std::string("/SMBIOS/") + row.path), row.value) << row.path;
}

TEST(SmbiosValues, GroupsAnswerWithOneNodeAMember)
{
    const SMBIOSProtocolImpl reader = readImage(serverImage(2, 7));
    const auto search = [&reader](const char* path) {
        ResultMap result;
        reader.SMBiosSearch(path, result);
        return result;
    };
    EXPECT_THAT(keysOf(search("/SMBIOS/MemoryArray")), ElementsAre("/SMBIOS/MemoryArray[1]", "/SMBIOS/MemoryArray[2]"));
    EXPECT_EQ(search("/SMBIOS/MemoryArray[1]/MemoryDevice").size(), 3U);
    const ResultMap security = search("/SMBIOS/Type24");
    EXPECT_EQ(security.size(), 4U);
    EXPECT_EQ(security.at("/SMBIOS/Type24/HardwareSecuritySettings/PowerOnPassword").mType, NODE_LEAF);
    EXPECT_EQ(search("/SMBIOS/Type24/HardwareSecuritySettings").size(), 4U);
    EXPECT_EQ(search("/SMBIOS/Type4").count("/SMBIOS/Type4[2]"), 1U);
    EXPECT_TRUE(search("/SMBIOS/Type99").empty());
}

TEST(SmbiosValues, ChildrenAreThePathsRightBelow)
{
    const SMBIOSProtocolImpl reader = readImage(serverImage(2, 7));
    ResultMap result;
    for (const char* path : {"/SMBIOS/Type24", "/SMBIOS/Type16[2]",
                             "/SMBIOS/Type24/HardwareSecuritySettings/FrontPanelReset", "/SMBIOS/Nothing"})
        reader.SMBiosChildren(path, result);
    ASSERT_EQ(result.size(), 3U);
    EXPECT_EQ(result.at("/SMBIOS/Type24").mType, NODE_NONLEAF);
    EXPECT_THAT(result.at("/SMBIOS/Type24").mXNodeList, ElementsAre("/SMBIOS/Type24/HardwareSecuritySettings"));
    EXPECT_EQ(result.at("/SMBIOS/Type16[2]").mXNodeList.size(), 7U);
    EXPECT_THAT(result.at("/SMBIOS/Type24/HardwareSecuritySettings/FrontPanelReset").mXNodeList, ElementsAre());
}

TEST(SmbiosValues, FamiliesThatDoNotFitTheByteComeFromTheWord)
{
    const SMBIOSProtocolImpl reader = readImage([] {
        SmbiosImage image = serverImage(2, 7);
        const std::size_t processor = image.table.find("CPU 2") - 0x2A;
        image.table[processor + 6] = '\xFE';
        image.table[processor + 0x28] = '\x18';
        image.table[processor + 0x29] = '\x01';
        return image;
    }());
    EXPECT_EQ(valueOf(reader, "/SMBIOS/Type4[2]/ProcessorFamily"), "ARM");
    EXPECT_EQ(valueOf(reader, "/SMBIOS/Type4[2]/ProcessorFamily_Raw"), "280");
}

} // namespace

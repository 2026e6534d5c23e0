#include "protocol/SmbiosCatalogue.hpp"

#include "protocol/SmbiosRender.hpp"
#include "protocol/SmbiosWords.hpp"

namespace Protocol::SMBIOS {

namespace {

struct FieldRow {
    std::uint8_t structure;
    Catalogue since;
    FieldInfo field;
};

struct SubTypeRow {
    std::uint8_t structure;
    Catalogue since;
    _SubTypeInformation form;
};

constexpr FieldInfo text(std::uint8_t offset, std::string_view name)
{
    return {name, offset, FIELD_STRING, INTERPRET_STRING};
}

constexpr FieldInfo plain(std::uint8_t offset, FieldType type, std::string_view name)
{
    return {name, offset, type, INTERPRET_PLAIN};
}

constexpr FieldInfo words(std::uint8_t offset, std::string_view name, std::span<const ValueText> values,
                          FieldType type = FIELD_BYTE)
{
    return {name, offset, type, INTERPRET_VALUES, nullptr, values};
}

constexpr FieldInfo bits(std::uint8_t offset, FieldType type, std::string_view name, std::span<const ValueText> values,
                         Renderer renderer = RenderBits)
{
    return {name, offset, type, INTERPRET_VALUES, renderer, values};
}

constexpr FieldInfo special(std::uint8_t offset, FieldType type, std::string_view name, Renderer renderer,
                            std::span<const ValueText> values = {})
{
    return {name, offset, type, INTERPRET_SPECIAL, renderer, values};
}

/// The word of some bits of a packed number.
constexpr FieldInfo part(std::uint8_t offset, FieldType type, std::string_view name, std::uint8_t shift,
                         std::uint8_t width, std::span<const ValueText> values)
{
    return {name, offset, type, INTERPRET_VALUES, nullptr, values, shift, width};
}

/// Bytes that mean nothing as a number.
constexpr FieldInfo run(std::uint8_t offset, FieldType type, std::string_view name)
{
    return {name, offset, type, INTERPRET_VALUES};
}

constexpr FieldRow rows[] = {
    // BIOS Information (7.1)
    {0, v2_3, text(0x04, "Vendor")},
    {0, v2_3, text(0x05, "BIOSVersion")},
    {0, v2_3, plain(0x06, FIELD_WORD, "BIOSStartingAddressSegment")},
    {0, v2_3, text(0x08, "BIOSReleaseDate")},
    {0, v2_3, special(0x09, FIELD_BYTE, "BIOSRomSize", CalculateBIOSRomSize)},
    {0, v2_3, bits(0x0A, FIELD_QWORD, "BIOSCharacteristics", biosCharacteristics)},
    {0, v2_3, bits(0x12, FIELD_BYTE, "BIOSCharacteristicsExtension1", biosExtension1)},
    {0, v2_3, bits(0x13, FIELD_BYTE, "BIOSCharacteristicsExtension2", biosExtension2)},
    {0, v2_4, plain(0x14, FIELD_BYTE, "SystemBIOSMajorRelease")},
    {0, v2_4, plain(0x15, FIELD_BYTE, "SystemBIOSMinorRelease")},
    {0, v2_4, plain(0x16, FIELD_BYTE, "EmbeddedControllerFirmwareMajorRelease")},
    {0, v2_4, plain(0x17, FIELD_BYTE, "EmbeddedControllerFirmwareMinorRelease")},

    // System Information (7.2)
    {1, v2_3, text(0x04, "Manufacturer")},
    {1, v2_3, text(0x05, "ProductName")},
    {1, v2_3, text(0x06, "Version")},
    {1, v2_3, text(0x07, "SerialNo")},
    {1, v2_3, special(0x08, FIELD_UUID, "UUID", interpretUUID)},
    {1, v2_3, words(0x18, "WakeUpType", wakeUpTypes)},
    {1, v2_4, text(0x19, "SKUNumber")},
    {1, v2_4, text(0x1A, "Family")},

    // Base Board Information (7.3)
    {2, v2_3, text(0x04, "Manufacturer")},
    {2, v2_3, text(0x05, "Product")},
    {2, v2_3, text(0x06, "Version")},
    {2, v2_3, text(0x07, "SerialNo")},
    {2, v2_3, text(0x08, "AssetTag")},
    {2, v2_3, bits(0x09, FIELD_BYTE, "FeatureFlags", boardFeatures)},
    {2, v2_3, text(0x0A, "LocationInChassis")},
    {2, v2_3, plain(0x0B, FIELD_WORD, "ChassisHandle")},
    {2, v2_3, words(0x0D, "BoardType", boardTypes)},
    {2, v2_3, plain(0x0E, FIELD_BYTE, "NumOfObjectHandles")},
    {2, v2_3, plain(0x0F, FIELD_WORD, "ContainObjectHandles")},

    // System Enclosure or Chassis (7.4)
    {3, v2_3, text(0x04, "Manufacturer")},
    {3, v2_3, special(0x05, FIELD_BYTE, "ChassisType", RenderChassisType, chassisTypes)},
    {3, v2_3, text(0x06, "Version")},
    {3, v2_3, text(0x07, "SerialNo")},
    {3, v2_3, text(0x08, "AssetTagNo")},
    {3, v2_3, words(0x09, "BootupState", chassisStates)},
    {3, v2_3, words(0x0A, "PowerSupplyState", chassisStates)},
    {3, v2_3, words(0x0B, "ThermalState", chassisStates)},
    {3, v2_3, words(0x0C, "SecurityStatus", securityStates)},
    {3, v2_3, plain(0x0D, FIELD_DWORD, "OEMDefined")},
    {3, v2_3, plain(0x11, FIELD_BYTE, "Height")},
    {3, v2_3, plain(0x12, FIELD_BYTE, "NumOfPowerCords")},
    {3, v2_3, plain(0x13, FIELD_BYTE, "ContainedElementCount")},
    {3, v2_3, plain(0x14, FIELD_BYTE, "ContainedElementRecordLength")},
    {3, v2_3, special(0x15, FIELD_BYTE, "ContainedElements", RenderContainedElements)},

    // Processor Information (7.5)
    {4, v2_3, text(0x04, "SocketDesignation")},
    {4, v2_3, words(0x05, "ProcessorType", processorTypes)},
    {4, v2_3, words(0x06, "ProcessorFamily", processorFamilies)},
    {4, v2_3, text(0x07, "ProcessorManufacturer")},
    {4, v2_3, run(0x08, FIELD_QWORD, "ProcessorId")},
    {4, v2_3, text(0x10, "ProcessorVersion")},
    {4, v2_3, special(0x11, FIELD_BYTE, "VoltageCapability", CalculateProcessorVoltage)},
    {4, v2_3, plain(0x12, FIELD_WORD, "ClockFrequency")},
    {4, v2_3, plain(0x14, FIELD_WORD, "MaxSpeed")},
    {4, v2_3, plain(0x16, FIELD_WORD, "CurrentSpeed")},
    {4, v2_3, special(0x18, FIELD_BYTE, "Status", CalculateProcessorStatus)},
    {4, v2_3, words(0x19, "Upgrade", processorUpgrades)},
    {4, v2_3, plain(0x1A, FIELD_WORD, "L1CacheHandle")},
    {4, v2_3, plain(0x1C, FIELD_WORD, "L2CacheHandle")},
    {4, v2_3, plain(0x1E, FIELD_WORD, "L3CacheHandle")},
    {4, v2_3, text(0x20, "SerialNo")},
    {4, v2_3, text(0x21, "AssetTag")},
    {4, v2_3, text(0x22, "PartNumber")},
    {4, v2_5, plain(0x23, FIELD_BYTE, "CoreCount")},
    {4, v2_5, plain(0x24, FIELD_BYTE, "CoreEnabled")},
    {4, v2_5, plain(0x25, FIELD_BYTE, "ThreadCount")},
    {4, v2_5, bits(0x26, FIELD_WORD, "ProcessorCharacteristics", processorCharacteristics)},
    {4, v2_6, words(0x28, "ProcessorFamily2", processorFamilies, FIELD_WORD)},

    {4, v3_7, plain(0x2A, FIELD_WORD, "CoreCount2")},
    {4, v3_7, plain(0x2C, FIELD_WORD, "CoreEnabled2")},
    {4, v3_7, plain(0x2E, FIELD_WORD, "ThreadCount2")},
    {4, v3_7, plain(0x30, FIELD_WORD, "ThreadEnabled")},

    // Cache Information (7.8)
    {7, v2_3, text(0x04, "SocketDesignation")},
    {7, v2_3, special(0x05, FIELD_WORD, "CacheConfiguration", CalculateCacheConfiguration)},
    {7, v2_3, special(0x07, FIELD_WORD, "MaximumCacheSize", CalculateCacheSize)},
    {7, v2_3, special(0x09, FIELD_WORD, "InstalledSize", CalculateCacheSize)},
    {7, v2_3, bits(0x0B, FIELD_WORD, "SupportedSRAMType", sramTypes)},
    {7, v2_3, bits(0x0D, FIELD_WORD, "CurrentSRAMType", sramTypes)},
    {7, v2_3, plain(0x0F, FIELD_BYTE, "CacheSpeed")},
    {7, v2_3, words(0x10, "ErrorCorrectionType", cacheErrorCorrections)},
    {7, v2_3, words(0x11, "SystemCacheType", cacheTypes)},
    {7, v2_3, words(0x12, "Associativity", associativities)},

    // Port Connector Information (7.9)
    {8, v2_3, text(0x04, "InternalReferenceDesignator")},
    {8, v2_3, words(0x05, "InternalConnectorType", connectorTypes)},
    {8, v2_3, text(0x06, "ExternalReferenceDesignator")},
    {8, v2_3, words(0x07, "ExternalConnectorType", connectorTypes)},
    {8, v2_3, words(0x08, "PortType", portTypes)},

    // System Slots (7.10)
    {9, v2_3, text(0x04, "SlotDesignation")},
    {9, v2_3, words(0x05, "SlotType", slotTypes)},
    {9, v2_3, words(0x06, "SlotDataBusWidth", slotWidths)},
    {9, v2_3, words(0x07, "CurrentUsage", slotUsages)},
    {9, v2_3, words(0x08, "SlotLength", slotLengths)},
    {9, v2_3, plain(0x09, FIELD_WORD, "SlotID")},
    {9, v2_3, bits(0x0B, FIELD_BYTE, "SlotCharacteristics1", slotCharacteristics1)},
    {9, v2_3, bits(0x0C, FIELD_BYTE, "SlotCharacteristics2", slotCharacteristics2)},
    {9, v2_6, plain(0x0D, FIELD_WORD, "SegmentGroupNumber")},
    {9, v2_6, plain(0x0F, FIELD_BYTE, "BusNumber")},
    {9, v2_6, plain(0x10, FIELD_BYTE, "DeviceFunctionNumber")},

    {9, v3_7, plain(0x11, FIELD_BYTE, "BaseDataBusWidth")},
    {9, v3_7, plain(0x12, FIELD_BYTE, "PeerGroupCount")},
    {9, v3_7, special(0x13, FIELD_BYTE, "SlotShape", RenderSlotShape, slotWidths)},

    // On Board Devices Information (7.11)
    {10, v2_3, special(0x04, FIELD_BYTE, "DeviceType", RenderOnBoardTypes, onBoardDeviceTypes)},
    {10, v2_3, special(0x05, FIELD_BYTE, "Description", RenderOnBoardDescriptions)},

    // OEM Strings (7.12)
    {11, v2_3, special(0x04, FIELD_BYTE, "Count", RenderCountedStrings)},

    // System Configuration Options (7.13)
    {12, v3_7, special(0x04, FIELD_BYTE, "Count", RenderCountedStrings)},

    // BIOS Language Information (7.14)
    {13, v2_3, special(0x04, FIELD_BYTE, "InstallableLanguages", RenderCountedStrings)},
    {13, v2_3, special(0x05, FIELD_BYTE, "Flags", CalculateFlag)},
    {13, v2_3, plain(0x06, FIELD_RUN_15, "Reserved")},
    {13, v2_3, text(0x15, "CurrentLanguage")},

    // Physical Memory Array (7.17)
    {16, v2_3, words(0x04, "Location", arrayLocations)},
    {16, v2_3, words(0x05, "Use", arrayUses)},
    {16, v2_3, words(0x06, "MemoryErrorCorrection", arrayErrorCorrections)},
    {16, v2_3, special(0x07, FIELD_DWORD, "MaxCapacity", RenderMemoryCapacity)},
    {16, v2_3, plain(0x0B, FIELD_WORD, "MemoryErrorInfoHandle")},
    {16, v2_3, plain(0x0D, FIELD_WORD, "NumMemoryDevices")},

    // Memory Device (7.18)
    {17, v2_3, plain(0x04, FIELD_WORD, "MemoryArrayHandle")},
    {17, v2_3, plain(0x06, FIELD_WORD, "MemoryErrorInfoHandle")},
    {17, v2_3, plain(0x08, FIELD_WORD, "TotalWidth")},
    {17, v2_3, plain(0x0A, FIELD_WORD, "DataWidth")},
    {17, v2_3, special(0x0C, FIELD_WORD, "Size", RenderMemorySize)},
    {17, v2_3, words(0x0E, "FormFactor", formFactors)},
    {17, v2_3, plain(0x0F, FIELD_BYTE, "DeviceSet")},
    {17, v2_3, text(0x10, "DeviceLocator")},
    {17, v2_3, text(0x11, "BankLocator")},
    {17, v2_3, words(0x12, "MemoryType", memoryTypes)},
    {17, v2_3, bits(0x13, FIELD_WORD, "TypeDetail", typeDetails, RenderTypeDetail)},
    {17, v2_3, plain(0x15, FIELD_WORD, "Speed")},
    {17, v2_3, text(0x17, "Manufacturer")},
    {17, v2_3, text(0x18, "SerialNo")},
    {17, v2_3, text(0x19, "AssetTag")},
    {17, v2_3, text(0x1A, "PartNumber")},
    {17, v2_6, plain(0x1B, FIELD_BYTE, "Attributes")},

    {17, v3_7, plain(0x22, FIELD_WORD, "MinimumVoltage")},
    {17, v3_7, plain(0x24, FIELD_WORD, "MaximumVoltage")},
    {17, v3_7, plain(0x26, FIELD_WORD, "ConfiguredVoltage")},
    {17, v3_7, words(0x28, "MemoryTechnology", memoryTechnologies)},
    {17, v3_7, bits(0x29, FIELD_WORD, "OperatingModes", operatingModes)},
    {17, v3_7, text(0x2B, "FirmwareVersion")},
    {17, v3_7, run(0x2C, FIELD_WORD, "ModuleManufacturerID")},
    {17, v3_7, run(0x2E, FIELD_WORD, "ModuleProductID")},
    {17, v3_7, run(0x30, FIELD_WORD, "ControllerManufacturerID")},
    {17, v3_7, run(0x32, FIELD_WORD, "ControllerProductID")},
    {17, v3_7, special(0x34, FIELD_QWORD, "NonVolatileSize", RenderPortionSize)},
    {17, v3_7, special(0x3C, FIELD_QWORD, "VolatileSize", RenderPortionSize)},
    {17, v3_7, special(0x44, FIELD_QWORD, "CacheSize", RenderPortionSize)},
    {17, v3_7, special(0x4C, FIELD_QWORD, "LogicalSize", RenderPortionSize)},
    {17, v3_7, run(0x5C, FIELD_WORD, "PMIC0ManufacturerID")},
    {17, v3_7, run(0x5E, FIELD_WORD, "PMIC0Revision")},
    {17, v3_7, run(0x60, FIELD_WORD, "RCDManufacturerID")},
    {17, v3_7, run(0x62, FIELD_WORD, "RCDRevision")},

    // 32-bit Memory Error Information (7.19)
    {18, v2_3, words(0x04, "ErrorType", memoryErrorTypes)},
    {18, v2_3, words(0x05, "ErrorGranularity", errorGranularities)},
    {18, v2_3, words(0x06, "ErrorOperation", errorOperations)},
    {18, v2_3, plain(0x07, FIELD_DWORD, "VendorSyndrome")},
    {18, v2_3, plain(0x0B, FIELD_DWORD, "MemoryArrayErrorAddress")},
    {18, v2_3, plain(0x0F, FIELD_DWORD, "DeviceErrorAddress")},
    {18, v2_3, plain(0x13, FIELD_DWORD, "ErrorResolution")},

    // Memory Array Mapped Address (7.20)
    {19, v2_3, plain(0x04, FIELD_DWORD, "StartingAddress")},
    {19, v2_3, plain(0x08, FIELD_DWORD, "EndingAddress")},
    {19, v2_3, plain(0x0C, FIELD_WORD, "MemoryArrayHandle")},
    {19, v2_3, plain(0x0E, FIELD_BYTE, "PartitionWidth")},

    // Hardware Security (7.25)
    {24, v2_3, special(0x04, FIELD_BYTE, "HardwareSecuritySettings", CalculateHardwareSecuritySettings)},

    // Voltage Probe, in mV (7.27)
    {26, v3_7, text(0x04, "Description")},
    {26, v3_7, part(0x05, FIELD_BYTE, "Location", 0, 5, electricLocations)},
    {26, v3_7, part(0x05, FIELD_BYTE, "Status", 5, 3, probeStates)},
    {26, v3_7, special(0x06, FIELD_WORD, "MaximumValue", RenderProbeValue)},
    {26, v3_7, special(0x08, FIELD_WORD, "MinimumValue", RenderProbeValue)},
    {26, v3_7, special(0x0A, FIELD_WORD, "Resolution", RenderProbeValue)},
    {26, v3_7, special(0x0C, FIELD_WORD, "Tolerance", RenderProbeValue)},
    {26, v3_7, special(0x0E, FIELD_WORD, "Accuracy", RenderProbeValue)},
    {26, v3_7, plain(0x10, FIELD_DWORD, "OEMDefined")},
    {26, v3_7, special(0x14, FIELD_WORD, "NominalValue", RenderProbeValue)},

    // Cooling Device (7.28)
    {27, v3_7, plain(0x04, FIELD_WORD, "TemperatureProbeHandle")},
    {27, v3_7, part(0x06, FIELD_BYTE, "DeviceType", 0, 5, coolingTypes)},
    {27, v3_7, part(0x06, FIELD_BYTE, "Status", 5, 3, probeStates)},
    {27, v3_7, plain(0x07, FIELD_BYTE, "CoolingUnitGroup")},
    {27, v3_7, plain(0x08, FIELD_DWORD, "OEMDefined")},
    {27, v3_7, special(0x0C, FIELD_WORD, "NominalSpeed", RenderRating)},
    {27, v3_7, text(0x0E, "Description")},

    // Temperature Probe, in tenths of a degree Celsius (7.29)
    {28, v3_7, text(0x04, "Description")},
    {28, v3_7, part(0x05, FIELD_BYTE, "Location", 0, 5, probeLocations)},
    {28, v3_7, part(0x05, FIELD_BYTE, "Status", 5, 3, probeStates)},
    {28, v3_7, special(0x06, FIELD_WORD, "MaximumValue", RenderProbeValue)},
    {28, v3_7, special(0x08, FIELD_WORD, "MinimumValue", RenderProbeValue)},
    {28, v3_7, special(0x0A, FIELD_WORD, "Resolution", RenderProbeValue)},
    {28, v3_7, special(0x0C, FIELD_WORD, "Tolerance", RenderProbeValue)},
    {28, v3_7, special(0x0E, FIELD_WORD, "Accuracy", RenderProbeValue)},
    {28, v3_7, plain(0x10, FIELD_DWORD, "OEMDefined")},
    {28, v3_7, special(0x14, FIELD_WORD, "NominalValue", RenderProbeValue)},

    // Electrical Current Probe, in mA (7.30)
    {29, v3_7, text(0x04, "Description")},
    {29, v3_7, part(0x05, FIELD_BYTE, "Location", 0, 5, electricLocations)},
    {29, v3_7, part(0x05, FIELD_BYTE, "Status", 5, 3, probeStates)},
    {29, v3_7, special(0x06, FIELD_WORD, "MaximumValue", RenderProbeValue)},
    {29, v3_7, special(0x08, FIELD_WORD, "MinimumValue", RenderProbeValue)},
    {29, v3_7, special(0x0A, FIELD_WORD, "Resolution", RenderProbeValue)},
    {29, v3_7, special(0x0C, FIELD_WORD, "Tolerance", RenderProbeValue)},
    {29, v3_7, special(0x0E, FIELD_WORD, "Accuracy", RenderProbeValue)},
    {29, v3_7, plain(0x10, FIELD_DWORD, "OEMDefined")},
    {29, v3_7, special(0x14, FIELD_WORD, "NominalValue", RenderProbeValue)},

    // System Boot Information (7.33)
    {32, v3_7, words(0x0A, "BootStatus", bootStates)},

    // IPMI Device Information (7.39)
    {38, v2_3, words(0x04, "InterfaceType", ipmiInterfaces)},
    {38, v2_3, special(0x05, FIELD_BYTE, "IPMISpecRev", CalculateIPMISpecRev)},
    {38, v2_3, plain(0x06, FIELD_BYTE, "I2CSlaveAddress")},
    {38, v2_3, plain(0x07, FIELD_BYTE, "NVStorageDeviceAddress")},
    {38, v2_3, plain(0x08, FIELD_QWORD, "BaseAddress")},
    {38, v2_3, plain(0x10, FIELD_BYTE, "BaseAddressModifier")},
    {38, v2_3, plain(0x11, FIELD_BYTE, "InterruptNumber")},

    // System Power Supply (7.40)
    {39, v3_7, plain(0x04, FIELD_BYTE, "PowerUnitGroup")},
    {39, v3_7, text(0x05, "Location")},
    {39, v3_7, text(0x06, "DeviceName")},
    {39, v3_7, text(0x07, "Manufacturer")},
    {39, v3_7, text(0x08, "SerialNo")},
    {39, v3_7, text(0x09, "AssetTag")},
    {39, v3_7, text(0x0A, "ModelPartNumber")},
    {39, v3_7, text(0x0B, "RevisionLevel")},
    {39, v3_7, special(0x0C, FIELD_WORD, "MaxPowerCapacity", RenderRating)},
    {39, v3_7, part(0x0E, FIELD_WORD, "HotReplaceable", 0, 1, yesOrNo)},
    {39, v3_7, part(0x0E, FIELD_WORD, "Present", 1, 1, yesOrNo)},
    {39, v3_7, part(0x0E, FIELD_WORD, "Unplugged", 2, 1, yesOrNo)},
    {39, v3_7, part(0x0E, FIELD_WORD, "InputVoltageRangeSwitching", 3, 4, supplyRanges)},
    {39, v3_7, part(0x0E, FIELD_WORD, "Status", 7, 3, probeStates)},
    {39, v3_7, part(0x0E, FIELD_WORD, "SupplyType", 10, 4, supplyTypes)},
    {39, v3_7, plain(0x10, FIELD_WORD, "InputVoltageProbeHandle")},
    {39, v3_7, plain(0x12, FIELD_WORD, "CoolingDeviceHandle")},
    {39, v3_7, plain(0x14, FIELD_WORD, "InputCurrentProbeHandle")},

    // On Board Devices Extended Information (7.42)
    {41, v3_7, text(0x04, "ReferenceDesignation")},
    {41, v3_7, part(0x05, FIELD_BYTE, "DeviceType", 0, 7, onBoardDeviceTypes)},
    {41, v3_7, part(0x05, FIELD_BYTE, "DeviceStatus", 7, 1, deviceStates)},
    {41, v3_7, plain(0x06, FIELD_BYTE, "DeviceTypeInstance")},
    {41, v3_7, plain(0x07, FIELD_WORD, "SegmentGroupNumber")},
    {41, v3_7, plain(0x09, FIELD_BYTE, "BusNumber")},
    {41, v3_7, plain(0x0A, FIELD_BYTE, "DeviceFunctionNumber")},

    // TPM Device (7.44)
    {43, v3_7, special(0x04, FIELD_DWORD, "VendorID", RenderVendorId)},
    {43, v3_7, plain(0x08, FIELD_BYTE, "MajorSpecVersion")},
    {43, v3_7, plain(0x09, FIELD_BYTE, "MinorSpecVersion")},
    {43, v3_7, run(0x0A, FIELD_DWORD, "FirmwareVersion1")},
    {43, v3_7, run(0x0E, FIELD_DWORD, "FirmwareVersion2")},
    {43, v3_7, text(0x12, "Description")},
    {43, v3_7, bits(0x13, FIELD_QWORD, "Characteristics", tpmCharacteristics)},
    {43, v3_7, plain(0x1B, FIELD_DWORD, "OEMDefined")},

    // Firmware Inventory Information (7.46)
    {45, v3_7, text(0x04, "ComponentName")},
    {45, v3_7, text(0x05, "Version")},
    {45, v3_7, text(0x07, "FirmwareID")},
    {45, v3_7, text(0x09, "ReleaseDate")},
    {45, v3_7, text(0x0A, "Manufacturer")},
    {45, v3_7, text(0x0B, "LowestSupportedVersion")},
    {45, v3_7, special(0x0C, FIELD_QWORD, "ImageSize", RenderImageSize)},
    {45, v3_7, bits(0x14, FIELD_WORD, "Characteristics", firmwareCharacteristics)},
    {45, v3_7, words(0x16, "State", firmwareStates)},
    {45, v3_7, plain(0x17, FIELD_BYTE, "NumAssociatedComponents")},

    // String Property (7.47)
    {46, v3_7, words(0x04, "PropertyID", stringProperties, FIELD_WORD)},
    {46, v3_7, text(0x06, "PropertyValue")},
    {46, v3_7, plain(0x07, FIELD_WORD, "ParentHandle")},

    // Memory that the firmware keeps for itself, in the range of types that the standard leaves to makers
    {133, v2_7, plain(0x04, FIELD_DWORD, "Address")},
    {133, v2_7, plain(0x08, FIELD_DWORD, "Size")},
};

/// What does not fit into its field, whose highest value then points to a longer one, and what firmware of SMBIOS 2.7
/// and later appends.
constexpr SubTypeRow subTypeRows[] = {
    {0, v3_7, {0x09, 1, 0xFF, special(0x18, FIELD_WORD, "BIOSRomSize", CalculateExtendedRomSize)}},
    {3, v2_7, {0, 0, 0, special(0x15, FIELD_BYTE, "SKUNumber", RenderChassisSku)}},
    {4, v2_6, {0x06, 1, 0xFE, words(0x28, "ProcessorFamily", processorFamilies, FIELD_WORD)}},
    {4, v3_7, {0x23, 1, 0xFF, special(0x2A, FIELD_WORD, "CoreCount", RenderWideCount)}},
    {4, v3_7, {0x24, 1, 0xFF, special(0x2C, FIELD_WORD, "CoreEnabled", RenderWideCount)}},
    {4, v3_7, {0x25, 1, 0xFF, special(0x2E, FIELD_WORD, "ThreadCount", RenderWideCount)}},
    {7, v3_7, {0x07, 2, 0xFFFF, special(0x13, FIELD_DWORD, "MaximumCacheSize", CalculateWideCacheSize)}},
    {7, v3_7, {0x09, 2, 0xFFFF, special(0x17, FIELD_DWORD, "InstalledSize", CalculateWideCacheSize)}},
    {16, v2_7, {0x07, 4, 0x80000000, plain(0x0F, FIELD_QWORD, "ExtendedMaximumCapacity")}},
    {17, v2_7, {0x0C, 2, 0x7FFF, plain(0x1C, FIELD_DWORD, "ExtendedSize")}},
    {17, v2_7, {0, 0, 0, plain(0x20, FIELD_WORD, "ConfiguredMemoryClockSpeed")}},
    {17, v3_7, {0x15, 2, 0xFFFF, special(0x54, FIELD_DWORD, "Speed", RenderWideSpeed)}},
    {17, v3_7, {0x20, 2, 0xFFFF, special(0x58, FIELD_DWORD, "ConfiguredMemoryClockSpeed", RenderWideSpeed)}},
    {19, v2_7, {0x04, 4, 0xFFFFFFFF, plain(0x0F, FIELD_QWORD, "ExtendedStartingAddress")}},
    {19, v2_7, {0x04, 4, 0xFFFFFFFF, plain(0x17, FIELD_QWORD, "ExtendedEndingAddress")}},
};

} // namespace

SMBCatalogue buildCatalogue(Catalogue catalogue)
{
    SMBCatalogue tables;
    for (const FieldRow& row : rows)
        if (row.since <= catalogue)
            tables[row.structure].fields.push_back(row.field);
    return tables;
}

void addSubTypes(SMBCatalogue& tables, Catalogue catalogue)
{
    for (const SubTypeRow& row : subTypeRows)
        if (row.since <= catalogue)
            tables[row.structure].subTypes.push_back(row.form);
}

} // namespace Protocol::SMBIOS

#pragma once

#include <string>
#include <vector>

/// Reads processors and memory through the query cache, and turns the firmware's words into numbers. Every failure is
/// traced and swallowed: what could not be read stays zero or empty.

enum PROCESSOR_TYPE : int {
    PRT_OTHER = 1,
    PRT_CENTRAL_PROCESSOR = 3,
    PRT_MATH_PROCESSOR,
    PRT_DSP_PROCESSOR,
    PRT_VIDEO_PROCESSOR,
};

/// From MDT_DDR2_FB_DIMM on the numbers are not those of the SMBIOS table.
enum MEMORY_DEVICE_TYPE : int {
    MDT_OTHER = 1,
    MDT_UNKNOWN,
    MDT_DRAM,
    MDT_EDRAM,
    MDT_VRAM,
    MDT_SRAM,
    MDT_RAM,
    MDT_ROM,
    MDT_FLASH,
    MDT_EEPROM,
    MDT_FEPROM,
    MDT_EPROM,
    MDT_CDRAM,
    MDT_3DRAM,
    MDT_SDRAM,
    MDT_SGRAM,
    MDT_RDRAM,
    MDT_DDR,
    MDT_DDR2,
    MDT_DDR2_FB_DIMM,
    MDT_DDR3,
    MDT_DDR4,
};

enum MEMORY_FORM_FACTOR : int {
    MDF_OTHER = 1,
    MDF_UNKNOWN,
    MDF_SIMM,
    MDF_SIP,
    MDF_CHIP,
    MDF_DIP,
    MDF_ZIP,
    MDF_PROPRIETARY_CARD,
    MDF_DIMM,
    MDF_TSOP,
    MDF_ROW_OF_CHIPS,
    MDF_RIMM,
    MDF_SODIMM,
    MDF_SRIMM,
    MDF_FB_DIMM,
    MDF_RESERVED,
};

namespace client::readings {

/// A text of the firmware, of which 255 characters are kept.
using InventoryText = char[256];

/// An array that holds modules, and the places where they are. All are counted from 1.
struct MemoryArrayDetails {
    int array = 0;
    std::vector<int> devices;
};

} // namespace client::readings

struct SMBIOS_PROCESSOR_INFO {
    client::readings::InventoryText manufacturer;
    client::readings::InventoryText processorId;
    client::readings::InventoryText version;
    client::readings::InventoryText partNumber;
    client::readings::InventoryText socketDesignation;
    client::readings::InventoryText unnamed; ///< words that have no number here, with commas
    int type_;                               ///< PROCESSOR_TYPE
    int family;                              ///< SMBIOS processor family (DSP0134, 7.5.2)
    int maxSpeed;                            ///< MHz
    int currentSpeed;                        ///< MHz
    int externalClock;                       ///< MHz
    int voltage;                             ///< mV
    int upgrade;                             ///< SMBIOS processor upgrade (DSP0134, 7.5.5), up to 24
    int cores;
    int threads;
};

struct SMBIOS_MEMORY_ARRAY_INFO {
    client::readings::InventoryText unnamed; ///< as of processors
    int use;                                 ///< DSP0134, 7.17.2
    int errorCorrection;                     ///< DSP0134, 7.17.3
    int location;                            ///< 3 for the system board, 0 for every other place
    int errorInfoHandle;
    int numDevices;  ///< places, empty ones with them
    int maxCapacity; ///< KB
    int devicesPresent;
};

struct SMBIOS_MEMORY_DEVICE_INFO {
    client::readings::InventoryText bankLocator;
    client::readings::InventoryText manufacturer;
    client::readings::InventoryText serialNumber;
    client::readings::InventoryText assetTag;
    client::readings::InventoryText deviceLocator;
    client::readings::InventoryText partNumber;
    client::readings::InventoryText technology; ///< as a word
    client::readings::InventoryText unnamed;    ///< as of processors
    int totalWidth;                             ///< bits
    int dataWidth;                              ///< bits
    int size;                                   ///< MB
    int speed;                                  ///< MHz
    int formFactor;                             ///< MEMORY_FORM_FACTOR
    int memoryType;                             ///< MEMORY_DEVICE_TYPE
    int typeDetail;                             ///< bits of DSP0134, 7.18.3
};

/// Reads the number that `query` answers; 0 without one.
void ExecuteGetQuery(const char* query, int* out);
/// One query for everything below `prefix`.
void ExecuteProcessorInfoQuery(const std::string& prefix, SMBIOS_PROCESSOR_INFO& info);
void ExecuteMemoryInfoQuery(const std::string& prefix, SMBIOS_MEMORY_ARRAY_INFO& info);
void ExecuteMemoryDeviceInfoQuery(const std::string& prefix, SMBIOS_MEMORY_DEVICE_INFO& info);

/// All return 0. Processors that are fitted, arrays and places of modules are counted from 1.
int getNumberOfProcessorPresent(int* count);
int getNumberOfProcessor(int* count);
int getNumberOfPhysicalMemoryArray(int* count);
int getNumberOfMemoryDevicePresent(int array, int* count);
int getNumberOfMemoryDevice(int array, int* count);
int getProcessorPresentInfo(int processor, SMBIOS_PROCESSOR_INFO& info);
int getPhyMemDevArrayInfo(int array, SMBIOS_MEMORY_ARRAY_INFO& info);
int getMemoryDeviceInfo(int array, int device, SMBIOS_MEMORY_DEVICE_INFO& info);

/// Appends every array that holds modules, with their places. A failure leaves what has been gathered.
void GetMemoryArrayDetails(std::vector<client::readings::MemoryArrayDetails>& out);

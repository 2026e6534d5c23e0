#pragma once

#include "client/readings/InventoryAcquisition.hpp"

#include <string_view>

namespace client::readings {

/// Words of the firmware's inventory and the numbers that the tables show for them.

struct WordNumber {
    std::string_view word;
    int number;
};

inline constexpr WordNumber processorTypeWords[] = {
    {"other", PRT_OTHER},
    {"Central processor", PRT_CENTRAL_PROCESSOR},
    {"mathProcessor", PRT_MATH_PROCESSOR},
    {"dspProcessor", PRT_DSP_PROCESSOR},
    {"videoProcessor", PRT_VIDEO_PROCESSOR},
};

/// The families of servers; all others are taken by their code.
inline constexpr WordNumber processorFamilyWords[] = {
    {"Xeon", 0xB3},
    {"Xeon MP", 0xB5},
};

inline constexpr WordNumber processorUpgradeWords[] = {
    {"Other", 1},
    {"Unknown", 2},
    {"Daughter Board", 3},
    {"ZIF Socket", 4},
    {"Replaceable Piggy Back", 5},
    {"None", 6},
    {"LIF Socket", 7},
    {"Slot 1", 8},
    {"Slot 2", 9},
    {"370-pin socket", 10},
    {"Slot A", 11},
    {"Slot M", 12},
    {"Socket 423", 13},
    {"Socket A", 14},
    {"Socket 478", 15},
    {"Socket 754", 16},
    {"Socket 940", 17},
    {"Socket 939", 18},
    {"Socket mPGA604", 19},
    {"Socket LGA771", 20},
    {"Socket LGA775", 21},
    {"Socket S1", 22},
    {"Socket AM2", 23},
    {"Socket F", 24},
};

inline constexpr WordNumber arrayUseWords[] = {
    {"Other", 1},        {"Unknown", 2},      {"System memory", 3},
    {"Video memory", 4}, {"Flash memory", 5}, {"Non Volatile memory", 6},
    {"Cache memory", 7},
};

inline constexpr WordNumber errorCorrectionWords[] = {
    {"Other", 1}, {"Unknown", 2}, {"None", 3}, {"Parity", 4}, {"Single-bit ECC", 5}, {"Multi-bit ECC", 6}, {"CRC", 7},
};

inline constexpr WordNumber arrayLocationWords[] = {
    {"System board or motherboard", 3},
};

inline constexpr WordNumber memoryTypeWords[] = {
    {"Other", MDT_OTHER}, {"Unknown", MDT_UNKNOWN}, {"DRAM", MDT_DRAM},     {"EDRAM", MDT_EDRAM},
    {"VRAM", MDT_VRAM},   {"SRAM", MDT_SRAM},       {"RAM", MDT_RAM},       {"ROM", MDT_ROM},
    {"FLASH", MDT_FLASH}, {"EEPROM", MDT_EEPROM},   {"FEPROM", MDT_FEPROM}, {"EPROM", MDT_EPROM},
    {"CDRAM", MDT_CDRAM}, {"3DRAM", MDT_3DRAM},     {"SDRAM", MDT_SDRAM},   {"SGRAM", MDT_SGRAM},
    {"RDRAM", MDT_RDRAM}, {"DDR", MDT_DDR},         {"DDR2", MDT_DDR2},     {"DDR2 FB-DIMM", MDT_DDR2_FB_DIMM},
    {"DDR3", MDT_DDR3},   {"DDR4", MDT_DDR4},
};

inline constexpr WordNumber formFactorWords[] = {
    {"Other", MDF_OTHER},
    {"Unknown", MDF_UNKNOWN},
    {"SIMM", MDF_SIMM},
    {"SIP", MDF_SIP},
    {"Chip", MDF_CHIP},
    {"DIP", MDF_DIP},
    {"ZIP", MDF_ZIP},
    {"ProprietaryCard", MDF_PROPRIETARY_CARD},
    {"DIMM", MDF_DIMM},
    {"TSOP", MDF_TSOP},
    {"RowOfChips", MDF_ROW_OF_CHIPS},
    {"RIMM", MDF_RIMM},
    {"SODIMM", MDF_SODIMM},
    {"SRIMM", MDF_SRIMM},
    {"FB-DIMM", MDF_FB_DIMM},
    {"Reserved", MDF_RESERVED},
};

/// Flags of a module's type detail. One has a path that is spelt otherwise: that is where its answer is.
inline constexpr WordNumber typeDetailBits[] = {
    {"/TypeDetail/Fast-paged", 8},      {"/TypeDetail/Static column", 16}, {"/TypeDetail/Pseudo-static", 32},
    {"/TypeDetail/RAMBUS", 64},         {"/TypeDetail/Synchronous", 128},  {"/TypeDetail/CMOS", 256},
    {"/TypeDetails/EDO", 512},          {"/TypeDetail/Window DRAM", 1024}, {"/TypeDetail/Cache DRAM", 2048},
    {"/TypeDetail/Non-volatile", 4096},
};

} // namespace client::readings

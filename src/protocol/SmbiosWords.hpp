#pragma once

#include "protocol/SmbiosTypes.hpp"

/// Value maps of the SMBIOS standard, sorted by code; the numbers in brackets are sections of DSP0134. Words that other
/// parts of the system compare with stand as those parts spell them.

namespace Protocol::SMBIOS {

/// Base board types (7.3.2).
inline constexpr ValueText boardTypes[] = {
    {0x01, "Unknown"},
    {0x02, "Other"},
    {0x03, "Server Blade"},
    {0x04, "Connectivity Switch"},
    {0x05, "System Management Module"},
    {0x06, "Processor Module"},
    {0x07, "I/O Module"},
    {0x08, "Memory Module"},
    {0x09, "Daughter Board"},
    {0x0A, "Motherboard"},
    {0x0B, "Processor+Memory Module"},
    {0x0C, "Processor+IO Module"},
    {0x0D, "Interconnect Board"},
};

/// Chassis types (7.4.1), behind the lock bit.
inline constexpr ValueText chassisTypes[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "Desktop"},
    {0x04, "Low Profile Desktop"},
    {0x05, "Pizza Box"},
    {0x06, "Mini Tower"},
    {0x07, "Tower"},
    {0x08, "Portable"},
    {0x09, "Laptop"},
    {0x0A, "Notebook"},
    {0x0B, "Hand Held"},
    {0x0C, "Docking Station"},
    {0x0D, "All In One"},
    {0x0E, "Sub Notebook"},
    {0x0F, "Space-saving"},
    {0x10, "Lunch Box"},
    {0x11, "Main Server Chassis"},
    {0x12, "Expansion Chassis"},
    {0x13, "Sub Chassis"},
    {0x14, "Bus Expansion Chassis"},
    {0x15, "Peripheral Chassis"},
    {0x16, "RAID Chassis"},
    {0x17, "Rack Mount Chassis"},
    {0x18, "Sealed-case PC", v2_5},
    {0x19, "Multi-system", v2_5},
    {0x1A, "CompactPCI", v2_5},
    {0x1B, "AdvancedTCA", v2_5},
    {0x1C, "Blade", v2_6},
    {0x1D, "Blade Enclosure", v2_6},
    {0x1E, "Tablet", v2_7},
    {0x1F, "Convertible", v2_7},
    {0x20, "Detachable", v2_7},
    {0x21, "IoT Gateway", v2_7},
    {0x22, "Embedded PC", v2_7},
    {0x23, "Mini PC", v2_7},
    {0x24, "Stick PC", v2_7},
};

/// States of chassis, power supply and temperature (7.4.2).
inline constexpr ValueText chassisStates[] = {
    {0x01, "Other"},   {0x02, "Unknown"},  {0x03, "Safe"},
    {0x04, "Warning"}, {0x05, "Critical"}, {0x06, "Non-recoverable"},
};

/// Security states of the chassis (7.4.3).
inline constexpr ValueText securityStates[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "None"},
    {0x04, "External interface locked out"},
    {0x05, "External interface enabled"},
};

/// Processor types (7.5.1), in the words that the inventory asks for.
inline constexpr ValueText processorTypes[] = {
    {0x01, "other"},         {0x02, "unknown"},      {0x03, "Central processor"},
    {0x04, "mathProcessor"}, {0x05, "dspProcessor"}, {0x06, "videoProcessor"},
};

/// Processor families (7.5.2), of the byte and of the word.
inline constexpr ValueText processorFamilies[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "8086"},
    {0x04, "80286"},
    {0x05, "80386"},
    {0x06, "80486"},
    {0x07, "8087"},
    {0x08, "80287"},
    {0x09, "80387"},
    {0x0A, "80487"},
    {0x0B, "Pentium"},
    {0x0C, "Pentium Pro"},
    {0x0D, "Pentium II"},
    {0x0E, "Pentium MMX"},
    {0x0F, "Celeron"},
    {0x10, "Pentium II Xeon"},
    {0x11, "Pentium III"},
    {0x12, "M1"},
    {0x13, "M2"},
    {0x14, "Celeron M", v2_4},
    {0x15, "Pentium 4 HT", v2_4},
    {0x18, "Duron"},
    {0x19, "K5"},
    {0x1A, "K6"},
    {0x1B, "K6-2"},
    {0x1C, "K6-3"},
    {0x1D, "Athlon"},
    {0x1E, "AMD29000"},
    {0x1F, "K6-2+"},
    {0x20, "Power PC"},
    {0x21, "Power PC 601"},
    {0x22, "Power PC 603"},
    {0x23, "Power PC 603+"},
    {0x24, "Power PC 604"},
    {0x25, "Power PC 620"},
    {0x26, "Power PC x704"},
    {0x27, "Power PC 750"},
    {0x28, "Core Duo", v2_6},
    {0x29, "Core Duo Mobile", v2_6},
    {0x2A, "Core Solo Mobile", v2_6},
    {0x2B, "Atom", v2_6},
    {0x2C, "Core M", v2_7},
    {0x2D, "Core m3", v2_7},
    {0x2E, "Core m5", v2_7},
    {0x2F, "Core m7", v2_7},
    {0x30, "Alpha"},
    {0x31, "Alpha 21064"},
    {0x32, "Alpha 21066"},
    {0x33, "Alpha 21164"},
    {0x34, "Alpha 21164PC"},
    {0x35, "Alpha 21164a"},
    {0x36, "Alpha 21264"},
    {0x37, "Alpha 21364"},
    {0x38, "Turion II Ultra Dual-Core Mobile M", v2_7},
    {0x39, "Turion II Dual-Core Mobile M", v2_7},
    {0x3A, "Athlon II Dual-Core M", v2_7},
    {0x3B, "Opteron 6100", v2_7},
    {0x3C, "Opteron 4100", v2_7},
    {0x3D, "Opteron 6200", v2_7},
    {0x3E, "Opteron 4200", v2_7},
    {0x3F, "FX", v2_7},
    {0x40, "MIPS"},
    {0x41, "MIPS R4000"},
    {0x42, "MIPS R4200"},
    {0x43, "MIPS R4400"},
    {0x44, "MIPS R4600"},
    {0x45, "MIPS R10000"},
    {0x46, "C-Series", v2_7},
    {0x47, "E-Series", v2_7},
    {0x48, "A-Series", v2_7},
    {0x49, "G-Series", v2_7},
    {0x4A, "Z-Series", v2_7},
    {0x4B, "R-Series", v2_7},
    {0x4C, "Opteron 4300", v2_7},
    {0x4D, "Opteron 6300", v2_7},
    {0x4E, "Opteron 3300", v2_7},
    {0x4F, "FirePro", v2_7},
    {0x50, "SPARC"},
    {0x51, "SuperSPARC"},
    {0x52, "MicroSPARC II"},
    {0x53, "MicroSPARC IIep"},
    {0x54, "UltraSPARC"},
    {0x55, "UltraSPARC II"},
    {0x56, "UltraSPARC IIi"},
    {0x57, "UltraSPARC III"},
    {0x58, "UltraSPARC IIIi"},
    {0x60, "68040"},
    {0x61, "68xxx"},
    {0x62, "68000"},
    {0x63, "68010"},
    {0x64, "68020"},
    {0x65, "68030"},
    {0x66, "Athlon X4", v2_7},
    {0x67, "Opteron X1000", v2_7},
    {0x68, "Opteron X2000", v2_7},
    {0x69, "Opteron A-Series", v2_7},
    {0x6A, "Opteron X3000", v2_7},
    {0x6B, "Zen", v2_7},
    {0x70, "Hobbit"},
    {0x78, "Crusoe TM5000"},
    {0x79, "Crusoe TM3000"},
    {0x7A, "Efficeon TM8000", v2_4},
    {0x80, "Weitek"},
    {0x82, "Itanium"},
    {0x83, "Athlon 64", v2_4},
    {0x84, "Opteron", v2_4},
    {0x85, "Sempron", v2_4},
    {0x86, "Turion 64", v2_4},
    {0x87, "Dual-Core Opteron", v2_5},
    {0x88, "Athlon 64 X2", v2_5},
    {0x89, "Turion 64 X2", v2_5},
    {0x8A, "Quad-Core Opteron", v2_6},
    {0x8B, "Third-Generation Opteron", v2_6},
    {0x8C, "Phenom FX", v2_6},
    {0x8D, "Phenom X4", v2_6},
    {0x8E, "Phenom X2", v2_6},
    {0x8F, "Athlon X2", v2_6},
    {0x90, "PA-RISC"},
    {0x91, "PA-RISC 8500"},
    {0x92, "PA-RISC 8000"},
    {0x93, "PA-RISC 7300LC"},
    {0x94, "PA-RISC 7200"},
    {0x95, "PA-RISC 7100LC"},
    {0x96, "PA-RISC 7100"},
    {0xA0, "V30"},
    {0xA1, "Quad-Core Xeon 3200", v2_6},
    {0xA2, "Dual-Core Xeon 3000", v2_6},
    {0xA3, "Quad-Core Xeon 5300", v2_6},
    {0xA4, "Dual-Core Xeon 5100", v2_6},
    {0xA5, "Dual-Core Xeon 5000", v2_6},
    {0xA6, "Dual-Core Xeon LV", v2_6},
    {0xA7, "Dual-Core Xeon ULV", v2_6},
    {0xA8, "Dual-Core Xeon 7100", v2_6},
    {0xA9, "Quad-Core Xeon 5400", v2_6},
    {0xAA, "Quad-Core Xeon", v2_6},
    {0xAB, "Dual-Core Xeon 5200", v2_6},
    {0xAC, "Dual-Core Xeon 7200", v2_6},
    {0xAD, "Quad-Core Xeon 7300", v2_6},
    {0xAE, "Quad-Core Xeon 7400", v2_6},
    {0xAF, "Multi-Core Xeon 7400", v2_6},
    {0xB0, "Pentium III Xeon"},
    {0xB1, "Pentium III Speedstep"},
    {0xB2, "Pentium 4"},
    {0xB3, "Xeon"},
    {0xB4, "AS400"},
    {0xB5, "Xeon MP"},
    {0xB6, "Athlon XP"},
    {0xB7, "Athlon MP"},
    {0xB8, "Itanium 2"},
    {0xB9, "Pentium M", v2_4},
    {0xBA, "Celeron D", v2_4},
    {0xBB, "Pentium D", v2_4},
    {0xBC, "Pentium EE", v2_4},
    {0xBD, "Core Solo", v2_5},
    {0xBE, "Core 2 or K7", v2_5},
    {0xBF, "Core 2 Duo", v2_5},
    {0xC0, "Core 2 Solo", v2_6},
    {0xC1, "Core 2 Extreme", v2_6},
    {0xC2, "Core 2 Quad", v2_6},
    {0xC3, "Core 2 Extreme Mobile", v2_6},
    {0xC4, "Core 2 Duo Mobile", v2_6},
    {0xC5, "Core 2 Solo Mobile", v2_6},
    {0xC6, "Core i7", v2_7},
    {0xC7, "Dual-Core Celeron", v2_7},
    {0xC8, "IBM390", v2_4},
    {0xC9, "G4", v2_4},
    {0xCA, "G5", v2_4},
    {0xCB, "ESA/390 G6", v2_5},
    {0xCC, "z/Architecture", v2_5},
    {0xCD, "Core i5", v2_7},
    {0xCE, "Core i3", v2_7},
    {0xCF, "Core i9", v2_7},
    {0xD2, "C7-M", v2_6},
    {0xD3, "C7-D", v2_6},
    {0xD4, "C7", v2_6},
    {0xD5, "Eden", v2_6},
    {0xD6, "Multi-Core Xeon", v2_6},
    {0xD7, "Dual-Core Xeon 3xxx", v2_6},
    {0xD8, "Quad-Core Xeon 3xxx", v2_6},
    {0xD9, "Nano", v2_6},
    {0xDA, "Dual-Core Xeon 5xxx", v2_6},
    {0xDB, "Quad-Core Xeon 5xxx", v2_6},
    {0xDD, "Dual-Core Xeon 7xxx", v2_6},
    {0xDE, "Quad-Core Xeon 7xxx", v2_6},
    {0xDF, "Multi-Core Xeon 7xxx", v2_6},
    {0xE0, "Multi-Core Xeon 3400", v2_7},
    {0xE4, "Opteron 3000", v2_7},
    {0xE5, "Sempron II", v2_7},
    {0xE6, "Embedded Opteron Quad-Core", v2_6},
    {0xE7, "Phenom Triple-Core", v2_6},
    {0xE8, "Turion Ultra Dual-Core Mobile", v2_6},
    {0xE9, "Turion Dual-Core Mobile", v2_7},
    {0xEA, "Athlon Dual-Core", v2_7},
    {0xEB, "Sempron SI", v2_7},
    {0xEC, "Phenom II", v2_7},
    {0xED, "Athlon II", v2_7},
    {0xEE, "Six-Core Opteron", v2_7},
    {0xEF, "Sempron M", v2_7},
    {0xFA, "i860"},
    {0xFB, "i960"},
    {0x100, "ARMv7", v2_7},
    {0x101, "ARMv8", v2_7},
    {0x102, "ARMv9", v3_7},
    {0x104, "SH-3", v2_7},
    {0x105, "SH-4", v2_7},
    {0x118, "ARM"},
    {0x119, "StrongARM"},
    {0x12C, "6x86"},
    {0x12D, "MediaGX"},
    {0x12E, "MII"},
    {0x140, "WinChip"},
    {0x15E, "DSP"},
    {0x1F4, "Video Processor"},
    {0x200, "RV32", v2_7},
    {0x201, "RV64", v2_7},
    {0x202, "RV128", v2_7},
    {0x258, "LoongArch", v3_7},
    {0x259, "Loongson 1", v3_7},
    {0x25A, "Loongson 2", v3_7},
    {0x25B, "Loongson 3", v3_7},
    {0x25C, "Loongson 2K", v3_7},
    {0x25D, "Loongson 3A", v3_7},
    {0x25E, "Loongson 3B", v3_7},
    {0x25F, "Loongson 3C", v3_7},
    {0x260, "Loongson 3D", v3_7},
    {0x261, "Loongson 3E", v3_7},
    {0x262, "Dual-Core Loongson 2K", v3_7},
    {0x26C, "Quad-Core Loongson 3A", v3_7},
    {0x26D, "Multi-Core Loongson 3A", v3_7},
    {0x26E, "Quad-Core Loongson 3B", v3_7},
    {0x26F, "Multi-Core Loongson 3B", v3_7},
    {0x270, "Multi-Core Loongson 3C", v3_7},
    {0x271, "Multi-Core Loongson 3D", v3_7},
};

/// Processor upgrades (7.5.5), the first 24 in the words that the inventory asks for.
inline constexpr ValueText processorUpgrades[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "Daughter Board"},
    {0x04, "ZIF Socket"},
    {0x05, "Replaceable Piggy Back"},
    {0x06, "None"},
    {0x07, "LIF Socket"},
    {0x08, "Slot 1"},
    {0x09, "Slot 2"},
    {0x0A, "370-pin socket"},
    {0x0B, "Slot A"},
    {0x0C, "Slot M"},
    {0x0D, "Socket 423"},
    {0x0E, "Socket A"},
    {0x0F, "Socket 478"},
    {0x10, "Socket 754"},
    {0x11, "Socket 940"},
    {0x12, "Socket 939"},
    {0x13, "Socket mPGA604", v2_4},
    {0x14, "Socket LGA771", v2_4},
    {0x15, "Socket LGA775", v2_4},
    {0x16, "Socket S1", v2_5},
    {0x17, "Socket AM2", v2_5},
    {0x18, "Socket F", v2_5},
    {0x19, "Socket LGA1366", v2_6},
    {0x1A, "Socket G34", v2_7},
    {0x1B, "Socket AM3", v2_7},
    {0x1C, "Socket C32", v2_7},
    {0x1D, "Socket LGA1156", v2_7},
    {0x1E, "Socket LGA1567", v2_7},
    {0x1F, "Socket PGA988A", v2_7},
    {0x20, "Socket BGA1288", v2_7},
    {0x21, "Socket rPGA988B", v2_7},
    {0x22, "Socket BGA1023", v2_7},
    {0x23, "Socket BGA1224", v2_7},
    {0x24, "Socket BGA1155", v2_7},
    {0x25, "Socket LGA1356", v2_7},
    {0x26, "Socket LGA2011", v2_7},
    {0x27, "Socket FS1", v2_7},
    {0x28, "Socket FS2", v2_7},
    {0x29, "Socket FM1", v2_7},
    {0x2A, "Socket FM2", v2_7},
    {0x2B, "Socket LGA2011-3", v2_7},
    {0x2C, "Socket LGA1356-3", v2_7},
    {0x2D, "Socket LGA1150", v2_7},
    {0x2E, "Socket BGA1168", v2_7},
    {0x2F, "Socket BGA1234", v2_7},
    {0x30, "Socket BGA1364", v2_7},
    {0x31, "Socket AM4", v2_7},
    {0x32, "Socket LGA1151", v2_7},
    {0x33, "Socket BGA1356", v2_7},
    {0x34, "Socket BGA1440", v2_7},
    {0x35, "Socket BGA1515", v2_7},
    {0x36, "Socket LGA3647-1", v2_7},
    {0x37, "Socket SP3", v2_7},
    {0x38, "Socket SP3r2", v2_7},
    {0x39, "Socket LGA2066", v2_7},
    {0x3A, "Socket BGA1392", v2_7},
    {0x3B, "Socket BGA1510", v2_7},
    {0x3C, "Socket BGA1528", v2_7},
    {0x3D, "Socket LGA4189", v2_7},
    {0x3E, "Socket LGA1200", v2_7},
    {0x3F, "Socket LGA4677", v2_7},
    {0x40, "Socket LGA1700", v3_7},
    {0x41, "Socket BGA1744", v3_7},
    {0x42, "Socket BGA1781", v3_7},
    {0x43, "Socket BGA1211", v3_7},
    {0x44, "Socket BGA2422", v3_7},
    {0x45, "Socket LGA1211", v3_7},
    {0x46, "Socket LGA2422", v3_7},
    {0x47, "Socket LGA5773", v3_7},
    {0x48, "Socket BGA5773", v3_7},
    {0x49, "Socket AM5", v3_7},
    {0x4A, "Socket SP5", v3_7},
    {0x4B, "Socket SP6", v3_7},
    {0x4C, "Socket BGA883", v3_7},
    {0x4D, "Socket BGA1190", v3_7},
    {0x4E, "Socket BGA4129", v3_7},
    {0x4F, "Socket LGA4710", v3_7},
    {0x50, "Socket LGA7529", v3_7},
    {0x51, "Socket BGA1964", v3_7},
    {0x52, "Socket BGA1792", v3_7},
    {0x53, "Socket BGA2049", v3_7},
    {0x54, "Socket BGA2551", v3_7},
    {0x55, "Socket LGA1851", v3_7},
    {0x56, "Socket BGA2114", v3_7},
    {0x57, "Socket BGA2833", v3_7},
};

/// Error correction of a cache (7.8.3).
inline constexpr ValueText cacheErrorCorrections[] = {
    {0x01, "Other"},  {0x02, "Unknown"},        {0x03, "None"},
    {0x04, "Parity"}, {0x05, "Single-bit ECC"}, {0x06, "Multi-bit ECC"},
};

/// Cache types (7.8.4).
inline constexpr ValueText cacheTypes[] = {
    {0x01, "Other"}, {0x02, "Unknown"}, {0x03, "Instruction"}, {0x04, "Data"}, {0x05, "Unified"},
};

/// Associativities of a cache (7.8.5).
inline constexpr ValueText associativities[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "Direct Mapped"},
    {0x04, "2-way Set-associative"},
    {0x05, "4-way Set-associative"},
    {0x06, "Fully Associative"},
    {0x07, "8-way Set-associative", v2_4},
    {0x08, "16-way Set-associative", v2_4},
    {0x09, "12-way Set-associative", v2_6},
    {0x0A, "24-way Set-associative", v2_6},
    {0x0B, "32-way Set-associative", v2_7},
    {0x0C, "48-way Set-associative", v2_7},
    {0x0D, "64-way Set-associative", v2_7},
    {0x0E, "20-way Set-associative", v2_7},
};

/// Connector types (7.9.2).
inline constexpr ValueText connectorTypes[] = {
    {0x00, "None"},
    {0x01, "Centronics"},
    {0x02, "Mini Centronics"},
    {0x03, "Proprietary"},
    {0x04, "DB-25 male"},
    {0x05, "DB-25 female"},
    {0x06, "DB-15 male"},
    {0x07, "DB-15 female"},
    {0x08, "DB-9 male"},
    {0x09, "DB-9 female"},
    {0x0A, "RJ-11"},
    {0x0B, "RJ-45"},
    {0x0C, "50 Pin MiniSCSI"},
    {0x0D, "Mini DIN"},
    {0x0E, "Micro DIN"},
    {0x0F, "PS/2"},
    {0x10, "Infrared"},
    {0x11, "HP-HIL"},
    {0x12, "Access Bus (USB)"},
    {0x13, "SSA SCSI"},
    {0x14, "Circular DIN-8 male"},
    {0x15, "Circular DIN-8 female"},
    {0x16, "On Board IDE"},
    {0x17, "On Board Floppy"},
    {0x18, "9 Pin Dual Inline (pin 10 cut)"},
    {0x19, "25 Pin Dual Inline (pin 26 cut)"},
    {0x1A, "50 Pin Dual Inline"},
    {0x1B, "68 Pin Dual Inline"},
    {0x1C, "On Board Sound Input From CD-ROM"},
    {0x1D, "Mini Centronics Type-14"},
    {0x1E, "Mini Centronics Type-26"},
    {0x1F, "Mini Jack (headphones)"},
    {0x20, "BNC"},
    {0x21, "IEEE 1394", v2_4},
    {0x22, "SAS/SATA Plug Receptacle", v2_6},
    {0x23, "USB Type-C Receptacle", v2_7},
    {0xA0, "PC-98"},
    {0xA1, "PC-98 Hireso"},
    {0xA2, "PC-H98"},
    {0xA3, "PC-98 Note"},
    {0xA4, "PC-98 Full"},
    {0xFF, "Other"},
};

/// Port types (7.9.3).
inline constexpr ValueText portTypes[] = {
    {0x00, "None"},
    {0x01, "Parallel Port XT/AT Compatible"},
    {0x02, "Parallel Port PS/2"},
    {0x03, "Parallel Port ECP"},
    {0x04, "Parallel Port EPP"},
    {0x05, "Parallel Port ECP/EPP"},
    {0x06, "Serial Port XT/AT Compatible"},
    {0x07, "Serial Port 16450 Compatible"},
    {0x08, "Serial Port 16550 Compatible"},
    {0x09, "Serial Port 16550A Compatible"},
    {0x0A, "SCSI Port"},
    {0x0B, "MIDI Port"},
    {0x0C, "Joystick Port"},
    {0x0D, "Keyboard Port"},
    {0x0E, "Mouse Port"},
    {0x0F, "SSA SCSI"},
    {0x10, "USB"},
    {0x11, "Firewire (IEEE P1394)"},
    {0x12, "PCMCIA Type I"},
    {0x13, "PCMCIA Type II"},
    {0x14, "PCMCIA Type III"},
    {0x15, "Cardbus"},
    {0x16, "Access Bus Port"},
    {0x17, "SCSI II"},
    {0x18, "SCSI Wide"},
    {0x19, "PC-98"},
    {0x1A, "PC-98 Hireso"},
    {0x1B, "PC-H98"},
    {0x1C, "Video Port"},
    {0x1D, "Audio Port"},
    {0x1E, "Modem Port"},
    {0x1F, "Network Port"},
    {0x20, "SATA", v2_6},
    {0x21, "SAS", v2_6},
    {0x22, "Multi-Function Display Port", v3_7},
    {0x23, "Thunderbolt", v3_7},
    {0xA0, "8251 Compatible"},
    {0xA1, "8251 FIFO Compatible"},
    {0xFF, "Other"},
};

/// Slot types (7.10.1).
inline constexpr ValueText slotTypes[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "ISA"},
    {0x04, "MCA"},
    {0x05, "EISA"},
    {0x06, "PCI"},
    {0x07, "PC Card (PCMCIA)"},
    {0x08, "VL-VESA"},
    {0x09, "Proprietary"},
    {0x0A, "Processor Card Slot"},
    {0x0B, "Proprietary Memory Card Slot"},
    {0x0C, "I/O Riser Card Slot"},
    {0x0D, "NuBus"},
    {0x0E, "PCI - 66MHz Capable"},
    {0x0F, "AGP"},
    {0x10, "AGP 2X"},
    {0x11, "AGP 4X"},
    {0x12, "PCI-X"},
    {0x13, "AGP 8X", v2_4},
    {0x14, "M.2 Socket 1-DP (Mechanical Key A)", v2_7},
    {0x15, "M.2 Socket 1-SD (Mechanical Key E)", v2_7},
    {0x16, "M.2 Socket 2 (Mechanical Key B)", v2_7},
    {0x17, "M.2 Socket 3 (Mechanical Key M)", v2_7},
    {0x18, "MXM Type I", v2_7},
    {0x19, "MXM Type II", v2_7},
    {0x1A, "MXM Type III (standard connector)", v2_7},
    {0x1B, "MXM Type III (HE connector)", v2_7},
    {0x1C, "MXM Type IV", v2_7},
    {0x1D, "MXM 3.0 Type A", v2_7},
    {0x1E, "MXM 3.0 Type B", v2_7},
    {0x1F, "PCI Express Gen 2 SFF-8639", v2_7},
    {0x20, "PCI Express Gen 3 SFF-8639", v2_7},
    {0x21, "PCI Express Mini 52-pin with bottom-side keep-outs", v2_7},
    {0x22, "PCI Express Mini 52-pin without bottom-side keep-outs", v2_7},
    {0x23, "PCI Express Mini 76-pin", v2_7},
    {0x24, "PCI Express Gen 4 SFF-8639", v2_7},
    {0x25, "PCI Express Gen 5 SFF-8639", v2_7},
    {0x26, "OCP NIC 3.0 Small Form Factor (SFF)", v2_7},
    {0x27, "OCP NIC 3.0 Large Form Factor (LFF)", v2_7},
    {0x28, "OCP NIC Prior to 3.0", v2_7},
    {0x30, "CXL Flexbus 1.0", v2_7},
    {0xA0, "PC-98/C20"},
    {0xA1, "PC-98/C24"},
    {0xA2, "PC-98/E"},
    {0xA3, "PC-98/Local Bus"},
    {0xA4, "PC-98/Card"},
    {0xA5, "PCI Express", v2_4},
    {0xA6, "PCI Express x1", v2_5},
    {0xA7, "PCI Express x2", v2_5},
    {0xA8, "PCI Express x4", v2_5},
    {0xA9, "PCI Express x8", v2_5},
    {0xAA, "PCI Express x16", v2_5},
    {0xAB, "PCI Express Gen 2", v2_6},
    {0xAC, "PCI Express Gen 2 x1", v2_6},
    {0xAD, "PCI Express Gen 2 x2", v2_6},
    {0xAE, "PCI Express Gen 2 x4", v2_6},
    {0xAF, "PCI Express Gen 2 x8", v2_6},
    {0xB0, "PCI Express Gen 2 x16", v2_6},
    {0xB1, "PCI Express Gen 3", v2_7},
    {0xB2, "PCI Express Gen 3 x1", v2_7},
    {0xB3, "PCI Express Gen 3 x2", v2_7},
    {0xB4, "PCI Express Gen 3 x4", v2_7},
    {0xB5, "PCI Express Gen 3 x8", v2_7},
    {0xB6, "PCI Express Gen 3 x16", v2_7},
    {0xB8, "PCI Express Gen 4", v2_7},
    {0xB9, "PCI Express Gen 4 x1", v2_7},
    {0xBA, "PCI Express Gen 4 x2", v2_7},
    {0xBB, "PCI Express Gen 4 x4", v2_7},
    {0xBC, "PCI Express Gen 4 x8", v2_7},
    {0xBD, "PCI Express Gen 4 x16", v2_7},
    {0xBE, "PCI Express Gen 5", v2_7},
    {0xBF, "PCI Express Gen 5 x1", v2_7},
    {0xC0, "PCI Express Gen 5 x2", v2_7},
    {0xC1, "PCI Express Gen 5 x4", v2_7},
    {0xC2, "PCI Express Gen 5 x8", v2_7},
    {0xC3, "PCI Express Gen 5 x16", v2_7},
    {0xC4, "PCI Express Gen 6 and Beyond", v2_7},
    {0xC5, "EDSFF E1", v2_7},
    {0xC6, "EDSFF E3", v2_7},
};

/// Data bus widths of a slot (7.10.2).
inline constexpr ValueText slotWidths[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "8 bit"},
    {0x04, "16 bit"},
    {0x05, "32 bit"},
    {0x06, "64 bit"},
    {0x07, "128 bit"},
    {0x08, "1x or x1", v2_4},
    {0x09, "2x or x2", v2_4},
    {0x0A, "4x or x4", v2_4},
    {0x0B, "8x or x8", v2_4},
    {0x0C, "12x or x12", v2_4},
    {0x0D, "16x or x16", v2_4},
    {0x0E, "32x or x32", v2_4},
};

/// Current usages of a slot (7.10.3).
inline constexpr ValueText slotUsages[] = {
    {0x01, "Other"}, {0x02, "Unknown"}, {0x03, "Available"}, {0x04, "In Use"}, {0x05, "Unavailable", v2_7},
};

/// Slot lengths (7.10.4).
inline constexpr ValueText slotLengths[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "Short Length"},
    {0x04, "Long Length"},
    {0x05, "2.5 inch drive form factor", v2_7},
    {0x06, "3.5 inch drive form factor", v2_7},
};

/// Wake-up types (7.2.2).
inline constexpr ValueText wakeUpTypes[] = {
    {0x00, "Reserved"},   {0x01, "Other"},        {0x02, "Unknown"},  {0x03, "APM Timer"},         {0x04, "Modem Ring"},
    {0x05, "LAN Remote"}, {0x06, "Power Switch"}, {0x07, "PCI PME#"}, {0x08, "AC Power Restored"},
};

/// On board device types (7.11.1), behind the enabled bit.
inline constexpr ValueText onBoardDeviceTypes[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "Video"},
    {0x04, "SCSI Controller"},
    {0x05, "Ethernet"},
    {0x06, "Token Ring"},
    {0x07, "Sound"},
    {0x08, "PATA Controller", v2_5},
    {0x09, "SATA Controller", v2_5},
    {0x0A, "SAS Controller", v2_5},
    {0x0B, "Wireless LAN", v2_7},
    {0x0C, "Bluetooth", v2_7},
    {0x0D, "WWAN", v2_7},
    {0x0E, "eMMC", v2_7},
    {0x0F, "NVMe Controller", v2_7},
    {0x10, "UFS Controller", v2_7},
};

/// Locations of a memory array (7.17.1).
inline constexpr ValueText arrayLocations[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "System board or motherboard"},
    {0x04, "ISA Add-on Card"},
    {0x05, "EISA Add-on Card"},
    {0x06, "PCI Add-on Card"},
    {0x07, "MCA Add-on Card"},
    {0x08, "PCMCIA Add-on Card"},
    {0x09, "Proprietary Add-on Card"},
    {0x0A, "NuBus"},
    {0xA0, "PC-98/C20 Add-on Card"},
    {0xA1, "PC-98/C24 Add-on Card"},
    {0xA2, "PC-98/E Add-on Card"},
    {0xA3, "PC-98/Local Bus Add-on Card"},
    {0xA4, "CXL Flexbus 1.0", v2_7},
};

/// Uses of a memory array (7.17.2).
inline constexpr ValueText arrayUses[] = {
    {0x01, "Other"},        {0x02, "Unknown"},      {0x03, "System memory"},
    {0x04, "Video memory"}, {0x05, "Flash memory"}, {0x06, "Non Volatile memory"},
    {0x07, "Cache memory"},
};

/// Error correction of a memory array (7.17.3).
inline constexpr ValueText arrayErrorCorrections[] = {
    {0x01, "Other"},          {0x02, "Unknown"},       {0x03, "None"}, {0x04, "Parity"},
    {0x05, "Single-bit ECC"}, {0x06, "Multi-bit ECC"}, {0x07, "CRC"},
};

/// Form factors of a memory device (7.18.1).
inline constexpr ValueText formFactors[] = {
    {0x01, "Other"},      {0x02, "Unknown"}, {0x03, "SIMM"},          {0x04, "SIP"},
    {0x05, "Chip"},       {0x06, "DIP"},     {0x07, "ZIP"},           {0x08, "ProprietaryCard"},
    {0x09, "DIMM"},       {0x0A, "TSOP"},    {0x0B, "RowOfChips"},    {0x0C, "RIMM"},
    {0x0D, "SODIMM"},     {0x0E, "SRIMM"},   {0x0F, "FB-DIMM", v2_5}, {0x10, "Die", v2_7},
    {0x11, "CAMM", v3_7},
};

/// Memory types (7.18.2).
inline constexpr ValueText memoryTypes[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "DRAM"},
    {0x04, "EDRAM"},
    {0x05, "VRAM"},
    {0x06, "SRAM"},
    {0x07, "RAM"},
    {0x08, "ROM"},
    {0x09, "FLASH"},
    {0x0A, "EEPROM"},
    {0x0B, "FEPROM"},
    {0x0C, "EPROM"},
    {0x0D, "CDRAM"},
    {0x0E, "3DRAM"},
    {0x0F, "SDRAM"},
    {0x10, "SGRAM"},
    {0x11, "RDRAM"},
    {0x12, "DDR"},
    {0x13, "DDR2", v2_4},
    {0x14, "DDR2 FB-DIMM", v2_5},
    {0x15, "Reserved", v2_5},
    {0x16, "Reserved", v2_5},
    {0x17, "Reserved", v2_5},
    {0x18, "DDR3", v2_6},
    {0x19, "FBD2", v2_6},
    {0x1A, "DDR4", v2_7},
    {0x1B, "LPDDR", v2_7},
    {0x1C, "LPDDR2", v2_7},
    {0x1D, "LPDDR3", v2_7},
    {0x1E, "LPDDR4", v2_7},
    {0x1F, "Logical non-volatile device", v2_7},
    {0x20, "HBM", v2_7},
    {0x21, "HBM2", v2_7},
    {0x22, "DDR5", v2_7},
    {0x23, "LPDDR5", v2_7},
    {0x24, "HBM3", v3_7},
};

/// Memory error types (7.19.1).
inline constexpr ValueText memoryErrorTypes[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "OK"},
    {0x04, "Bad Read"},
    {0x05, "Parity Error"},
    {0x06, "Single-bit Error"},
    {0x07, "Double-bit Error"},
    {0x08, "Multi-bit Error"},
    {0x09, "Nibble Error"},
    {0x0A, "Checksum Error"},
    {0x0B, "CRC Error"},
    {0x0C, "Corrected Single-bit Error"},
    {0x0D, "Corrected Error"},
    {0x0E, "Uncorrectable Error"},
};

/// Granularities of a memory error (7.19.2).
inline constexpr ValueText errorGranularities[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "Device Level"},
    {0x04, "Memory Partition Level"},
};

/// Operations that met a memory error (7.19.3).
inline constexpr ValueText errorOperations[] = {
    {0x01, "Other"}, {0x02, "Unknown"}, {0x03, "Read"}, {0x04, "Write"}, {0x05, "Partial Write"},
};

/// IPMI interface types (7.39.1).
inline constexpr ValueText ipmiInterfaces[] = {
    {0x00, "Unknown"},
    {0x01, "KCS: Keyboard Controller Style"},
    {0x02, "SMIC: Server Management Interface Chip"},
    {0x03, "BT: Block Transfer"},
    {0x04, "SSIF: SMBus System Interface", v2_7},
};
/// Feature flags of a base board (7.3.1), in this system's own words.
inline constexpr ValueText boardFeatures[] = {
    {0, "11111000"},
    {1, "Board is hosting board"},
    {2, "board requires at least one daughter board to function properly"},
    {3, "the board is removable"},
    {4, "board is replaceable"},
    {5, "board is hot swappable"},
};

/// Slot height (7.10.3).
inline constexpr ValueText slotHeights[] = {
    {0x00, "Not Applicable"}, {0x01, "Other"}, {0x02, "Unknown"}, {0x03, "Full height"}, {0x04, "Low-profile"},
};

/// Places of temperature probes (7.29.1).
inline constexpr ValueText probeLocations[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "Processor"},
    {0x04, "Disk"},
    {0x05, "Peripheral Bay"},
    {0x06, "System Management Module"},
    {0x07, "Motherboard"},
    {0x08, "Memory Module"},
    {0x09, "Processor Module"},
    {0x0A, "Power Unit"},
    {0x0B, "Add-in Card"},
    {0x0C, "Front Panel Board"},
    {0x0D, "Back Panel Board"},
    {0x0E, "Power System Board"},
    {0x0F, "Drive Back Plane"},
};

/// Those of voltage and current probes, which end sooner (7.27.1, 7.30.1).
inline constexpr auto electricLocations = std::span<const ValueText>(probeLocations).first<11>();

/// States of probes, cooling devices and power supplies (7.27.1, 7.28.1, 7.40.1).
inline constexpr ValueText probeStates[] = {
    {0x01, "Other"},        {0x02, "Unknown"},  {0x03, "OK"},
    {0x04, "Non-critical"}, {0x05, "Critical"}, {0x06, "Non-recoverable"},
};

/// Cooling devices (7.28.1).
inline constexpr ValueText coolingTypes[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "Fan"},
    {0x04, "Centrifugal Blower"},
    {0x05, "Chip Fan"},
    {0x06, "Cabinet Fan"},
    {0x07, "Power Supply Fan"},
    {0x08, "Heat Pipe"},
    {0x09, "Integrated Refrigeration"},
    {0x10, "Active Cooling"},
    {0x11, "Passive Cooling"},
};

/// System boot status (7.33.1).
inline constexpr ValueText bootStates[] = {
    {0x00, "No errors detected"},
    {0x01, "No bootable media"},
    {0x02, "Operating system failed to load"},
    {0x03, "Firmware-detected hardware failure"},
    {0x04, "Operating system-detected hardware failure"},
    {0x05, "User-requested boot"},
    {0x06, "System security violation"},
    {0x07, "Previously-requested image"},
    {0x08, "System watchdog timer expired"},
};

/// One bit of a packed number.
inline constexpr ValueText yesOrNo[] = {
    {0x00, "No"},
    {0x01, "Yes"},
};

/// The highest bit of an on board device's type (7.42.2).
inline constexpr ValueText deviceStates[] = {
    {0x00, "Disabled"},
    {0x01, "Enabled"},
};

/// Power supplies (7.40.1).
inline constexpr ValueText supplyTypes[] = {
    {0x01, "Other"},   {0x02, "Unknown"}, {0x03, "Linear"},    {0x04, "Switching"},
    {0x05, "Battery"}, {0x06, "UPS"},     {0x07, "Converter"}, {0x08, "Regulator"},
};

/// Switching of a supply's input voltage range (7.40.1).
inline constexpr ValueText supplyRanges[] = {
    {0x01, "Other"}, {0x02, "Unknown"}, {0x03, "Manual"}, {0x04, "Auto-switch"}, {0x05, "Wide Range"}, {0x06, "N/A"},
};

/// States of firmware (7.46.5).
inline constexpr ValueText firmwareStates[] = {
    {0x01, "Other"},  {0x02, "Unknown"},          {0x03, "Disabled"},       {0x04, "Enabled"},
    {0x05, "Absent"}, {0x06, "Stand-by offline"}, {0x07, "Stand-by spare"}, {0x08, "Unavailable offline"},
};

/// String properties (7.47.1).
inline constexpr ValueText stringProperties[] = {
    {0x01, "UEFI device path"},
};

/// TPM characteristics (7.44.1).
inline constexpr ValueText tpmCharacteristics[] = {
    {0, "0011110000000000"},
    {3, "TPM Device characteristics not supported"},
    {4, "Family configurable via firmware update"},
    {5, "Family configurable via platform software support"},
    {6, "Family configurable via OEM proprietary mechanism"},
};

/// Firmware characteristics (7.46.3).
inline constexpr ValueText firmwareCharacteristics[] = {
    {0, "1100000000000000"},
    {1, "Updatable"},
    {2, "Write-protected"},
};

/// BIOS characteristics (7.1.1).
inline constexpr ValueText biosCharacteristics[] = {
    {4, "BIOS Characteristics Not Supported"},
    {5, "ISA is supported"},
    {6, "MCA is supported"},
    {7, "EISA is supported"},
    {8, "PCI is supported"},
    {9, "PC Card (PCMCIA) is supported"},
    {10, "Plug and Play is supported"},
    {11, "APM is supported"},
    {12, "BIOS is upgradeable"},
    {13, "BIOS shadowing is allowed"},
    {14, "VL-VESA is supported"},
    {15, "ESCD support is available"},
    {16, "Boot from CD is supported"},
    {17, "Selectable boot is supported"},
    {18, "BIOS ROM is socketed"},
    {19, "Boot from PC Card (PCMCIA) is supported"},
    {20, "EDD specification is supported"},
    {21, "Japanese floppy for NEC 9800 1.2 MB is supported"},
    {22, "Japanese floppy for Toshiba 1.2 MB is supported"},
    {23, "5.25 inch 360 KB floppy services are supported"},
    {24, "5.25 inch 1.2 MB floppy services are supported"},
    {25, "3.5 inch 720 KB floppy services are supported"},
    {26, "3.5 inch 2.88 MB floppy services are supported"},
    {27, "Print screen service is supported"},
    {28, "8042 keyboard services are supported"},
    {29, "Serial services are supported"},
    {30, "Printer services are supported"},
    {31, "CGA and mono video services are supported"},
    {32, "NEC PC-98"},
};

/// BIOS characteristics, first extension byte (7.1.2.1).
inline constexpr ValueText biosExtension1[] = {
    {1, "ACPI is supported"},
    {2, "USB Legacy is supported"},
    {3, "AGP is supported"},
    {4, "I2O boot is supported"},
    {5, "LS-120 SuperDisk boot is supported"},
    {6, "ATAPI ZIP drive boot is supported"},
    {7, "1394 boot is supported"},
    {8, "Smart battery is supported"},
};

/// BIOS characteristics, second extension byte (7.1.2.2).
inline constexpr ValueText biosExtension2[] = {
    {1, "BIOS Boot Specification is supported"},
    {2, "Function key-initiated network service boot is supported"},
    {3, "Targeted content distribution is enabled", v2_4},
    {4, "UEFI Specification is supported", v2_7},
    {5, "SMBIOS table describes a virtual machine", v2_7},
    {6, "Manufacturing mode is supported", v3_7},
    {7, "Manufacturing mode is enabled", v3_7},
};

/// Technologies of a memory device (7.18.6).
inline constexpr ValueText memoryTechnologies[] = {
    {0x01, "Other"},
    {0x02, "Unknown"},
    {0x03, "DRAM"},
    {0x04, "NVDIMM-N"},
    {0x05, "NVDIMM-F"},
    {0x06, "NVDIMM-P"},
    {0x07, "Intel Optane persistent memory"},
};

/// Operating modes that a memory device has (7.18.7).
inline constexpr ValueText operatingModes[] = {
    {0, "0111110000000000"},
    {2, "Other"},
    {3, "Unknown"},
    {4, "Volatile memory"},
    {5, "Byte-accessible persistent memory"},
    {6, "Block-accessible persistent memory"},
};

/// Processor characteristics (7.5.9).
inline constexpr ValueText processorCharacteristics[] = {
    {0, "0011111111000000"},
    {3, "64-bit Capable"},
    {4, "Multi-Core"},
    {5, "Hardware Thread"},
    {6, "Execute Protection"},
    {7, "Enhanced Virtualization"},
    {8, "Power and Performance Control"},
    {9, "128-bit Capable", v3_7},
    {10, "Arm64 SoC ID", v3_7},
};

/// SRAM types of a cache (7.8.2).
inline constexpr ValueText sramTypes[] = {
    {0, "1111111000000000"}, {1, "Other"},       {2, "Unknown"},      {3, "Non-Burst"}, {4, "Burst"},
    {5, "Pipeline Burst"},   {6, "Synchronous"}, {7, "Asynchronous"},
};

/// Slot characteristics, first byte (7.10.6).
inline constexpr ValueText slotCharacteristics1[] = {
    {1, "Characteristics unknown"}, {2, "Provides 5.0 volts"},
    {3, "Provides 3.3 volts"},      {4, "Opening is shared with another slot"},
    {5, "PC Card-16 is supported"}, {6, "CardBus is supported"},
    {7, "Zoom Video is supported"}, {8, "Modem Ring Resume is supported"},
};

/// Slot characteristics, second byte (7.10.7).
inline constexpr ValueText slotCharacteristics2[] = {
    {1, "PME signal is supported"},
    {2, "Hot-plug devices are supported"},
    {3, "SMBus signal is supported"},
    {4, "PCIe slot bifurcation is supported", v3_7},
    {5, "Async/surprise removal is supported", v3_7},
    {6, "Flexbus slot, CXL 1.0 capable", v3_7},
    {7, "Flexbus slot, CXL 2.0 capable", v3_7},
    {8, "Flexbus slot, CXL 3.0 capable", v3_7},
};

/// Type details of a memory device (7.18.3), in the words that the inventory asks for.
inline constexpr ValueText typeDetails[] = {
    {0, "0111111111111111"},
    {2, "Other"},
    {3, "Unknown"},
    {4, "Fast-paged"},
    {5, "Static column"},
    {6, "Pseudo-static"},
    {7, "RAMBUS"},
    {8, "Synchronous"},
    {9, "CMOS"},
    {10, "EDO"},
    {11, "Window DRAM"},
    {12, "Cache DRAM"},
    {13, "Non-volatile"},
    {14, "Registered", v2_6},
    {15, "Unbuffered", v2_6},
    {16, "LRDIMM", v2_7},
};

} // namespace Protocol::SMBIOS

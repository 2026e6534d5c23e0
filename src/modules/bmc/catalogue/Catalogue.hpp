#pragma once

#include "modules/bmc/engine/Stores.hpp"

#include <memory>

namespace Module::BMCConfig {

/// Bits of the Config classes in a module's mask.
enum ConfigMask : unsigned long {
    BMC_CONFIG = 0x1,
    INFO_CONFIG = 0x2,
    SDR_CONFIG = 0x4,
    LAN_CONFIG = 0x8,
    CHANNEL_CONFIG = 0x20,
    IPMI_CONFIG = 0x40,
    CHASSIS_CONFIG = 0x80,
    FRU_CONFIG = 0x100,
    SEL_CONFIG = 0x200,
    SERIAL_CONFIG = 0x400,
    USER_CONFIG = 0x800,
    SOL_CONFIG = 0x1000,
    SENSOR_CONFIG = 0x2000,
    PEF_CONFIG = 0x4000,
    FIRMWARE_CONFIG = 0x8000,
    PG_CONFIG = 0x10000,
    BOOT_CONFIG = 0x20000,
    CONTROLLER_CONFIG = 0x40000,
    OEM_CONFIG = 0x80000,
    SCF_CONFIG = 0x100000,
    SMBIOS_CONFIG = 0x200000,
};

/// All of them, with every entry in one layer: for who reads the catalogue as data.
inline constexpr unsigned long wholeCatalogue = ~0UL;

/// The stores as the Config classes of `mask` fill them; mask 0 means all, LanConfig only if `lanWanted`, as a layer
/// above the others. Each combination is built once per process and shared unchanged by all queries; what a query
/// writes lands in its own overlay.
std::shared_ptr<const Stores> catalogue(unsigned long mask, bool lanWanted);

} // namespace Module::BMCConfig

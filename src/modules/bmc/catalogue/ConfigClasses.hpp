#pragma once

#include "modules/bmc/engine/Stores.hpp"

/// One class an area of the catalogue. The constructor adds the area's entries to the stores, and that is all there is.
namespace Module::BMCConfig {

#define HW_CONFIG_CLASS(name)                                                                                          \
    struct name {                                                                                                      \
        explicit name(Stores& stores);                                                                                 \
    };
HW_CONFIG_CLASS(BmcConfig)
HW_CONFIG_CLASS(BootConfig)
HW_CONFIG_CLASS(ChannelConfig)
HW_CONFIG_CLASS(ChassisConfig)
HW_CONFIG_CLASS(ControllerConfig)
HW_CONFIG_CLASS(FirmwareConfig)
HW_CONFIG_CLASS(FruConfig)
HW_CONFIG_CLASS(InfoConfig)
HW_CONFIG_CLASS(IpmiConfig)
HW_CONFIG_CLASS(LanConfig)
HW_CONFIG_CLASS(OemConfig)
HW_CONFIG_CLASS(PefConfig)
HW_CONFIG_CLASS(PgConfig)
HW_CONFIG_CLASS(ScfConfig)
HW_CONFIG_CLASS(SdrConfig)
HW_CONFIG_CLASS(SelConfig)
HW_CONFIG_CLASS(SensorConfig)
HW_CONFIG_CLASS(SerialConfig)
HW_CONFIG_CLASS(SmbiosConfig)
HW_CONFIG_CLASS(SolConfig)
HW_CONFIG_CLASS(UserConfig)
#undef HW_CONFIG_CLASS

} // namespace Module::BMCConfig

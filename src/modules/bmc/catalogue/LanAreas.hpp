#pragma once

#include "modules/bmc/catalogue/Fields.hpp"
#include "modules/bmc/engine/Stores.hpp"

/// Parts of the LAN area, by subject; LanConfig adds them all.
namespace Module::BMCConfig {

/// LAN configuration parameters (IPMI 2.0, 23.1 and 23.2) of the channel that the query's subscript names.
inline constexpr ParameterFamily lanParameters = {
    .path = "LAN[]",
    .getCommand = "GET_LAN_CONFIGURATION_PARAMETERS",
    .setCommand = "SET_LAN_CONFIGURATION_PARAMETERS",
    .subject = "$LAN_NUMBER",
    .assertion = "LAN[]/ASSERT",
};

constexpr Record lanRecord(const char* path, const char* get, const char* set, unsigned size)
{
    Record record = parameterRecord(path, get, set, size);
    record.assertion = lanParameters.assertion;
    return record;
}

/// Where alerts go.
void addLanAlerts(Stores& stores);
/// Who may log in by which means.
void addLanAuthentication(Stores& stores);
/// IPv6 addresses.
void addLanIpv6(Stores& stores);
/// The manufacturer's own.
void addLanOem(Stores& stores);

} // namespace Module::BMCConfig

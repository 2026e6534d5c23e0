#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

// The numbers of IPMI 2.0 that every area's packets are made of, and the raw request.

namespace Module::BMCConfig {

namespace {

/// Network functions (IPMI 2.0, 5.1). 2Eh carries an IANA number in its first three bytes; 30h and 3Eh are the
/// manufacturer's own.
constexpr TextRow netFunctions[] = {
    {"$/IPMI/APP_NET_FUNCTION", "06"},       {"$/IPMI/BRIDGE_NET_FUNCTION", "02"},
    {"$/IPMI/CHASSIS_NET_FUNCTION", "00"},   {"$/IPMI/FIRMWARE_NET_FUNCTION", "08"},
    {"$/IPMI/GROUP_OEM_NET_FUNCTION", "2E"}, {"$/IPMI/ORVEL_GENERAL_APP", "3E"},
    {"$/IPMI/ORVEL_PLATFORM_APP", "30"},     {"$/IPMI/SENSOR_NET_FUNCTION", "04"},
    {"$/IPMI/STORAGE_NET_FUNCTION", "0A"},   {"$/IPMI/TRANSPORT_NET_FUNCTION", "0C"},
};

} // namespace

IpmiConfig::IpmiConfig(Stores& stores)
{
    addConstants(stores, netFunctions);
}

} // namespace Module::BMCConfig

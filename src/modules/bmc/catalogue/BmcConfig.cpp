#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

// The root of the tree, and what every area shares: the BMC's address and the filter for the completion code.

namespace Module::BMCConfig {

using namespace steps;

namespace {

constexpr TextRow constants[] = {
    {"$/BMC/BASE_ADDRESS", "20"},
};

constexpr TextRow packets[] = {
    {"GET://BMC/DEVICE_ID", "$DEVICE_ID_NUMBER $/IPMI/APP_NET_FUNCTION 00 $/IPMI/GET_DEVICE_ID"},
    {"GET://BMC/UPDATE_STATUS", "$/BMC/BASE_ADDRESS $/IPMI/FIRMWARE_NET_FUNCTION 00 $/IPMI/GET_FIRMWARE_UPDATE_STATUS"},
};

constexpr TextRow filters[] = {
    {"GET://BMC/COMPLETION_CODE", "0"},
};

} // namespace

BmcConfig::BmcConfig(Stores& stores)
{
    addConstants(stores, constants);
    addPackets(stores, packets);
    addFilters(stores, filters);
}

} // namespace Module::BMCConfig

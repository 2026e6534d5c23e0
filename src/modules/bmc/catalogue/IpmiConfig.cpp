#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

// The numbers of IPMI 2.0 that several areas' packets are made of, and the raw request.

namespace Module::BMCConfig {

using namespace steps;

namespace {

/// Network functions (IPMI 2.0, 5.1). 30h and 3Eh are the manufacturer's own.
constexpr TextRow netFunctions[] = {
    {"$/IPMI/APP_NET_FUNCTION", "06"},   {"$/IPMI/FIRMWARE_NET_FUNCTION", "08"}, {"$/IPMI/ORVEL_GENERAL_APP", "3E"},
    {"$/IPMI/ORVEL_PLATFORM_APP", "30"}, {"$/IPMI/SENSOR_NET_FUNCTION", "04"},   {"$/IPMI/STORAGE_NET_FUNCTION", "0A"},
};

/// Commands of the application network function (IPMI 2.0, appendix G).
constexpr TextRow appCommands[] = {
    {"$/IPMI/GET_ACPI_POWER_STATE", "07"}, {"$/IPMI/GET_DEVICE_ID", "01"},     {"$/IPMI/GET_SELF_TEST_RESULTS", "04"},
    {"$/IPMI/GET_SYSTEM_GUID", "37"},      {"$/IPMI/MASTER_WRITE_READ", "52"},
};

/// Commands of the firmware network function and of the manufacturer's own.
constexpr TextRow oemCommands[] = {
    {"$/IPMI/GET_ADD_IN_SUPPORT", "5B"},
    {"$/IPMI/GET_ADV_SUP_CONFIG", "5A"},
    {"$/IPMI/GET_BUFFER_SIZE", "5C"},
    {"$/IPMI/GET_FIRMWARE_UPDATE_STATUS", "0F"},
};

/// The whole request is the caller's: "target netFn LUN command data...", hexadecimal, separated by blanks or commas.
constexpr TextRow packets[] = {
    {"GET://BMC/IPMI/RAW_COMMAND", "$RAW_COMMAND"},
};

} // namespace

IpmiConfig::IpmiConfig(Stores& stores)
{
    addConstants(stores, netFunctions);
    addConstants(stores, appCommands);
    addConstants(stores, oemCommands);
    addPackets(stores, packets);

    // The answer goes back as it came, completion code first, in decimal: what a code means is the caller's affair.
    addTemplate(stores, "GET://BMC/IPMI/RAW_COMMAND",
                script({
                    Split("$RAW_COMMAND", " ,", "$RAW_COMMAND"),
                    IPMI("GET://BMC/IPMI/RAW_COMMAND", "$BUFFER"),
                    Copy("$BUFFER", "$RESULT"),
                    Return("$RESULT"),
                }));
}

} // namespace Module::BMCConfig

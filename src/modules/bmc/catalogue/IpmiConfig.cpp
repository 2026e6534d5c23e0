#include "ipmi/Codes.hpp"
#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

// The numbers of IPMI 2.0 that several areas' packets are made of, and the raw request.

namespace Module::BMCConfig {

using namespace steps;

namespace {

/// Network functions (IPMI 2.0, 5.1). 30h and 3Eh are the manufacturer's own.
constexpr CodeConstant netFunctions[] = {
    {"$/IPMI/APP_NET_FUNCTION", ipmi::netfn::app},
    {"$/IPMI/FIRMWARE_NET_FUNCTION", ipmi::netfn::firmware},
    {"$/IPMI/ORVEL_GENERAL_APP", ipmi::netfn::oemGeneral},
    {"$/IPMI/ORVEL_PLATFORM_APP", ipmi::netfn::oemPlatform},
    {"$/IPMI/SENSOR_NET_FUNCTION", ipmi::netfn::sensorEvent},
    {"$/IPMI/STORAGE_NET_FUNCTION", ipmi::netfn::storage},
};

/// Commands of the application network function (IPMI 2.0, appendix G).
constexpr CodeConstant appCommands[] = {
    {"$/IPMI/GET_ACPI_POWER_STATE", ipmi::cmd::getAcpiPowerState},
    {"$/IPMI/GET_DEVICE_ID", ipmi::cmd::getDeviceId},
    {"$/IPMI/GET_SELF_TEST_RESULTS", ipmi::cmd::getSelfTestResults},
    {"$/IPMI/GET_SYSTEM_GUID", ipmi::cmd::getSystemGuid},
    {"$/IPMI/MASTER_WRITE_READ", ipmi::cmd::masterWriteRead},
};

/// Commands of the firmware network function and of the manufacturer's own.
constexpr CodeConstant oemCommands[] = {
    {"$/IPMI/GET_ADD_IN_SUPPORT", ipmi::cmd::getAddInSupport},
    {"$/IPMI/GET_ADV_SUP_CONFIG", ipmi::cmd::getAdvancedSupport},
    {"$/IPMI/GET_BUFFER_SIZE", ipmi::cmd::getBufferSize},
    {"$/IPMI/GET_FIRMWARE_UPDATE_STATUS", ipmi::cmd::getFirmwareUpdateStatus},
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

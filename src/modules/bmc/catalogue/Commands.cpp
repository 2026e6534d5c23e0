#include "modules/bmc/catalogue/Commands.hpp"

#include "ipmi/Codes.hpp"

namespace Module::BMCConfig {

namespace {

namespace cmd = ipmi::cmd;

/// The standard's (IPMI 2.0, 5.1); 08h, 30h and 3Eh are the manufacturer's own.
constexpr char app[] = "APP_NET_FUNCTION", chassis[] = "CHASSIS_NET_FUNCTION", firmware[] = "FIRMWARE_NET_FUNCTION",
               oemGeneral[] = "ORVEL_GENERAL_APP", oemPlatform[] = "ORVEL_PLATFORM_APP",
               sensor[] = "SENSOR_NET_FUNCTION", storage[] = "STORAGE_NET_FUNCTION",
               transport[] = "TRANSPORT_NET_FUNCTION";

constexpr NetFunction functions[] = {
    {app, ipmi::netfn::app},
    {chassis, ipmi::netfn::chassis},
    {firmware, ipmi::netfn::firmware},
    {oemGeneral, ipmi::netfn::oemGeneral},
    {oemPlatform, ipmi::netfn::oemPlatform},
    {sensor, ipmi::netfn::sensorEvent},
    {storage, ipmi::netfn::storage},
    {transport, ipmi::netfn::transport},
};

constexpr Command all[] = {
    {"$/SDR/ALLOCATION_INFO", storage, cmd::getSdrRepositoryInfo}, // in spite of the name
    {"$/SDR/CFG_CONTROL_CMD", oemGeneral, cmd::controlSdrConfiguration},
    {"$/SDR/CFG_MANAGEMENT_CMD", oemGeneral, cmd::manageSdrConfiguration},
    {"$/SDR/CFG_READ_CMD", oemGeneral, cmd::readSdrConfiguration},
    {"$/SDR/CFG_WRITE_CMD", oemGeneral, cmd::writeSdrConfiguration},
    {"$/SDR/CLEAR_CMD", storage, cmd::clearSdrRepository},
    {"$/SDR/GET_SDR", storage, cmd::getSdr},
    {"$/SDR/PARTIAL_ADD", storage, cmd::partialAddSdr},
    {"$/SDR/REPOSITORY_ALLOCATION_INFO", storage, cmd::getSdrRepositoryAllocationInfo},
    {"$/SENSOR/SET_THRESHOLD", sensor, cmd::setSensorThresholds},
    {"ALERT_IMMEDIATE", sensor, cmd::alertImmediate},
    {"CHASSIS_CONTROL", chassis, cmd::chassisControl},
    {"CHASSIS_IDENTIFY", chassis, cmd::chassisIdentify},
    {"CLEAR_SEL", storage, cmd::clearSel},
    {"ENTER_FIRMWARE_TRANSFER_MODE", firmware, cmd::enterFirmwareTransfer},
    {"EXIT_FIRMWARE_TRANSFER_MODE", firmware, cmd::exitFirmwareTransfer},
    {"EXTENDED_SEL_ALLOCATION_INFO", oemPlatform, cmd::extendedSelAllocationInfo},
    {"EXTENDED_SEL_ENTRY", oemPlatform, cmd::extendedSelEntry},
    {"EXTENDED_SEL_INFO", oemPlatform, cmd::extendedSelInfo},
    {"GET_ACPI_POWER_STATE", app, cmd::getAcpiPowerState},
    {"GET_ADD_IN_SUPPORT", oemPlatform, cmd::getAddInSupport},
    {"GET_ADVANCED_SUPPORT", oemPlatform, cmd::getAdvancedSupport},
    {"GET_BUFFER_SIZE", oemPlatform, cmd::getBufferSize},
    {"GET_CHANNEL_ACCESS", app, cmd::getChannelAccess},
    {"GET_CHANNEL_INFO", app, cmd::getChannelInfo},
    {"GET_CHASSIS_CAPABILITIES", chassis, cmd::getChassisCapabilities},
    {"GET_CHASSIS_STATUS", chassis, cmd::getChassisStatus},
    {"GET_DEVICEID_COMMAND", app, cmd::getDeviceId},
    {"GET_DEVICE_ID", app, cmd::getDeviceId},
    {"GET_FIRMWARE_UPDATE_STATUS", firmware, cmd::getFirmwareUpdateStatus},
    {"GET_LAN_CONFIGURATION_PARAMETERS", transport, cmd::getLanConfiguration},
    {"GET_LAN_FAILOVER_MODE", oemPlatform, cmd::getLanFailoverMode},
    {"GET_LED_STATUS", oemPlatform, cmd::getLedStatus},
    {"GET_PEF_CAPABILITIES", sensor, cmd::getPefCapabilities},
    {"GET_PEF_CONFIGURATION_PARAMETERS", sensor, cmd::getPefConfiguration},
    {"GET_SELF_TEST_RESULTS", app, cmd::getSelfTestResults},
    {"GET_SEL_ENTRY", storage, cmd::getSelEntry},
    {"GET_SEL_INFO", storage, cmd::getSelInfo},
    {"GET_SEL_TIME", storage, cmd::getSelTime},
    {"GET_SENSOR_EVENT_ENABLE", sensor, cmd::getSensorEventEnable},
    {"GET_SENSOR_READING", sensor, cmd::getSensorReading},
    {"GET_SENSOR_THRESHOLDS", sensor, cmd::getSensorThresholds},
    {"GET_SOL_CONFIGURATION_PARAMETERS", transport, cmd::getSolConfiguration},
    {"GET_SYSTEM_BOOT_OPTIONS", chassis, cmd::getSystemBootOptions},
    {"GET_SYSTEM_GUID", app, cmd::getSystemGuid},
    {"GET_SYSTEM_RESTART_CAUSE", chassis, cmd::getSystemRestartCause},
    {"GET_USER_ACCESS", app, cmd::getUserAccess},
    {"GET_USER_NAME", app, cmd::getUserName},
    {"GET_USER_PAYLOAD_ACCESS", app, cmd::getUserPayloadAccess},
    {"MASTER_WRITE_READ", app, cmd::masterWriteRead},
    {"PET_ACKNOWLEDGE", sensor, cmd::petAcknowledge},
    {"READ_FRU_DATA", storage, cmd::readFruData},
    {"READ_SMBIOS_REGION", oemGeneral, cmd::readSmbiosRegion},
    {"REARM_SENSOR_EVENTS", sensor, cmd::rearmSensorEvents},
    {"RESERVE_SDR_REPOSITORY", storage, cmd::reserveSdrRepository},
    {"RESERVE_SEL", storage, cmd::reserveSel},
    {"RESOLVE_MAC_ADDRESS", oemPlatform, cmd::resolveMacAddress},
    {"SET_CHANNEL_ACCESS", app, cmd::setChannelAccess},
    {"SET_FRONT_PANEL_ENABLES", chassis, cmd::setFrontPanelEnables},
    {"SET_LAN_CONFIGURATION_PARAMETERS", transport, cmd::setLanConfiguration},
    {"SET_LAN_FAILOVER_MODE", oemPlatform, cmd::setLanFailoverMode},
    {"SET_PEF_CONFIGURATION_PARAMETERS", sensor, cmd::setPefConfiguration},
    {"SET_POWER_RESTORE_POLICY", chassis, cmd::setPowerRestorePolicy},
    {"SET_SENSOR_EVENT_ENABLE", sensor, cmd::setSensorEventEnable},
    {"SET_SOL_CONFIGURATION_PARAMETERS", transport, cmd::setSolConfiguration},
    {"SET_SYSTEM_BOOT_OPTIONS", chassis, cmd::setSystemBootOptions},
    {"SET_USER_ACCESS", app, cmd::setUserAccess},
    {"SET_USER_NAME", app, cmd::setUserName},
    {"SET_USER_PASSWORD", app, cmd::setUserPassword},
    {"SET_USER_PAYLOAD_ACCESS", app, cmd::setUserPayloadAccess},
    {"SMBIOS_REGION_STATUS", oemGeneral, cmd::smbiosRegionStatus},
    {"WRITE_FRU_DATA", storage, cmd::writeFruData},
};

} // namespace

std::span<const NetFunction> netFunctions()
{
    return functions;
}

std::span<const Command> commands()
{
    return all;
}

} // namespace Module::BMCConfig

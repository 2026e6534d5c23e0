#include "modules/bmc/catalogue/Commands.hpp"

#include "ipmi/Codes.hpp"

namespace Module::BMCConfig {

namespace {

namespace cmd = ipmi::cmd;

/// Commands that nothing but scripts send: the standard's (IPMI 2.0, 20, 25 and 33.21), the manufacturer's under 08h
/// and 30h, and under 2Eh power governing.
namespace own {
constexpr std::uint8_t coldReset = 0x02, warmReset = 0x03, setSerialConfiguration = 0x10, getSerialConfiguration = 0x11,
                       runInitializationAgent = 0x2C;
constexpr std::uint8_t readFirmware = 0x02, rangeChecksum = 0x03, exitFirmwareTransfer = 0x04, prepareArea = 0xA0,
                       openArea = 0xA1, closeArea = 0xA3, registerArea = 0xA4;
constexpr std::uint8_t restoreConfiguration = 0x02, getManagementSignal = 0x14, setColdRedundancy = 0x2D,
                       getColdRedundancy = 0x2E, setShutdownPolicy = 0x60, getShutdownPolicy = 0x62,
                       controlBmcServices = 0xB1, getBmcServices = 0xB2, setSecurityMode = 0xB4;
constexpr std::uint8_t enablePolicy = 0xC0, setPolicy = 0xC1, getPolicy = 0xC2, setAlertThresholds = 0xC3,
                       getAlertThresholds = 0xC4, getSuspendPeriods = 0xC6, resetStatistics = 0xC7,
                       getStatistics = 0xC8, getCapabilities = 0xC9, getGovernorVersion = 0xCA,
                       setPowerDrawRange = 0xCB, setAlertDestination = 0xCE, getAlertDestination = 0xCF,
                       forceRecovery = 0xDF;
} // namespace own

/// The standard's (IPMI 2.0, 5.1); 08h, 30h and 3Eh are the manufacturer's own, 2Eh is of groups of them.
constexpr char app[] = "APP_NET_FUNCTION", chassis[] = "CHASSIS_NET_FUNCTION", firmware[] = "FIRMWARE_NET_FUNCTION",
               group[] = "OEM_GROUP_NET_FUNCTION", oemGeneral[] = "ORVEL_GENERAL_APP",
               oemPlatform[] = "ORVEL_PLATFORM_APP", sensor[] = "SENSOR_NET_FUNCTION",
               storage[] = "STORAGE_NET_FUNCTION", transport[] = "TRANSPORT_NET_FUNCTION";

constexpr std::uint8_t oemGroupFunction = 0x2E;

constexpr NetFunction functions[] = {
    {app, ipmi::netfn::app},
    {chassis, ipmi::netfn::chassis},
    {firmware, ipmi::netfn::firmware},
    {group, oemGroupFunction},
    {oemGeneral, ipmi::netfn::oemGeneral},
    {oemPlatform, ipmi::netfn::oemPlatform},
    {sensor, ipmi::netfn::sensorEvent},
    {storage, ipmi::netfn::storage},
    {transport, ipmi::netfn::transport},
};

constexpr Command everyCommand[] = {
    {"$/PG/COMMAND", group, own::getCapabilities},                 // unless told otherwise
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
    {"CLOSE_AREA", oemPlatform, own::closeArea},
    {"COLD_RESET", app, own::coldReset},
    {"CONTROL_BMC_SERVICES", oemPlatform, own::controlBmcServices},
    {"ENABLE_POLICY", group, own::enablePolicy},
    {"ENTER_FIRMWARE_TRANSFER_MODE", firmware, cmd::enterFirmwareTransfer},
    {"EXIT_FIRMWARE_TRANSFER_MODE", firmware, own::exitFirmwareTransfer},
    {"EXTENDED_SEL_ALLOCATION_INFO", oemPlatform, cmd::extendedSelAllocationInfo},
    {"EXTENDED_SEL_ENTRY", oemPlatform, cmd::extendedSelEntry},
    {"EXTENDED_SEL_INFO", oemPlatform, cmd::extendedSelInfo},
    {"FORCE_ENGINE_RECOVERY", group, own::forceRecovery},
    {"GET_ACPI_POWER_STATE", app, cmd::getAcpiPowerState},
    {"GET_ADD_IN_SUPPORT", oemPlatform, cmd::getAddInSupport},
    {"GET_ADVANCED_SUPPORT", oemPlatform, cmd::getAdvancedSupport},
    {"GET_ALERT_DESTINATION", group, own::getAlertDestination},
    {"GET_ALERT_THRESHOLDS", group, own::getAlertThresholds},
    {"GET_BMC_SERVICES", oemPlatform, own::getBmcServices},
    {"GET_BUFFER_SIZE", oemPlatform, cmd::getBufferSize},
    {"GET_CAPABILITIES", group, own::getCapabilities},
    {"GET_CHANNEL_ACCESS", app, cmd::getChannelAccess},
    {"GET_CHANNEL_INFO", app, cmd::getChannelInfo},
    {"GET_CHASSIS_CAPABILITIES", chassis, cmd::getChassisCapabilities},
    {"GET_CHASSIS_STATUS", chassis, cmd::getChassisStatus},
    {"GET_COLD_REDUNDANCY", oemPlatform, own::getColdRedundancy},
    {"GET_DEVICEID_COMMAND", app, cmd::getDeviceId},
    {"GET_DEVICE_ID", app, cmd::getDeviceId},
    {"GET_FIRMWARE_RANGE_CHECKSUM", firmware, own::rangeChecksum},
    {"GET_FIRMWARE_UPDATE_STATUS", firmware, cmd::getFirmwareUpdateStatus},
    {"GET_GOVERNOR_VERSION", group, own::getGovernorVersion},
    {"GET_LAN_CONFIGURATION_PARAMETERS", transport, cmd::getLanConfiguration},
    {"GET_LAN_FAILOVER_MODE", oemPlatform, cmd::getLanFailoverMode},
    {"GET_LED_STATUS", oemPlatform, cmd::getLedStatus},
    {"GET_MANAGEMENT_SIGNAL", oemPlatform, own::getManagementSignal},
    {"GET_PEF_CAPABILITIES", sensor, cmd::getPefCapabilities},
    {"GET_PEF_CONFIGURATION_PARAMETERS", sensor, cmd::getPefConfiguration},
    {"GET_POLICY", group, own::getPolicy},
    {"GET_SELF_TEST_RESULTS", app, cmd::getSelfTestResults},
    {"GET_SEL_ENTRY", storage, cmd::getSelEntry},
    {"GET_SEL_INFO", storage, cmd::getSelInfo},
    {"GET_SEL_TIME", storage, cmd::getSelTime},
    {"GET_SENSOR_EVENT_ENABLE", sensor, cmd::getSensorEventEnable},
    {"GET_SENSOR_READING", sensor, cmd::getSensorReading},
    {"GET_SENSOR_THRESHOLDS", sensor, cmd::getSensorThresholds},
    {"GET_SERIAL_CONFIGURATION", transport, own::getSerialConfiguration},
    {"GET_SHUTDOWN_POLICY", oemPlatform, own::getShutdownPolicy},
    {"GET_SOL_CONFIGURATION_PARAMETERS", transport, cmd::getSolConfiguration},
    {"GET_STATISTICS", group, own::getStatistics},
    {"GET_SUSPEND_PERIODS", group, own::getSuspendPeriods},
    {"GET_SYSTEM_BOOT_OPTIONS", chassis, cmd::getSystemBootOptions},
    {"GET_SYSTEM_GUID", app, cmd::getSystemGuid},
    {"GET_SYSTEM_RESTART_CAUSE", chassis, cmd::getSystemRestartCause},
    {"GET_USER_ACCESS", app, cmd::getUserAccess},
    {"GET_USER_NAME", app, cmd::getUserName},
    {"GET_USER_PAYLOAD_ACCESS", app, cmd::getUserPayloadAccess},
    {"MASTER_WRITE_READ", app, cmd::masterWriteRead},
    {"OPEN_AREA", oemPlatform, own::openArea},
    {"PET_ACKNOWLEDGE", sensor, cmd::petAcknowledge},
    {"PREPARE_AREA", oemPlatform, own::prepareArea},
    {"PROGRAM_FIRMWARE_DATA", firmware, cmd::programData},
    {"PROGRAM_FIRMWARE_SEGMENT", firmware, cmd::programSegment},
    {"READ_FIRMWARE", firmware, own::readFirmware},
    {"READ_FRU_DATA", storage, cmd::readFruData},
    {"READ_SMBIOS_REGION", oemGeneral, cmd::readSmbiosRegion},
    {"REARM_SENSOR_EVENTS", sensor, cmd::rearmSensorEvents},
    {"REGISTER_AREA", oemPlatform, own::registerArea},
    {"RESERVE_SDR_REPOSITORY", storage, cmd::reserveSdrRepository},
    {"RESERVE_SEL", storage, cmd::reserveSel},
    {"RESET_STATISTICS", group, own::resetStatistics},
    {"RESOLVE_MAC_ADDRESS", oemPlatform, cmd::resolveMacAddress},
    {"RESTORE_CONFIGURATION", oemPlatform, own::restoreConfiguration},
    {"RUN_INITIALIZATION_AGENT", storage, own::runInitializationAgent},
    {"SET_ALERT_DESTINATION", group, own::setAlertDestination},
    {"SET_ALERT_THRESHOLDS", group, own::setAlertThresholds},
    {"SET_CHANNEL_ACCESS", app, cmd::setChannelAccess},
    {"SET_COLD_REDUNDANCY", oemPlatform, own::setColdRedundancy},
    {"SET_FRONT_PANEL_ENABLES", chassis, cmd::setFrontPanelEnables},
    {"SET_LAN_CONFIGURATION_PARAMETERS", transport, cmd::setLanConfiguration},
    {"SET_LAN_FAILOVER_MODE", oemPlatform, cmd::setLanFailoverMode},
    {"SET_PEF_CONFIGURATION_PARAMETERS", sensor, cmd::setPefConfiguration},
    {"SET_POLICY", group, own::setPolicy},
    {"SET_POWER_DRAW_RANGE", group, own::setPowerDrawRange},
    {"SET_POWER_RESTORE_POLICY", chassis, cmd::setPowerRestorePolicy},
    {"SET_SECURITY_MODE", oemPlatform, own::setSecurityMode},
    {"SET_SENSOR_EVENT_ENABLE", sensor, cmd::setSensorEventEnable},
    {"SET_SERIAL_CONFIGURATION", transport, own::setSerialConfiguration},
    {"SET_SHUTDOWN_POLICY", oemPlatform, own::setShutdownPolicy},
    {"SET_SOL_CONFIGURATION_PARAMETERS", transport, cmd::setSolConfiguration},
    {"SET_SYSTEM_BOOT_OPTIONS", chassis, cmd::setSystemBootOptions},
    {"SET_USER_ACCESS", app, cmd::setUserAccess},
    {"SET_USER_NAME", app, cmd::setUserName},
    {"SET_USER_PASSWORD", app, cmd::setUserPassword},
    {"SET_USER_PAYLOAD_ACCESS", app, cmd::setUserPayloadAccess},
    {"SMBIOS_REGION_STATUS", oemGeneral, cmd::smbiosRegionStatus},
    {"WARM_RESET", app, own::warmReset},
    {"WRITE_AREA", oemPlatform, cmd::writeToArea},
    {"WRITE_FRU_DATA", storage, cmd::writeFruData},
};

} // namespace

std::span<const NetFunction> netFunctions()
{
    return functions;
}

std::span<const Command> commands()
{
    return everyCommand;
}

} // namespace Module::BMCConfig

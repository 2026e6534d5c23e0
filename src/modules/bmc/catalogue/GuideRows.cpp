#include "modules/bmc/catalogue/Guide.hpp"

namespace Module::BMCConfig {

namespace {

constexpr ParameterRow guideParameters[] = {
    {"GET://BMC/CHANNEL[]/ACCESS", "MEMORY"},
    {"GET://BMC/CHASSIS/BOOTOPTION_GETTABLE", "SET_SELECTOR BLOCK_SELECTOR"},
    {"GET://BMC/CHASSIS/BOOT_OPTION", "PARAMETER_SELECTOR SET_SELECTOR BLOCK_SELECTOR"},
    {"GET://BMC/FIRMWARE/CONTROL_SOL_LOG", "COMMAND DATA"},
    {"GET://BMC/FIRMWARE/PLDB_READ", "COMMAND DATA"},
    {"GET://BMC/FIRMWARE/PLDB_STATUS/LOG_FILE_SIZE", "COMMAND DATA"},
    {"GET://BMC/FIRMWARE/PLDB_STATUS/TRANSFER_STATUS", "COMMAND DATA"},
    {"GET://BMC/FIRMWARE/RANGE_CHECKSUM", "RANGE"},
    {"GET://BMC/FIRMWARE/READ", "OFFSET LENGTH"},
    {"GET://BMC/FIRMWARE/READ_SOL_LOG", "COMMAND DATA"},
    {"GET://BMC/FIRMWARE/SOL_LOG_STATUS/FILE_SIZE", "COMMAND DATA"},
    {"GET://BMC/FIRMWARE/SOL_LOG_STATUS/STATUS", "COMMAND DATA"},
    {"GET://BMC/FIRMWARE/STATUS_PLATFORM_DEBUG_LOG", "COMMAND DATA"},
    {"GET://BMC/GET_VOLTAGE_SENSOR_NAME", "COMMAND DATA /BMC/VOLTAGE_SENSOR_OFFSET"},
    {"GET://BMC/INFO/LOCAL/PRODUCT", "/LOCAL_ID"},
    {"GET://BMC/INFO/MASTER_READ_WRITE", "BUS_ID SLAVE_ADDRESS READ_COUNT WRITE_DATA"},
    {"GET://BMC/LAN/DHCP_HOSTNAME", "CHANNEL HOSTNAME_PARAMETER"},
    {"GET://BMC/LAN/RESOLVE_MAC_ADDRESS", "IP"},
    {"GET://BMC/LAN/SMTPCONFIG", "CHANNEL SMTP_PARAMETER"},
    {"GET://BMC/OEM[]/GET_PROC_TDC", "COMMAND DATA"},
    {"GET://BMC/OEM[]/GET_SM_SIGNAL", "SIGNAL_INSTANCE"},
    {"GET://BMC/PEF/DATA", "SELECTOR SET BLOCK"},
    {"GET://BMC/PG/DATA", "COMMAND DOMAIN SUBJECT"},
    {"GET://BMC/SDR/CFG_READ", "CONTROL FILE_OFFSET FILE_LENGTH"},
    {"GET://BMC/SMBIOS/READ", "DATA_REGION READ_COUNT OFFSET_LS OFFSET_MS"},
    {"GET://BMC/SMBIOS/REGION_STATUS", "DATA_REGION"},
    {"GET://BMC/VLN_INFO/RECOVERY/BKC_VERSION", "COMMAND DATA"},
    {"GET://BMC/VLN_INFO/RECOVERY/BMC_VERSION", "COMMAND DATA"},
    {"GET://BMC/VLN_INFO/RECOVERY/REGION", "COMMAND DATA"},
    {"GET://BMC/VLN_INFO/RECOVERY/SDR_VERSION", "COMMAND DATA"},
    {"GET://BMC/VLN_INFO/RECOVERY/VLN_SECURITY_VERSION", "COMMAND DATA"},
    {"SET://BMC/FIRMWARE/CONTROL_SOL_LOG", "COMMAND DATA"},
    {"SET://BMC/FIRMWARE/ENTER_SOL_LOG_TRANSFER_MODE", "COMMAND DATA"},
    {"SET://BMC/FIRMWARE/EXIT_SOL_LOG_TRANSFER_MODE", "COMMAND DATA"},
    {"SET://BMC/FIRMWARE/PLDB_ENTER_TRANSFER_MODE", "COMMAND DATA"},
    {"SET://BMC/FIRMWARE/PLDB_EXIT_TRANSFER_MODE", "COMMAND DATA"},
    {"SET://BMC/FRU/WRITE", "/FRU/INVENTORY/WRITE_OFFSET_LS /FRU/INVENTORY/WRITE_OFFSET_MS /FRU/MODIFIED_DATA"},
    {"SET://BMC/LAN/DHCP_HOSTNAME", "CHANNEL HOSTNAME_PARAMETER"},
    {"SET://BMC/LAN/SMTPCONFIG", "CHANNEL SMTP_PARAMETER"},
    {"SET://BMC/LAN[]/CONFIGURE", "IPTYPE IP SUBNETMASK DEFAULTGATEWAYIP"},
    {"SET://BMC/LAN[]/SCF",
     "IPTYPE IP SUBNETMASK DEFAULTGATEWAYIP DEFAULTGATEWAYMAC BACKUPGATEWAYIP BACKUPGATEWAYMAC COMMUNITYSTRING "
     "ARPRESPONSE GRATUITOUSARP ARPINTERVAL IPV6STATUS IPV6SOURCE IPV6 IPV6PREFIXLENGTH IPV6_GATEWAYIP"},
    {"SET://BMC/OEM/BMCSERVICE", "KVM RMCP SSH WEB"},
    {"SET://BMC/PEF/FILTER[]", "STATUS ACTION POLICY_NUMBER EVENT_SEVERITY GENID1 GENID2 SENSOR_TYPE SENSOR_NUMBER "
                               "TRIGGER EVENT_MASK0 EVENT_MASK1 EVENT_ANDMASK MISC"},
    {"SET://BMC/PEF/POLICY[]", "NUMBER STATUS POLICY_TYPE CHANNEL_NUMBER DESTINATION_NUMBER ALERT ALERT_STRING_KEY"},
    {"SET://BMC/PG/ALERT_DESTINATION", "ALERT_STRING_SELECTOR CHANNEL_NUMBER DESTINATION_INFO VALID"},
    {"SET://BMC/PG/DOMAIN[]/POLICY[]/POLICY_PARAMETERS",
     "CORRECTION_TIPX_LIMIT POLICY_ENABLED POLICY_EXCEPTION_ACTION POLICY_TRIGGER_LIMIT POLICY_TYPE POWER_LIMIT "
     "STATISTIC_REPORTING_PERIOD"},
    {"SET://BMC/PG/DOMAIN[]/POWER_DRAW_RANGE", "MAXIMUM MINIMUM"},
    {"SET://BMC/SCF/PEF", "ALERT_STARTUP_DELAY ALERT_STARTUP_DELAY_STATUS EVENT_MESSAGES_STATUS GLOBAL_ACTION GUID "
                          "GUID_STATUS STARTUP_DELAY STARTUP_DELAY_STATUS STATUS FILTER POLICY RAW"},
    {"SET://BMC/SCF/POWER", "RESTOREPOLICY"},
    {"SET://BMC/SCF/SOL", "CHANNEL"},
    {"SET://BMC/SCF/USER", "CHANNEL"},
    {"SET://BMC/SDR/ADD_PARTIAL", "RECORD_LS RECORD_MS RECORD_OFFSET PARTIAL_ADD_PROGRESS DATA"},
    {"SET://BMC/SDR/CFG_CONTROL", "CONTROL"},
    {"SET://BMC/SDR/CFG_MANAGEMENT", "CONTROL"},
    {"SET://BMC/SDR/CFG_WRITE", "CONTROL FILE_OFFSET FILE_DATA"},
    {"SET://BMC/SDR/CFG_WRITE_LAST", "CONTROL FILE_CRC32 FILE_TIMESTAMP"},
    {"SET://BMC/SENSOR[]/EVENT",
     "STATUS LOWER_ASSERTION UPPER_ASSERTION LOWER_DEASSERTION UPPER_DEASSERTION EVENT_STATUS "
     "LOWER_ASSERTION_EVENT_STATUS UPPER_ASSERTION_EVENT_STATUS LOWER_DEASSERTION_STATUS UPPER_DEASSERTION_STATUS"},
    {"SET://BMC/SENSOR[]/THRESHOLD",
     "LOWER_CRITICAL LOWER_NONCRITICAL LOWER_NONRECOVERABLE UPPER_CRITICAL UPPER_NONCRITICAL UPPER_NONRECOVERABLE"},
    {"SET://BMC/SOL/CHANNEL[]/SCF",
     "ENABLEUSER PRIVILEGE AUTHENTICATION ENCRYPTION ACCUMULATEINTERVAL SENDTHRESHOLD COUNT INTERVAL BAUDRATESERIAL"},
    {"SET://BMC/USER[]/CHANNEL[]/SCF", "PRIVILEGE CALLBACK IPMI_AUTHENTICATION"},
    {"SET://BMC/USER[]/SCF", "NAME STATUS"},
};

constexpr char cutsOff[] = "whoever administers this server from afar may be cut off",
               locksOut[] = "who logs in with it may be locked out", loses[] = "what it holds is lost",
               restarts[] = "the controller starts anew and does not answer meanwhile",
               anyCommand[] = "it sends the manufacturer's command that COMMAND names, whatever that does";

constexpr CautionRow cautions[] = {
    {"GET://BMC/FIRMWARE/CONTROL_SOL_LOG", Need::force, anyCommand},
    {"GET://BMC/FIRMWARE/EXITFWXFERMODE", Need::consent, "an update that is under way is broken off"},
    {"GET://BMC/FIRMWARE/PLDB_", Need::force, anyCommand},
    {"GET://BMC/FIRMWARE/READ_SOL_LOG", Need::force, anyCommand},
    {"GET://BMC/FIRMWARE/SOL_LOG_STATUS", Need::force, anyCommand},
    {"GET://BMC/FIRMWARE/STATUS_PLATFORM_DEBUG_LOG", Need::force, anyCommand},
    {"GET://BMC/GET_VOLTAGE_SENSOR_NAME", Need::force, anyCommand},
    {"GET://BMC/INFO/MASTER_READ_WRITE", Need::force, "what it writes to a bus of the board can harm it"},
    {"GET://BMC/IPMI/RAW_COMMAND", Need::force, "it sends whatever it is given; raw tells what is harmless"},
    {"GET://BMC/OEM[]/GET_PROC_TDC", Need::force, anyCommand},
    {"GET://BMC/VLN_INFO/RECOVERY", Need::force, anyCommand},
    {"SET://BMC/CHANNEL[]", Need::consent, cutsOff},
    {"SET://BMC/CHASSIS/CONTROL", Need::consent, "the server loses its power, is reset or told to shut down"},
    {"SET://BMC/CONTROLLER[]/SDR/CLEAR", Need::consent, loses},
    {"SET://BMC/FIRMWARE/COLDRESETME", Need::consent, restarts},
    {"SET://BMC/FIRMWARE/REFRESH", Need::consent, restarts},
    {"SET://BMC/FIRMWARE/RESET", Need::consent, restarts},
    {"SET://BMC/FRU/WRITE", Need::consent, "the inventory is written over"},
    {"SET://BMC/LAN", Need::consent, cutsOff},
    {"SET://BMC/OEM/BMCSERVICE", Need::consent, cutsOff},
    {"SET://BMC/OEM/SHUTDOWNPOLICY", Need::consent, "the server may be shut down when a power supply fails"},
    {"SET://BMC/PG", Need::consent, "the server may be slowed down or shut down"},
    {"SET://BMC/SCF/LAN", Need::consent, cutsOff},
    {"SET://BMC/SCF/SOL", Need::consent, cutsOff},
    {"SET://BMC/SCF/USER", Need::consent, locksOut},
    {"SET://BMC/SDR", Need::consent, "the sensors' records change"},
    {"SET://BMC/SEL/CLEAR", Need::consent, loses},
    {"SET://BMC/SERIAL", Need::consent, cutsOff},
    {"SET://BMC/SOL", Need::consent, cutsOff},
    {"SET://BMC/USER[]", Need::consent, locksOut},
    {"SET://BMC/USER[]/TEST_PASSWORD", Need::nothing, ""},
};

constexpr SubjectRow subjects[] = {
    {"/BIOS/PlatformID", "the board's name"},
    {"/BIOS/VERSION", "the firmware's version"},
    {"/BMC/FRU", "the inventory of device 0, or of the device that is named", "DEVICE_ID BASE_ADDRESS"},
    {"/BMC/FRU[]/RECORD/DECODED", "branch: CHASSISAREA BOARDAREA PRODUCTAREA"},
    {"/BMC/SDR", "all sensor data records, each as hexadecimal bytes"},
    {"/BMC/SDR/ENTITY_ID[]", "the records of an entity"},
    {"/BMC/SDR/ENTITY_ID[]/ENTITY_INSTANCE[]", "the records of one instance of an entity"},
    {"/BMC/SDR/RECORD_TYPE[]", "the records of a type"},
    {"/BMC/SDR/SENSOR_NUMBER[]", "the record of a sensor"},
    {"/BMC/SDR/SENSOR_NUMBER[]/OWNER[]/LUN[]", "the record of a sensor of another controller"},
    {"/BMC/SDR/SENSOR_TYPE[]", "the records of sensors of a type"},
    {"/BMC/SDR[]", "a record by its place, as hexadecimal bytes"},
    {"/BMC/SDR[]/DECODED", "branch: RECORD_TYPE OWNER LUN SENSOR_NUMBER SENSOR_TYPE"},
    {"/BMC/SEL", "the records of the event log, as hexadecimal bytes"},
    {"/BMC/SEL/AFTER_RECORD[]", "the records of the event log behind one, as hexadecimal bytes"},
    {"/BMC/SEL/EXTENDED_RECORD", "a record with its extension, as hexadecimal bytes", "RECORD_ID"},
    {"/BMC/SEL/EXTENDED_RECORD[]", "the same by its id"},
    {"/BMC/SEL/INFO", "branch: VERSION NUM_LOGENTRIES FREE_SPACE RECENT_ADDITION_TIME RECENT_ADDITION_TIME_RAW "
                      "RECENT_ERASE_TIME RECENT_ERASE_TIME_RAW OVERFLOW DELETE_SUPPORT PARTIALADD_SUPPORT "
                      "RESERVE_SUPPORT ALLOCINFO_SUPPORT"},
    {"/BMC/SEL/LAST_RECORD", "the last record of the event log, as hexadecimal bytes"},
    {"/BMC/SEL/RECORD", "a record of the event log, as hexadecimal bytes", "RECORD_ID"},
    {"/BMC/SEL/RECORD[]", "the same by its id"},
    {"/BMC/SEL/RESERVE", "the reservation, two hexadecimal bytes"},
    {"/BMC/SEL/TRANSLATED", "the records of the event log in words", "RECORD_ID RANGE LOCALE"},
    {"/BMC/SENSOR/DISPLAY", "all sensors: name, number, owner, value, units, thresholds"},
    {"/BMC/SENSOR[]/OWNER[]/LUN[]/ACCURACY", "number"},
    {"/BMC/SENSOR[]/OWNER[]/LUN[]/INTERPRET_SENSOR_UNITS", "the reading's units"},
    {"/BMC/SENSOR[]/OWNER[]/LUN[]/INTERPRET_SENSOR_VALUE", "the reading: a number, or the words of its states"},
    {"/BMC/SENSOR[]/OWNER[]/LUN[]/INTERPRET_SENSOR_VALUE[]", "a raw reading in the sensor's units"},
    {"/BMC/SENSOR[]/OWNER[]/LUN[]/RESOLUTION", "number"},
    {"/BMC/SENSOR[]/OWNER[]/LUN[]/TOLERANCE", "number"},
    {"/ProductInfo", "the query interface's own name"},
    {"/SMBIOS", "the firmware's tables, field by field"},
};

} // namespace

std::span<const ParameterRow> parameterRows()
{
    return guideParameters;
}

std::span<const CautionRow> cautionRows()
{
    return cautions;
}

std::span<const SubjectRow> subjectRows()
{
    return subjects;
}

} // namespace Module::BMCConfig

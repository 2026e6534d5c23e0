#include "ipmi/States.hpp"

#include "ipmi/SensorReading.hpp"

#include <algorithm>

namespace ipmi {

namespace {

using enum Gravity;
using enum Lasting;

constexpr State usageStates[] = {
    {"IDLE", untold, untold, harmless},
    {"ACTIVE", untold, untold, harmless},
    {"BUSY", untold, untold, harmless},
};

/// What it is, only the board's maker knows.
constexpr State digitalStates[] = {
    {"STATE_DEASSERTED", untold, untold, harmless},
    {"STATE_ASSERTED", untold, untold},
};

constexpr State predictionStates[] = {
    {"PREDICTIVE_FAILURE_DEASSERTED", fine, nonCritical},
    {"PREDICTIVE_FAILURE_ASSERTED", nonCritical, fine},
};

constexpr State limitStates[] = {
    {"LIMIT_NOT_EXCEEDED", fine, nonCritical},
    {"LIMIT_EXCEEDED", nonCritical, fine},
};

constexpr State performanceStates[] = {
    {"PERFORMANCE_MET", fine, nonCritical},
    {"PERFORMANCE_LAGS", nonCritical, fine},
};

constexpr State severityStates[] = {
    {"TRANSITION_TO_OK", fine, untold},
    {"TRANSITION_TO_NON_CRITICAL_FROM_OK", nonCritical, fine},
    {"TRANSITION_TO_CRITICAL_FROM_LESS_SEVERE", critical, fine},
    {"TRANSITION_TO_NON_RECOVERABLE_FROM_LESS_SEVERE", nonRecoverable, fine},
    {"TRANSITION_TO_NON_CRITICAL_FROM_MORE_SEVERE", nonCritical, fine},
    {"TRANSITION_TO_CRITICAL_FROM_NON_RECOVERABLE", critical, fine},
    {"TRANSITION_TO_NON_RECOVERABLE", nonRecoverable, fine},
    {"MONITOR", untold, untold, harmless},
    {"INSTALL_ERROR", untold, untold, harmless},
};

constexpr State presenceStates[] = {
    {"DEVICE_REMOVED/DEVICE_ABSENT", untold, untold, missing},
    {"DEVICE_INSERTED/DEVICE_PRESENT", untold, untold, fitted},
};

constexpr State enablingStates[] = {
    {"DEVICE_DISABLED", untold, untold},
    {"DEVICE_ENABLED", untold, untold, harmless},
};

constexpr State availabilityStates[] = {
    {"TRANSITION_TO_RUNNING", fine, untold},
    {"TRANSITION_TO_IN_TEST", untold, untold, harmless},
    {"TRANSITION_TO_POWER_OFF", nonCritical, fine},
    {"TRANSITION_TO_ON_LINE", fine, untold},
    {"TRANSITION_TO_OFF_LINE", nonCritical, fine},
    {"TRANSITION_TO_OFF_DUTY", untold, untold, harmless},
    {"TRANSITION_TO_DEGRADED", nonCritical, fine},
    {"TRANSITION_TO_POWER_SAVE", untold, untold, harmless},
    {nullptr, critical, fine},
};

constexpr State redundancyStates[] = {
    {"FULLY_REDUNDANT", fine, nonCritical},
    {"REDUNDANCY_LOST", critical, fine},
    {"REDUNDANT_DEGRADED", nonCritical, fine},
    {"NON_REDUNDANT_SUFFICIENT_RESOURCES", critical, fine},
    {"NON_REDUNDANT_INSUFFICIENT_TO_SUFFICIENT_RESOURCES", critical, fine},
    {"NON_REDUNDANT_INSUFFICENT_RESOURCES", critical, fine},
    {"REDUNDANCY_DEGRADED_FROM_FULLY_REDUNDANT_UNIT", nonCritical, fine},
    {"REDUNDANCY_DEGRADED_FROM_NON_REDUNDANT_UNIT", nonCritical, fine},
};

constexpr State devicePowerStates[] = {
    {"D0_POWER_STATE", untold, untold, harmless},
    {"D1_POWER_STATE", untold, untold, harmless},
    {"D2_POWER_STATE", untold, untold, harmless},
    {"D3_POWER_STATE", untold, untold, harmless},
};

constexpr State digitalFaultStates[] = {
    {"STATE_DEASSERTED", fine, critical},
    {"STATE_ASSERTED", critical, fine},
};

constexpr State digitalSlotStates[] = {
    {"STATE_DEASSERTED", nonCritical, fine, missing},
    {"STATE_ASSERTED", fine, nonCritical, fitted},
};

constexpr State slotPresenceStates[] = {
    {"DEVICE_REMOVED/DEVICE_ABSENT", nonCritical, fine, missing},
    {"DEVICE_INSERTED/DEVICE_PRESENT", fine, nonCritical, fitted},
};

/// Drive slots of a hot-swap backplane, which declares a maker's reading type: the slot status of SAF-TE.
constexpr State slotStatusStates[] = {
    {nullptr, untold, untold},
    {"DEVICE_FAULT", critical, fine},
    {"DEVICE_REBUILDING", nonCritical, fine},
    {"IN_FAILED_ARRAY", nonRecoverable, fine},
    {"CRITICAL_ARRAY", critical, fine},
    {"PARITY_CHECK", fine, fine},
    {"PREDICTED_FAULT", nonCritical, fine},
    {"UNCONFIGURED", fine, fine},
    {"HOT_SPARE", fine, fine},
    {"REBUILD_STOPPED", critical, fine},
    {"DEVICE_INSERTED", fine, fine, fitted},
    {"READY_FOR_INSERTION/REMOVAL", fine, fine},
    {"PREPARED_FOR_OPERATION", fine, fine},
    {"IDENTIFY_ASSERTED", fine, fine},
};

/// What the power governor of a management engine can do; such engines declare this reading type or 6Fh.
constexpr State governorStates[] = {
    {"POLICY_INTERFACE", untold, untold},
    {"MONITORING", untold, untold},
    {"POWER_LIMITING", untold, untold},
};

constexpr State intrusionStates[] = {
    {"GENERAL_CHASSIS_INTRUSION", critical, fine}, {"DRIVE_BAY_INTRUSION", critical, fine},
    {"I/O_CARD_AREA_INTRUSION", critical, fine},   {"PROCESSOR_AREA_INTRUSION", critical, fine},
    {"LAN_LEASH_LOST", nonCritical, fine},         {"UNAUTHORIZED_DOCK", nonCritical, fine},
    {"FAN_AREA_INTRUSION", critical, fine},
};

constexpr State violationStates[] = {
    {"SECURE_MODE_VIOLATION", nonCritical, fine},
    {"USER_PASSWORD_VIOLATION", nonCritical, fine},
    {"SETUP_PASSWORD_VIOLATION", nonCritical, fine},
    {"NETWORK_BOOT_PASSWORD_VIOLATION", nonCritical, fine},
    {"OTHER_PREBOOT_PASSWORD_VIOLATION", nonCritical, fine},
    {"OUT_OF_BAND_PASSWORD_VIOLATION", nonCritical, fine},
};

constexpr State processorStates[] = {
    {"IERR", critical, fine},
    {"THERMAL_TRIP", critical, fine},
    {"FRB1/BIST_FAILURE", nonRecoverable, fine},
    {"FRB2/HANG_IN_POST_FAILURE", nonRecoverable, fine},
    {"CPU_DIDNT_START", nonRecoverable, fine},
    {"CONFIGURATION_ERROR", nonCritical, fine},
    {"SMBIOS_UNCORRECTABLE_CPU-COMPLEX_ERROR", critical, fine},
    {"PROCESSOR_PRESENCE_DETECTED", fine, nonCritical, fitted},
    {"PROCESSOR_DISABLED", critical, fine},
    {"THREMAL_PRESENCE_DETECTED", fine, fine},
    {"PROCESSOR_AUTOMATICALLY_THROTTLED", nonCritical, fine},
    {"MACHINE_CHECK_EXCEPTION", critical, fine},
    {"CORRECTABLE_MACHINE_CHECK_ERROR", nonCritical, fine},
};

constexpr State powerSupplyStates[] = {
    {"PRESENCE_DETECTED", fine, nonCritical, fitted},
    {"POWER_SUPPLY_FAILURE_DETECTED", critical, fine},
    {"PREDICTIVE_FAILURE", nonCritical, fine},
    {"POWER_SUPPLY_INPUT_LOST", critical, fine},
    {"POWER_SUPPLY_INPUT_LOST_OUT_OF_RANGE", critical, fine},
    {"POWER_SUPPLY_INPUT_OUT_OF_RANGE_BUT_PRESENT", nonCritical, fine},
    {"CONFIGURATION_ERROR", nonCritical, fine},
    {"POWER_SUPPLY_INACTIVE", fine, fine},
};

constexpr State powerUnitStates[] = {
    {"POWER_OFF_POWER_DOWN", nonCritical, fine},
    {"POWER_CYCLE", fine, fine},
    {"240VA_POWER_DOWN", critical, fine},
    {"INTERLOCK_POWER_DOWN", critical, fine},
    {"AC_LOST", critical, fine},
    {"SOFT_POWER_CONTROL_FAILURE", critical, fine},
    {"POWER_UNIT_FAILURE_DETECTED", critical, fine},
    {"PREDICTIVE_FAILURE", nonCritical, fine},
};

constexpr State memoryStates[] = {
    {"CORRECTABLE_ECC", nonCritical, fine},
    {"UNCORRECTABLE_ECC", critical, fine},
    {"PARITY", critical, fine},
    {"MEMORY_SCRUB_FAILED", critical, fine},
    {"MEMORY_DEVICE_DISABLED", nonCritical, fine},
    {"CORRECTABLE_ECC_LOGGING_LIMIT_REACHED", nonCritical, fine},
    {"PRESENCE_DETECTED", fine, nonCritical, fitted},
    {"CONFIGURATION_ERROR", critical, fine},
    {"SPARE", fine, fine},
    {"MEMORY_AUTOMATICALLY_THROTTLED", nonCritical, fine},
    {"CRITICAL_OVERTEMPERATURE", critical, fine},
};

constexpr State driveSlotStates[] = {
    {"DRIVE_PRESENCE", fine, nonCritical, fitted},
    {"DRIVE_FAULT", critical, fine},
    {"PREDICTIVE_FAILURE", nonCritical, fine},
    {"HOT_SPARE", fine, fine},
    {"CONSISTENCY_CHECK/PARITY_CHECK_IN_PROGRESS", fine, fine},
    {"IN_CRITICAL_ARRAY", critical, fine},
    {"IN_FAILED_ARRAY", nonRecoverable, fine},
    {"REBUILD/REMAP_IN_PROGRESS", nonCritical, fine},
    {"REBUILD/REMAP_ABORTED", critical, fine},
};

constexpr State memoryResizeStates[] = {
    {nullptr, nonCritical, fine},
};

constexpr State firmwareStates[] = {
    {"SYSTEM_FIRMWARE_ERROR", critical, fine},
    {"SYSTEM_FIRMWARE_HANG", critical, fine},
    {"SYSTEM_FIRMWARE_PROGRESS", fine, fine},
};

constexpr State loggingStates[] = {
    {"CORRECTABLE_MEMORY_ERROR_LOGGING_DISABLED", nonCritical, fine},
    {"EVENT_TYPE_LOGGING_DISABLED", nonCritical, fine},
    {"LOG_AREA_RESET/CLEARED", fine, fine},
    {"ALL_EVENT_LOGGING_DISABLED", nonCritical, fine},
    {"SEL_FULL", nonCritical, fine},
    {"SEL_ALMOST_FULL", nonCritical, fine},
    {"CORRECTABLE_MACHINE_CHECK_ERROR_LOGGING_DISABLED", nonCritical, fine},
};

constexpr State firstWatchdogStates[] = {
    {"BIOS_WATCHDOG_RESET", critical, fine},     {"OS_WATCHDOG_RESET", critical, fine},
    {"OS_WATCHDOG_SHUTDOWN", critical, fine},    {"OS_WATCHDOG_POWER_DOWN", critical, fine},
    {"OS_WATCHDOG_POWER_CYCLE", critical, fine}, {"OS_WATCHDOG_NMI/DIAGNOSTIC_INTERRUPT", critical, fine},
    {"OS_WATCHDOG_EXPIRED", nonCritical, fine},  {"OS_WATCHDOG_PRE_TIMEOUT_INTERRUPT", nonCritical, fine},
};

constexpr State systemEventStates[] = {
    {"SYSTEM_RECONFIGURED", fine, fine},
    {"OEM_SYSTEM_BOOT_EVENT", fine, fine},
    {"UNDETERMINED_SYSTEM_HARDWARE_FAILURE", critical, fine},
    {"ENTRY_ADDED_TO_AUXILIARY_LOG", fine, fine},
    {"PEF_ACTION", fine, fine},
    {"TIMESTAMP_CLOCK_SYNCHRONIZATION", fine, fine},
};

constexpr State interruptStates[] = {
    {"FRONT_PANEL_NMI/DIAGNOSTIC_INTERRUPT", critical, fine},
    {"BUS_TIMEOUT", critical, fine},
    {"I/O_CHANNEL_CHECK_NMI", critical, fine},
    {"SOFTWARE_NMI", critical, fine},
    {"PCI_PERR", critical, fine},
    {"PCI_SERR", critical, fine},
    {"EISA_FAIL_SAFE_TIMEOUT", critical, fine},
    {"BUS_CORRECTABLE_ERROR", nonCritical, fine},
    {"BUS_UNCORRECTABLE_ERROR", critical, fine},
    {"FATAL_NMI", nonRecoverable, fine},
    {"BUS_FATAL_ERROR", nonRecoverable, fine},
    {"BUS_DEGRADED", nonCritical, fine},
};

constexpr State buttonStates[] = {
    {"POWER_BUTTON_PRESSED", fine, fine},
    {"SLEEP_BUTTON_PRESSED", fine, fine},
    {"RESET_BUTTON_PRESSED", fine, fine},
    {"FRU_LATCH_OPEN", fine, fine},
    {"FRU_SERVICE_REQUEST_BUTTON_PRESSED", fine, fine},
};

constexpr State chipSetStates[] = {
    {"SOFT_POWER_CONTROL_FAILURE", critical, fine},
    {"THERMAL_TRIP", nonRecoverable, fine},
};

constexpr State cableStates[] = {
    {"CABLE_CONNECTED", fine, nonCritical},
    {"CONFIGURATION_ERROR", critical, fine},
};

constexpr State bootInitiatedStates[] = {
    {"INITIATED_BY_POWER_UP", fine, fine},
    {"INITIATED_BY_HARD_RESET", fine, fine},
    {"INITIATED_BY_WARM_RESET", fine, fine},
    {"USER_REQUESTED_PXE_BOOT", fine, fine},
    {"AUTOMATIC_BOOT_TO_DIAGNOSTIC", nonCritical, fine},
    {"OS_INITIATED_HARD_RESET", fine, fine},
    {"OS_INITIATED_WARM_RESET", fine, fine},
    {"SYSTEM_RESTART", fine, fine},
};

constexpr State bootErrorStates[] = {
    {"NO_BOOTABLE_MEDIA", critical, fine},
    {"NON_BOOTABLE_DISKETTE", critical, fine},
    {"PXE_SERVER_NOT_FOUND", critical, fine},
    {"INVALID_BOOT_SECTOR", critical, fine},
    {"BOOT_SOURCE_SELECTION_TIMEOUT", nonCritical, fine},
};

constexpr State operatingSystemBootStates[] = {
    {"A_BOOT_COMPLETED", fine, fine},
    {"C_BOOT_COMPLETED", fine, fine},
    {"PXE_BOOT_COMPLETED", fine, fine},
    {"DIAGNOSTIC_BOOT_COMPLETED", fine, fine},
    {"CD_ROM_BOOT_COMPLETED", fine, fine},
    {"ROM_BOOT_COMPLETED", fine, fine},
    {"BOOT_COMPLETED", fine, fine},
    {"OS_INSTALLATION_STARTED", fine, fine},
    {"OS_INSTALLATION_COMPLETED", fine, fine},
    {"OS_INSTALLATION_ABORTED", nonCritical, fine},
    {"OS_INSTALLATION_FAILED", critical, fine},
};

constexpr State operatingSystemStopStates[] = {
    {"CRITICAL_STOP_DURING_OS_LOAD", critical, fine},
    {"RUN_TIME_CRITICAL_STOP", critical, fine},
    {"OS_GRACEFUL_STOP", fine, fine},
    {"OS_GRACEFUL_SHUTDOWN", fine, fine},
    {"SOFT_SHUTDOWN_BY_PEF", nonCritical, fine},
    {"AGENT_NOT_RESPONDING", nonCritical, fine},
};

constexpr State slotStates[] = {
    {"DEVICE_FAULT", critical, fine},
    {"IDENTIFY_ASSERTED", fine, fine},
    {"DEVICE_INSERTED", fine, fine, fitted},
    {"READY_FOR_INSERTION/REMOVAL", fine, fine},
    {"READY_FOR_INSERTION/REMOVAL", fine, fine},
    {"SLOT_POWER_OFF", fine, fine},
    {"REMOVAL_REQUESTED", fine, fine},
    {"INTERLOCK_ASSERTED", nonCritical, fine},
    {"SLOT_DISABLED", nonCritical, fine},
    {"HOT_SPARE", fine, fine},
};

constexpr State acpiPowerStates[] = {
    {"S0_WORKING", fine, fine},
    {"S1_SLEEPING", fine, fine},
    {"S2_SLEEPING", fine, fine},
    {"S3_SLEEPING", fine, fine},
    {"S4_SUSPEND_TO_DISK", fine, fine},
    {"S5_SOFT_OFF", fine, fine},
    {"S4/S5_SOFT_OFF", fine, fine},
    {"G3_MECHANICAL_OFF", fine, fine},
    {"SLEEPING_S1_TO_S3", fine, fine},
    {"G1_SLEEPING", fine, fine},
    {"S5_BY_OVERRIDE", nonCritical, fine},
    {"LEGACY_ON", fine, fine},
    {"LEGACY_OFF", fine, fine},
    {nullptr, untold, untold},
    {"POWER_STATE_UNKNOWN", nonCritical, fine},
};

constexpr State secondWatchdogStates[] = {
    {"TIMER_EXPIRED", nonCritical, fine},
    {"HARD_RESET", critical, fine},
    {"POWER_DOWN", critical, fine},
    {"POWER_CYCLE", critical, fine},
    {nullptr, untold, untold},
    {nullptr, untold, untold},
    {nullptr, untold, untold},
    {nullptr, untold, untold},
    {"TIMER_INTERRUPT", nonCritical, fine},
};

constexpr State platformAlertStates[] = {
    {"PAGE_ALERT", fine, fine},
    {"LAN_ALERT", fine, fine},
    {"EVENT_TRAP", fine, fine},
    {"SNMP_TRAP", fine, fine},
};

constexpr State entityPresenceStates[] = {
    {"ENTITY_PRESENT", fine, nonCritical, fitted},
    {"ENTITY_ABSENT", nonCritical, fine, missing},
    {"ENTITY_DISABLED", nonCritical, fine},
};

constexpr State lanStates[] = {
    {"LAN_HEARTBEAT_LOST", nonCritical, fine},
    {"LAN_HEARTBEAT", fine, fine},
};

constexpr State managementHealthStates[] = {
    {"SENSOR_ACCESS_DEGRADED", nonCritical, fine},
    {"CONTROLLER_ACCESS_DEGRADED", nonCritical, fine},
    {"CONTROLLER_OFF_LINE", critical, fine},
    {"CONTROLLER_UNAVAILABLE", critical, fine},
    {"SENSOR_FAILURE", critical, fine},
    {"FRU_FAILURE", critical, fine},
};

constexpr State batteryStates[] = {
    {"BATTERY_LOW", nonCritical, fine},
    {"BATTERY_FAILED", critical, fine},
    {"BATTERY_PRESENCE_DETECTED", fine, nonCritical, fitted},
};

constexpr State sessionStates[] = {
    {"SESSION_ACTIVATED", fine, fine},
    {"SESSION_DEACTIVATED", fine, fine},
    {"INVALID_USERNAME_OR_PASSWORD", nonCritical, fine},
    {"INVALID_PASSWORD_DISABLE", nonCritical, fine},
};

constexpr State versionStates[] = {
    {"HARDWARE_CHANGE_DETECTED", fine, fine},
    {"FIRMWARE_CHANGE_DETECTED", fine, fine},
    {"HARDWARE_INCOMPATIBILITY", nonCritical, fine},
    {"FIRMWARE_INCOMPATIBILITY", nonCritical, fine},
    {"UNSUPPORTED_HARDWARE_VERSION", nonCritical, fine},
    {"UNSUPPORTED_FIRMWARE_VERSION", nonCritical, fine},
    {"HARDWARE_CHANGE_SUCCESSFUL", fine, fine},
    {"FIRMWARE_CHANGE_SUCCESSFUL", fine, fine},
};

constexpr State fruStates[] = {
    {"FRU_NOT_INSTALLED", fine, fine},
    {"FRU_INACTIVE", fine, fine},
    {"FRU_ACTIVATION_REQUESTED", fine, fine},
    {"FRU_ACTIVATION_IN_PROGRESS", fine, fine},
    {"FRU_ACTIVE", fine, fine},
    {"FRU_DEACTIVATION_REQUESTED", fine, fine},
    {"FRU_DEACTIVATION_IN_PROGRESS", fine, fine},
    {"FRU_COMMUNICATION_LOST", nonCritical, fine},
};

/// An event of the same numbers is a surge.
constexpr State surgeStates[] = {
    {"POLICY_INTERFACE", critical, fine},
    {"MONITORING", untold, untold},
    {"POWER_LIMITING", untold, untold},
};

constexpr int anySensor = -1;

struct Family {
    std::uint8_t readingType;
    int sensorType;
    std::span<const State> states;
};

/// The first that fits counts.
constexpr Family families[] = {
    {eventtype::digitalDiscrete, 0x05, digitalFaultStates},
    {eventtype::digitalDiscrete, 0x07, digitalFaultStates},
    {eventtype::digitalDiscrete, 0x08, digitalFaultStates},
    {eventtype::digitalDiscrete, 0x0D, digitalSlotStates},
    {eventtype::digitalDiscrete, 0x13, digitalFaultStates},
    {eventtype::digitalDiscrete, 0xDC, digitalFaultStates},
    {0x08, 0x0D, slotPresenceStates},
    {0x70, 0x0D, slotStatusStates},
    {0x74, 0xDC, governorStates},
    {eventtype::sensorSpecific, 0x05, intrusionStates},
    {eventtype::sensorSpecific, 0x06, violationStates},
    {eventtype::sensorSpecific, 0x07, processorStates},
    {eventtype::sensorSpecific, 0x08, powerSupplyStates},
    {eventtype::sensorSpecific, 0x09, powerUnitStates},
    {eventtype::sensorSpecific, 0x0C, memoryStates},
    {eventtype::sensorSpecific, 0x0D, driveSlotStates},
    {eventtype::sensorSpecific, 0x0E, memoryResizeStates},
    {eventtype::sensorSpecific, 0x0F, firmwareStates},
    {eventtype::sensorSpecific, 0x10, loggingStates},
    {eventtype::sensorSpecific, 0x11, firstWatchdogStates},
    {eventtype::sensorSpecific, 0x12, systemEventStates},
    {eventtype::sensorSpecific, 0x13, interruptStates},
    {eventtype::sensorSpecific, 0x14, buttonStates},
    {eventtype::sensorSpecific, 0x19, chipSetStates},
    {eventtype::sensorSpecific, 0x1B, cableStates},
    {eventtype::sensorSpecific, 0x1D, bootInitiatedStates},
    {eventtype::sensorSpecific, 0x1E, bootErrorStates},
    {eventtype::sensorSpecific, 0x1F, operatingSystemBootStates},
    {eventtype::sensorSpecific, 0x20, operatingSystemStopStates},
    {eventtype::sensorSpecific, 0x21, slotStates},
    {eventtype::sensorSpecific, 0x22, acpiPowerStates},
    {eventtype::sensorSpecific, 0x23, secondWatchdogStates},
    {eventtype::sensorSpecific, 0x24, platformAlertStates},
    {eventtype::sensorSpecific, 0x25, entityPresenceStates},
    {eventtype::sensorSpecific, 0x27, lanStates},
    {eventtype::sensorSpecific, 0x28, managementHealthStates},
    {eventtype::sensorSpecific, 0x29, batteryStates},
    {eventtype::sensorSpecific, 0x2A, sessionStates},
    {eventtype::sensorSpecific, 0x2B, versionStates},
    {eventtype::sensorSpecific, 0x2C, fruStates},
    {eventtype::sensorSpecific, 0xDC, surgeStates},
    {eventtype::sensorSpecific, 0xF3, digitalStates},
    {0x02, anySensor, usageStates},
    {eventtype::digitalDiscrete, anySensor, digitalStates},
    {0x04, anySensor, predictionStates},
    {0x05, anySensor, limitStates},
    {0x06, anySensor, performanceStates},
    {0x07, anySensor, severityStates},
    {0x08, anySensor, presenceStates},
    {0x09, anySensor, enablingStates},
    {0x0A, anySensor, availabilityStates},
    {0x0B, anySensor, redundancyStates},
    {0x0C, anySensor, devicePowerStates},
};

} // namespace

std::span<const State> statesOf(std::uint8_t readingType, std::uint8_t sensorType)
{
    const auto* const family = std::ranges::find_if(families, [=](const Family& each) {
        return each.readingType == readingType && (each.sensorType == sensorType || each.sensorType == anySensor);
    });
    return family == std::end(families) ? std::span<const State>() : family->states;
}

const State* findState(std::span<const State> states, std::string_view word)
{
    const auto found =
        std::ranges::find_if(states, [=](const State& state) { return state.word && state.word == word; });
    return found == states.end() ? nullptr : &*found;
}

bool canSayFitted(std::span<const State> states, unsigned mask)
{
    for (std::size_t offset = 0; offset < states.size(); ++offset)
        if (states[offset].lasting == fitted && (mask >> offset & 1U) != 0)
            return true;
    return false;
}

Gravity lastingGravity(const State& state)
{
    switch (state.lasting) {
    case missing:
        return untold;
    case fitted:
    case harmless:
        return fine;
    case asGrave:
        return state.gravity;
    }
    return untold;
}

} // namespace ipmi

#include "modules/bmc/subjects/SensorStates.hpp"

#include "ipmi/SensorReading.hpp"

#include <algorithm>
#include <span>

namespace Module::BMCConfig {

namespace {

constexpr unsigned stateBits = 15; ///< bit 15 of the two bytes is reserved
using ipmi::eventtype::sensorSpecific;
constexpr int anySensor = -1;

/// How a row's names are taken from the states.
enum class Manner {
    EachBit,     ///< a name for each bit that is set
    Single,      ///< bit 1 set: the second; else bit 0 set: the first
    SecondIf,    ///< bit 1 set: the second; else the first
    SecondAbove, ///< bit 1 set: the second; no bit above it either: the first
    Available,   ///< each of the first bits gives one of two words
};

struct StateRow {
    unsigned readingType;
    int sensorType;
    Manner manner;
    const char* names[stateBits];
};

constexpr StateRow rows[] = {
    // Generic reading types.
    {0x02, anySensor, Manner::EachBit, {"IDLE", "ACTIVE", "BUSY"}},
    {0x03, anySensor, Manner::Single, {"STATE_DEASSERTED", "STATE_ASSERTED"}},
    {0x04, anySensor, Manner::Single, {"PREDICTIVE_FAILURE_DEASSERTED", "PREDICTIVE_FAILURE_ASSERTED"}},
    {0x05, anySensor, Manner::Single, {"LIMIT_NOT_EXCEEDED", "LIMIT_EXCEEDED"}},
    {0x06, anySensor, Manner::Single, {"PERFORMANCE_MET", "PERFORMANCE_LAGS"}},
    {0x07,
     anySensor,
     Manner::EachBit,
     {"TRANSITION_TO_OK", "TRANSITION_TO_NON_CRITICAL_FROM_OK", "TRANSITION_TO_CRITICAL_FROM_LESS_SEVERE",
      "TRANSITION_TO_NON_RECOVERABLE_FROM_LESS_SEVERE", "TRANSITION_TO_NON_CRITICAL_FROM_MORE_SEVERE",
      "TRANSITION_TO_CRITICAL_FROM_NON_RECOVERABLE", "TRANSITION_TO_NON_RECOVERABLE", "MONITOR", "INSTALL_ERROR"}},
    {0x08, anySensor, Manner::SecondIf, {"DEVICE_REMOVED/DEVICE_ABSENT", "DEVICE_INSERTED/DEVICE_PRESENT"}},
    {0x09, anySensor, Manner::SecondAbove, {"DEVICE_DISABLED", "DEVICE_ENABLED"}},
    {0x0A,
     anySensor,
     Manner::EachBit,
     {"TRANSITION_TO_RUNNING", "TRANSITION_TO_IN_TEST", "TRANSITION_TO_POWER_OFF", "TRANSITION_TO_ON_LINE",
      "TRANSITION_TO_OFF_LINE", "TRANSITION_TO_OFF_DUTY", "TRANSITION_TO_DEGRADED", "TRANSITION_TO_POWER_SAVE"}},
    {0x0B,
     anySensor,
     Manner::EachBit,
     {"FULLY_REDUNDANT", "REDUNDANCY_LOST", "REDUNDANT_DEGRADED", "NON_REDUNDANT_SUFFICIENT_RESOURCES",
      "NON_REDUNDANT_INSUFFICIENT_TO_SUFFICIENT_RESOURCES", "NON_REDUNDANT_INSUFFICENT_RESOURCES",
      "REDUNDANCY_DEGRADED_FROM_FULLY_REDUNDANT_UNIT", "REDUNDANCY_DEGRADED_FROM_NON_REDUNDANT_UNIT"}},
    {0x0C, anySensor, Manner::EachBit, {"D0_POWER_STATE", "D1_POWER_STATE", "D2_POWER_STATE", "D3_POWER_STATE"}},

    // Sensor-specific offsets.
    {sensorSpecific,
     0x05,
     Manner::EachBit,
     {"GENERAL_CHASSIS_INTRUSION", "DRIVE_BAY_INTRUSION", "I/O_CARD_AREA_INTRUSION", "PROCESSOR_AREA_INTRUSION",
      "LAN_LEASH_LOST", "UNAUTHORIZED_DOCK", "FAN_AREA_INTRUSION"}},
    {sensorSpecific,
     0x06,
     Manner::EachBit,
     {"SECURE_MODE_VIOLATION", "USER_PASSWORD_VIOLATION", "SETUP_PASSWORD_VIOLATION", "NETWORK_BOOT_PASSWORD_VIOLATION",
      "OTHER_PREBOOT_PASSWORD_VIOLATION", "OUT_OF_BAND_PASSWORD_VIOLATION"}},
    {sensorSpecific,
     0x07,
     Manner::EachBit,
     {"IERR", "THERMAL_TRIP", "FRB1/BIST_FAILURE", "FRB2/HANG_IN_POST_FAILURE", "CPU_DIDNT_START",
      "CONFIGURATION_ERROR", "SMBIOS_UNCORRECTABLE_CPU-COMPLEX_ERROR", "PROCESSOR_PRESENCE_DETECTED",
      "PROCESSOR_DISABLED", "THREMAL_PRESENCE_DETECTED", "PROCESSOR_AUTOMATICALLY_THROTTLED", "MACHINE_CHECK_EXCEPTION",
      "CORRECTABLE_MACHINE_CHECK_ERROR"}},
    {sensorSpecific,
     0x08,
     Manner::EachBit,
     {"PRESENCE_DETECTED", "POWER_SUPPLY_FAILURE_DETECTED", "PREDICTIVE_FAILURE", "POWER_SUPPLY_INPUT_LOST",
      "POWER_SUPPLY_INPUT_LOST_OUT_OF_RANGE", "POWER_SUPPLY_INPUT_OUT_OF_RANGE_BUT_PRESENT", "CONFIGURATION_ERROR",
      "POWER_SUPPLY_INACTIVE"}},
    {sensorSpecific,
     0x09,
     Manner::EachBit,
     {"POWER_OFF_POWER_DOWN", "POWER_CYCLE", "240VA_POWER_DOWN", "INTERLOCK_POWER_DOWN", "AC_LOST",
      "SOFT_POWER_CONTROL_FAILURE", "POWER_UNIT_FAILURE_DETECTED", "PREDICTIVE_FAILURE"}},
    {sensorSpecific,
     0x0C,
     Manner::EachBit,
     {"CORRECTABLE_ECC", "UNCORRECTABLE_ECC", "PARITY", "MEMORY_SCRUB_FAILED", "MEMORY_DEVICE_DISABLED",
      "CORRECTABLE_ECC_LOGGING_LIMIT_REACHED", "PRESENCE_DETECTED", "CONFIGURATION_ERROR", "SPARE",
      "MEMORY_AUTOMATICALLY_THROTTLED", "CRITICAL_OVERTEMPERATURE"}},
    {sensorSpecific,
     0x0D,
     Manner::EachBit,
     {"DRIVE_PRESENCE", "DRIVE_FAULT", "PREDICTIVE_FAILURE", "HOT_SPARE", "CONSISTENCY_CHECK/PARITY_CHECK_IN_PROGRESS",
      "IN_CRITICAL_ARRAY", "IN_FAILED_ARRAY", "REBUILD/REMAP_IN_PROGRESS", "REBUILD/REMAP_ABORTED"}},
    {sensorSpecific,
     0x0F,
     Manner::EachBit,
     {"SYSTEM_FIRMWARE_ERROR", "SYSTEM_FIRMWARE_HANG", "SYSTEM_FIRMWARE_PROGRESS"}},
    {sensorSpecific,
     0x10,
     Manner::EachBit,
     {"CORRECTABLE_MEMORY_ERROR_LOGGING_DISABLED", "EVENT_TYPE_LOGGING_DISABLED", "LOG_AREA_RESET/CLEARED",
      "ALL_EVENT_LOGGING_DISABLED", "SEL_FULL", "SEL_ALMOST_FULL", "CORRECTABLE_MACHINE_CHECK_ERROR_LOGGING_DISABLED"}},
    {sensorSpecific,
     0x11,
     Manner::EachBit,
     {"BIOS_WATCHDOG_RESET", "OS_WATCHDOG_RESET", "OS_WATCHDOG_SHUTDOWN", "OS_WATCHDOG_POWER_DOWN",
      "OS_WATCHDOG_POWER_CYCLE", "OS_WATCHDOG_NMI/DIAGNOSTIC_INTERRUPT", "OS_WATCHDOG_EXPIRED",
      "OS_WATCHDOG_PRE_TIMEOUT_INTERRUPT"}},
    {sensorSpecific,
     0x12,
     Manner::EachBit,
     {"SYSTEM_RECONFIGURED", "OEM_SYSTEM_BOOT_EVENT", "UNDETERMINED_SYSTEM_HARDWARE_FAILURE",
      "ENTRY_ADDED_TO_AUXILIARY_LOG", "PEF_ACTION", "TIMESTAMP_CLOCK_SYNCHRONIZATION"}},
    {sensorSpecific,
     0x13,
     Manner::EachBit,
     {"FRONT_PANEL_NMI/DIAGNOSTIC_INTERRUPT", "BUS_TIMEOUT", "I/O_CHANNEL_CHECK_NMI", "SOFTWARE_NMI", "PCI_PERR",
      "PCI_SERR", "EISA_FAIL_SAFE_TIMEOUT", "BUS_CORRECTABLE_ERROR", "BUS_UNCORRECTABLE_ERROR", "FATAL_NMI",
      "BUS_FATAL_ERROR", "BUS_DEGRADED"}},
    {sensorSpecific,
     0x14,
     Manner::EachBit,
     {"POWER_BUTTON_PRESSED", "SLEEP_BUTTON_PRESSED", "RESET_BUTTON_PRESSED", "FRU_LATCH_OPEN",
      "FRU_SERVICE_REQUEST_BUTTON_PRESSED"}},
    {sensorSpecific, 0x19, Manner::EachBit, {"SOFT_POWER_CONTROL_FAILURE", "THERMAL_TRIP"}},
    {sensorSpecific, 0x1B, Manner::EachBit, {"CABLE_CONNECTED", "CONFIGURATION_ERROR"}},
    {sensorSpecific,
     0x1D,
     Manner::EachBit,
     {"INITIATED_BY_POWER_UP", "INITIATED_BY_HARD_RESET", "INITIATED_BY_WARM_RESET", "USER_REQUESTED_PXE_BOOT",
      "AUTOMATIC_BOOT_TO_DIAGNOSTIC", "OS_INITIATED_HARD_RESET", "OS_INITIATED_WARM_RESET", "SYSTEM_RESTART"}},
    {sensorSpecific,
     0x1E,
     Manner::EachBit,
     {"NO_BOOTABLE_MEDIA", "NON_BOOTABLE_DISKETTE", "PXE_SERVER_NOT_FOUND", "INVALID_BOOT_SECTOR",
      "BOOT_SOURCE_SELECTION_TIMEOUT"}},
    {sensorSpecific,
     0x1F,
     Manner::EachBit,
     {"A_BOOT_COMPLETED", "C_BOOT_COMPLETED", "PXE_BOOT_COMPLETED", "DIAGNOSTIC_BOOT_COMPLETED",
      "CD_ROM_BOOT_COMPLETED", "ROM_BOOT_COMPLETED", "BOOT_COMPLETED", "OS_INSTALLATION_STARTED",
      "OS_INSTALLATION_COMPLETED", "OS_INSTALLATION_ABORTED", "OS_INSTALLATION_FAILED"}},
    {sensorSpecific,
     0x20,
     Manner::EachBit,
     {"CRITICAL_STOP_DURING_OS_LOAD", "RUN_TIME_CRITICAL_STOP", "OS_GRACEFUL_STOP", "OS_GRACEFUL_SHUTDOWN",
      "SOFT_SHUTDOWN_BY_PEF", "AGENT_NOT_RESPONDING"}},
    {sensorSpecific,
     0x21,
     Manner::EachBit,
     {"DEVICE_FAULT", "IDENTIFY_ASSERTED", "DEVICE_INSERTED", "READY_FOR_INSERTION/REMOVAL",
      "READY_FOR_INSERTION/REMOVAL", "SLOT_POWER_OFF", "REMOVAL_REQUESTED", "INTERLOCK_ASSERTED", "SLOT_DISABLED",
      "HOT_SPARE"}},
    {sensorSpecific,
     0x22,
     Manner::EachBit,
     {"S0_WORKING", "S1_SLEEPING", "S2_SLEEPING", "S3_SLEEPING", "S4_SUSPEND_TO_DISK", "S5_SOFT_OFF", "S4/S5_SOFT_OFF",
      "G3_MECHANICAL_OFF", "SLEEPING_S1_TO_S3", "G1_SLEEPING", "S5_BY_OVERRIDE", "LEGACY_ON", "LEGACY_OFF", nullptr,
      "POWER_STATE_UNKNOWN"}},
    {sensorSpecific,
     0x23,
     Manner::EachBit,
     {"TIMER_EXPIRED", "HARD_RESET", "POWER_DOWN", "POWER_CYCLE", nullptr, nullptr, nullptr, nullptr,
      "TIMER_INTERRUPT"}},
    {sensorSpecific, 0x24, Manner::EachBit, {"PAGE_ALERT", "LAN_ALERT", "EVENT_TRAP", "SNMP_TRAP"}},
    {sensorSpecific, 0x25, Manner::EachBit, {"ENTITY_PRESENT", "ENTITY_ABSENT", "ENTITY_DISABLED"}},
    {sensorSpecific, 0x27, Manner::EachBit, {"LAN_HEARTBEAT_LOST", "LAN_HEARTBEAT"}},
    {sensorSpecific,
     0x28,
     Manner::EachBit,
     {"SENSOR_ACCESS_DEGRADED", "CONTROLLER_ACCESS_DEGRADED", "CONTROLLER_OFF_LINE", "CONTROLLER_UNAVAILABLE",
      "SENSOR_FAILURE", "FRU_FAILURE"}},
    {sensorSpecific, 0x29, Manner::EachBit, {"BATTERY_LOW", "BATTERY_FAILED", "BATTERY_PRESENCE_DETECTED"}},
    {sensorSpecific,
     0x2A,
     Manner::EachBit,
     {"SESSION_ACTIVATED", "SESSION_DEACTIVATED", "INVALID_USERNAME_OR_PASSWORD", "INVALID_PASSWORD_DISABLE"}},
    {sensorSpecific,
     0x2B,
     Manner::EachBit,
     {"HARDWARE_CHANGE_DETECTED", "FIRMWARE_CHANGE_DETECTED", "HARDWARE_INCOMPATIBILITY", "FIRMWARE_INCOMPATIBILITY",
      "UNSUPPORTED_HARDWARE_VERSION", "UNSUPPORTED_FIRMWARE_VERSION", "HARDWARE_CHANGE_SUCCESSFUL",
      "FIRMWARE_CHANGE_SUCCESSFUL"}},
    {sensorSpecific,
     0x2C,
     Manner::EachBit,
     {"FRU_NOT_INSTALLED", "FRU_INACTIVE", "FRU_ACTIVATION_REQUESTED", "FRU_ACTIVATION_IN_PROGRESS", "FRU_ACTIVE",
      "FRU_DEACTIVATION_REQUESTED", "FRU_DEACTIVATION_IN_PROGRESS", "FRU_COMMUNICATION_LOST"}},
    {sensorSpecific, 0xF3, Manner::Single, {"STATE_DEASSERTED", "STATE_ASSERTED"}},

    // What the power governor of a management engine can do, under either reading type that such engines declare.
    {sensorSpecific, 0xDC, Manner::Available, {"POLICY_INTERFACE", "MONITORING", "POWER_LIMITING"}},
    {0x74, 0xDC, Manner::Available, {"POLICY_INTERFACE", "MONITORING", "POWER_LIMITING"}},

    // Drive slots of a hot-swap backplane, which declares a maker's reading type: the slot status of SAF-TE.
    {0x70,
     0x0D,
     Manner::EachBit,
     {nullptr, "DEVICE_FAULT", "DEVICE_REBUILDING", "IN_FAILED_ARRAY", "CRITICAL_ARRAY", "PARITY_CHECK",
      "PREDICTED_FAULT", "UNCONFIGURED", "HOT_SPARE", "REBUILD_STOPPED", "DEVICE_INSERTED",
      "READY_FOR_INSERTION/REMOVAL", "PREPARED_FOR_OPERATION", "IDENTIFY_ASSERTED"}},
};

bool isSet(unsigned states, unsigned bit)
{
    return states >> bit & 1U;
}

void addName(std::string& names, const std::string& name)
{
    names += names.empty() ? name : ", " + name;
}

std::string nameEachBit(const StateRow& row, unsigned states)
{
    std::string names;
    for (unsigned bit = 0; bit < stateBits; ++bit)
        if (isSet(states, bit) && row.names[bit])
            addName(names, row.names[bit]);
    return names;
}

std::string nameAvailable(const StateRow& row, unsigned states)
{
    std::string names;
    for (unsigned bit = 0; bit < stateBits && row.names[bit]; ++bit)
        addName(names, row.names[bit] + std::string(isSet(states, bit) ? "_AVAILABLE" : "_UNAVAILABLE"));
    return names;
}

std::string nameBy(const StateRow& row, unsigned states)
{
    const bool second = isSet(states, 1);
    switch (row.manner) {
    case Manner::EachBit:
        return nameEachBit(row, states);
    case Manner::Available:
        return nameAvailable(row, states);
    case Manner::Single:
        return second ? row.names[1] : isSet(states, 0) ? row.names[0] : "";
    case Manner::SecondIf:
        return row.names[second];
    case Manner::SecondAbove:
        return second ? row.names[1] : (states & 0xFF) < 2 ? row.names[0] : "";
    }
    return {};
}

} // namespace

std::string nameStates(std::uint8_t readingType, std::uint8_t sensorType, unsigned states)
{
    const auto row = std::ranges::find_if(rows, [=](const StateRow& candidate) {
        return candidate.readingType == readingType &&
               (candidate.sensorType == anySensor || candidate.sensorType == sensorType);
    });
    const std::string names = row == std::end(rows) ? "" : nameBy(*row, states);
    return names.empty() ? "UNKNOWN" : names;
}

} // namespace Module::BMCConfig

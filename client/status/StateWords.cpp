#include "client/status/StateWords.hpp"

#include "client/words/Text.hpp"
#include "client/words/Trace.hpp"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <unordered_map>

using namespace client::words;

namespace {

struct StateWord {
    std::string_view word;
    const char* text; ///< null: the word itself
};

/// The state words of the SDK and what the MIB shows for them. Some texts are mangled; managers know them so.
constexpr StateWord stateWords[] = {
    {"FULLY_REDUNDANT", "Full Redundancy"},
    {"I/O_CARD_AREA_INTRUSION", "I//O_CARD_AREA_INTRUSION"},
    {"IERR", "IERR (Internal Error"},
    {"THERMAL_TRIP", "Thermal Trip"},
    {"FRB1/BIST_FAILURE", "FRB1: BIST Failure"},
    {"FRB2/HANG_IN_POST_FAILURE", "FRB2: Hang in POST Failure"},
    {"CPU_DIDNT_START", "FRB3:"},
    {"CONFIGURATION_ERROR", "Configuration Error"},
    {"SMBIOS_UNCORRECTABLE_CPU-COMPLEX_ERROR", "SMBIOS Uncorrectable CPU-Complex Error"},
    {"PROCESSOR_PRESENCE_DETECTED", "Processor Presence Detected"},
    {"PROCESSOR_DISABLED", "Processor Disabled"},
    {"THREMAL_PRESENCE_DETECTED", "Terminator Presence Detected"},
    {"PRESENCE_DETECTED", "power supply's presence has been detected"},
    {"POWER_SUPPLY_FAILURE_DETECTED", "power supply has suffered a failure"},
    {"PREDICTIVE_FAILURE", "predictive failure has been detected for the power supply"},
    {"POWER_SUPPLY_INPUT_LOST", "Power Supply Input (AC/DC) Lost"},
    {"CORRECTABLE_ECC", "correctable ECC"},
    {"UNCORRECTABLE_ECC", "uncorrectable ECC"},
    {"PARITY", "Parity Error"},
    {"MEMORY_SCRUB_FAILED", "memory scrub failed"},
    {"MEMORY_DEVICE_DISABLED", "has been disabled"},
    {"CORRECTABLE_ECC_LOGGING_LIMIT_REACHED", "correctable memory error logging has been disabled"},
    {"DRIVE_FAULT", "Drive Fault"},
    {"REDUNDANCY_LOST", "Redundancy Lost"},
    {"REDUNDANT_DEGRADED", "Redundancy Degraded"},
    {"NON_REDUNDANT_SUFFICIENT_RESOURCES", "Non-Redundancy with Sufficient Resources"},
    {"NON_REDUNDANT_INSUFFICIENT_TO_SUFFICIENT_RESOURCES",
     "State changed from Insufficient Resources to Non-Redundancy with Sufficient Resources"},
    {"NON_REDUNDANT_INSUFFICENT_RESOURCES", "Non-Redundancy with Insufficient Resources"},
    {"REDUNDANCY_DEGRADED_FROM_FULLY_REDUNDANT_UNIT", "State changed from Full Redundancy to Redundancy Degraded"},
    {"REDUNDANCY_DEGRADED_FROM_NON_REDUNDANT_UNIT", "State changed from Redundancy Lost to Redundancy Degraded"},
    {"STATE_DEASSERTED", "State Deasserted"},
    {"STATE_ASSERTED", "State Asserted"},
    {"LIMIT_NOT_EXCEEDED", "performance has been met"},
    {"LIMIT_EXCEEDED", "performance is lagging"},
    {"PERFORMANCE_MET", "performance has been met"},
    {"PERFORMANCE_LAGS", "performance is lagging"},
    {"DEVICE_REMOVED/DEVICE_ABSENT", "Device Removed/Absent"},
    {"DEVICE_REMOVED_ABSENT", "Device Removed/Absent"},
    {"DEVICE_INSERTED/DEVICE_PRESENT", "Device Inserted/Present"},
    {"DEVICE_INSERTED", "Device Inserted/Present"},
    {"DEVICE_INSERTED_PRESENT", "Device Inserted/Present"},
    {"DEVICE_PRESENT", "Device Inserted/Present"},
    {"STATE_UNAVAILABLE", "State Unavailable"},
    {"ALL_DEASSERTED", "All Deasserted"},
    {"GENERAL_CHASSIS_INTRUSION", nullptr},
    {"DRIVE_BAY_INTRUSION", nullptr},
    {"PROCESSOR_AREA_INTRUSION", nullptr},
    {"LAN_LEASH_LOST", nullptr},
    {"UNAUTHORIZED_DOCK", nullptr},
    {"FAN_AREA_INTRUSION", nullptr},
    {"PROCESSOR_AUTOMATICALLY_THROTTLED", nullptr},
    {"POWER_SUPPLY_INPUT_LOST_OUT_OF_RANGE", nullptr},
    {"POWER_SUPPLY_INPUT_OUT_OF_RANGE_BUT_PRESENT", nullptr},
    {"POWER_OFF_POWER_DOWN", nullptr},
    {"POWER_CYCLE", nullptr},
    {"240VA_POWER_DOWN", nullptr},
    {"INTERLOCK_POWER_DOWN", nullptr},
    {"AC_LOST", nullptr},
    {"SOFT_POWER_CONTROL_FAILURE", nullptr},
    {"POWER_UNIT_FAILURE_DETECTED", nullptr},
    {"SPARE", nullptr},
    {"DRIVE_PRESENCE", nullptr},
    {"HOT_SPARE", nullptr},
    {"CONSISTENCY_CHECK/PARITY_CHECK_IN_PROGRESS", nullptr},
    {"IN_CRITICAL_ARRAY", nullptr},
    {"IN_FAILED_ARRAY", nullptr},
    {"REBUILD/REMAP_IN_PROGRESS", nullptr},
    {"REBUILD/REMAP_ABORTED_(WAS_NOT_COMPLETED_NORMALLY)", nullptr},
    {"POWER_BUTTON_PRESSED", nullptr},
    {"SLEEP_BUTTON_PRESSED", nullptr},
    {"RESET_BUTTON_PRESSED", nullptr},
    {"FRU_LATCH_OPEN", nullptr},
    {"FRU_SERVICE_REQUEST_BUTTON_PRESSED", nullptr},
    {"ENTITY_PRESENT", nullptr},
    {"ENTITY_ABSENT", nullptr},
    {"ENTITY_DISABLED", nullptr},
    {"LAN_HEARTBEAT_LOST", nullptr},
    {"LAN_HEARTBEAT", nullptr},
    {"IDLE", nullptr},
    {"ACTIVE", nullptr},
    {"BUSY", nullptr},
    {"PREDICTIVE_FAILURE_DEASSERTED", nullptr},
    {"PREDICTIVE_FAILURE_ASSERTED", nullptr},
    {"TRANSITION_TO_OK", nullptr},
    {"TRANSITION_TO_NON_CRITICAL_FROM_OK", nullptr},
    {"TRANSITION_TO_CRITICAL_FROM_LESS_SEVERE", nullptr},
    {"TRANSITION_TO_NON_RECOVERABLE_FROM_LESS_SEVERE", nullptr},
    {"TRANSITION_TO_NON_CRITICAL_FROM_MORE_SEVERE", nullptr},
    {"TRANSITION_TO_CRITICAL_FROM_NON_RECOVERABLE", nullptr},
    {"TRANSITION_TO_NON_RECOVERABLE", nullptr},
    {"MONITOR", nullptr},
    {"INFORMATIONAL", nullptr},
    {"DEVICE_DISABLED", nullptr},
    {"DEVICE_ENABLED", nullptr},
    {"TRANSITION_TO_RUNNING", nullptr},
    {"TRANSITION_TO_IN_TEST", nullptr},
    {"TRANSITION_TO_POWER_OFF", nullptr},
    {"TRANSITION_TO_ON_LINE", nullptr},
    {"TRANSITION_TO_OFF_LINE", nullptr},
    {"TRANSITION_TO_OFF_DUTY", nullptr},
    {"TRANSITION_TO_DEGRADED", nullptr},
    {"TRANSITION_TO_POWER_SAVE", nullptr},
    {"INSTALL_ERROR", nullptr},
    {"D0_POWER_STATE", nullptr},
    {"D1_POWER_STATE", nullptr},
    {"D2_POWER_STATE", nullptr},
    {"D3_POWER_STATE", nullptr},
};
static_assert(std::size(stateWords) == 107);

using WordTable = std::unordered_map<std::string_view, const char*>;

const WordTable& wordTable()
{
    static const WordTable table = [] {
        WordTable words;
        for (const StateWord& row : stateWords)
            words.emplace(row.word, row.text);
        return words;
    }();
    return table;
}

/// Appends the text of one word of a list; blank-led words of the list come without their blanks.
void appendMapped(std::string_view word, std::string& out)
{
    word.remove_prefix(std::min(word.find_first_not_of(' '), word.size()));
    if (!out.empty())
        out += ',';
    out += MapQLStrToSNMPStr(std::string(word).c_str());
}

} // namespace

const char* MapQLStrToSNMPStr(const char* word)
{
    const auto row = wordTable().find(word);
    return row == wordTable().end() || !row->second ? word : row->second;
}

void MapMultipleQLStrToSNMPStr(const char* list, std::string* out)
{
    std::string_view rest(list, strnlen(list, textBlockBytes - 1));
    while (!rest.empty()) {
        const std::string_view word = rest.substr(0, rest.find(','));
        rest.remove_prefix(std::min(word.size() + 1, rest.size()));
        if (!word.empty())
            appendMapped(word, *out);
    }
    if (out->empty())
        *out += list;
    trace("\n MapMultipleQLStrToSNMPStr returns  =%s", out->c_str());
}

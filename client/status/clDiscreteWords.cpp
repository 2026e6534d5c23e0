#include "client/status/clDiscreteWords.hpp"

#include "client/status/StateWords.hpp"
#include "client/words/Entities.hpp"
#include "client/words/Trace.hpp"

#include <algorithm>
#include <cstring>

namespace client::status {

// The words are what the sensors' texts hold after the SDK's state words became texts of the MIB. A few rows are
// surprising (a predictive failure that is ok, a supply whose presence is critical); managers know the groups so.

namespace {

using namespace words;
using enum WordClass;

constexpr std::string_view lostWithSufficientResources = "Redundancy Lost,Non-Redundancy with Sufficient Resources";
constexpr std::string_view lostWithInsufficientResources = "Redundancy Lost,Non-Redundancy with Insufficient Resources";
constexpr std::string_view degradedFromFull = "State changed from Full Redundancy to Redundancy Degraded";
constexpr std::string_view degradedFromLost = "State changed from Redundancy Lost to Redundancy Degraded";
constexpr std::string_view nonRedundantFromFull =
    "State changed from Full or Degraded Redundancy to Non-Redunduncy with Sufficient Resources";
constexpr std::string_view nonRedundantFromInsufficient =
    "State changed from Insufficient Resources to Non-Redundancy with Sufficient Resources";
constexpr std::string_view nonRedundantSufficient = "Non-Redundancy with Sufficient Resources";
constexpr std::string_view nonRedundantInsufficient = "Non-Redundancy with Insufficient Resources";

constexpr StateWordRow powerSupplyRows[] = {
    {"power supply's presence has been detected", Ok},
    {"Power Supply Presence Detected", Ok},
    {"power supply has recovered from the failure", Ok},
    {"predictive power supply fault has been cleared", Ok},
    {"power supply's input (AC/DC) has been regained", Ok},
    {"All Deasserted", Ok},
    {"predictive failure has been detected for the power supply", NonCritical},
    {"Configuration Error", NonCritical},
    {"power supply has suffered a failure", Severe},
    {"PRESENT", Severe},
    {"power supply's input (AC/DC) has been lost", Warning},
    {"Power Supply Input (AC/DC) Lost", Warning},
};

constexpr StateWordRow redundancyRows[] = {
    {"Redundancy Regained", Ok},
    {"OK", Ok},
    {"Full Redundancy", Ok},
    {"All Deasserted", Ok},
    {"Redundancy Degraded", NonCritical},
    {degradedFromFull, NonCritical},
    {degradedFromLost, NonCritical},
    {"Redundancy Lost", Severe},
    {nonRedundantFromFull, Severe},
    {nonRedundantFromInsufficient, Severe},
    {nonRedundantInsufficient, Severe},
};

constexpr WholeTextRow redundancyTexts[] = {{lostWithSufficientResources, "warning"}};

constexpr StateWordRow discreteVoltageRows[] = {
    {"performance has been met", Ok},
    {"State Deasserted", Ok},
    {"State Not Asserted", Ok},
    {"Nothing Asserted", Ok},
    {"OK", Ok},
    {"performance is lagging", Severe},
    {"State Asserted", Severe},
};

constexpr StateWordRow discreteCoolingRows[] = {
    {"Redundancy Regained", Ok},
    {"OK", Ok},
    {"Full Redundancy", Ok},
    {"All Deasserted", Ok},
    {"DEVICE_INSERTED/PRESENT", Ok},
    {"Device Inserted/Present", Ok},
    {"Nothing Asserted", Ok},
    {"State Not Asserted", Ok},
    {"State Deasserted", Ok},
    {"performance has been met", Ok},
    {"Redundancy Degraded", NonCritical},
    {degradedFromFull, NonCritical},
    {degradedFromLost, NonCritical},
    {"Redundancy Lost", Severe},
    {nonRedundantFromFull, Severe},
    {nonRedundantFromInsufficient, Severe},
    {nonRedundantInsufficient, Severe},
    {"performance is lagging", Severe},
    {"Device Removed/Absent", Severe},
    {"State Asserted", Severe},
};

constexpr WholeTextRow discreteCoolingTexts[] = {
    {lostWithSufficientResources, "warning"},
    {lostWithInsufficientResources, "critical"},
};

constexpr StateWordRow driveSlotRows[] = {
    {"Device Inserted/Present", Ok},
    {"Device Removed/Absent", Ok},
    {"reports the device has been removed or is absent", Ok},
    {"DRIVE_PRESENCE", Ok},
    {"DEVICE_REMOVED/DEVICE_ABSENT", Ok},
    {"ALL_DEASSERTED", Ok},
    {"All Deasserted", Ok},
    {"READY_FOR_INSERTION/REMOVAL", Ok},
    {"PREARED_FOR_OPEERATION", Ok},
    {"PREPARED_FOR_OPERATION", Ok},
    {"DEVICE_INSERTED/PRESENT", Ok},
    {"PREDICTIVE_FAILURE", Ok},
    {"HOT_SPARE", Ok},
    {"OK", Ok},
    {"CONSISTENCY_CHECK/PARITY_CHECK_IN_PROGRESS", Ok},
    {"IN_CRITICAL_ARRAY", Severe},
    {"IN_FAILED_ARRAY", Severe},
    {"REBUILD/REMAP_IN_PROGRESS", Severe},
    {"DEVICE_FAULT", Severe},
    {"Device Fault", Severe},
    {"Drive Fault", Severe},
    {"DRIVE_FAULT", Severe},
};

constexpr StateWordRow discreteProcessorRows[] = {
    {"ALL_DEASSERTED", Ok},
    {"All Deasserted", Ok},
    {"OK", Ok},
    {"STATE_DEASSERTED", Ok},
    {"State Deasserted", Ok},
    {"THREMAL_PRESENCE_DETECTED", Ok},
    {"PROCESSOR_PRESENCE_DETECTED", Ok},
    {"Processor Presence Detected", Ok},
    {"PROCESSOR_DISABLED", Ok},
    {"PROCESSOR_AUTOMATICALLY_THROTTLED", Ok},
    {"CONFIGURATION_ERROR", NonCritical},
    {"IERR", Severe},
    {"THERMAL_TRIP", Severe},
    {"FRB1/BIST_FAILURE", Severe},
    {"FRB2/HANG_IN_POST_FAILURE", Severe},
    {"CPU_DIDNT_START", Severe},
    {"SMBIOS_UNCORRECTABLE_CPU-COMPLEX_ERROR", Severe},
};

constexpr StateWordRow discreteMemoryRows[] = {
    {"ALL_DEASSERTED", Ok},
    {"All Deasserted", Ok},
    {"OK", Ok},
    {"STATE_DEASSERTED", Ok},
    {"State Deasserted", Ok},
    {"PARITY", Ok},
    {"MEMORY_DEVICE_DISABLED", Ok},
    {"CORRECTABLE_ECC_LOGGING_LIMIT_REACHED", Ok},
    {"PRESENCE_DETECTED", Ok},
    {"SPARE", Ok},
    {"CORRECTABLE_ECC", NonCritical},
    {"CONFIGURATION_ERROR", NonCritical},
    {"UNCORRECTABLE_ECC", Severe},
    {"MEMORY_SCRUB_FAILED", Severe},
};

constexpr StateWordRow miscSensorRows[] = {
    {"ALL_DEASSERTED", Ok},
    {"All Deasserted", Ok},
    {"OK", Ok},
    {"STATE_DEASSERTED", Ok},
    {"State Deasserted", Ok},
    {"reports the device has been removed or is absent", Ok},
    {"Device Inserted/Present", Ok},
    {"Device Removed/Absent", Ok},
    {"DRIVE_PRESENCE", Ok},
    {"DEVICE_REMOVED/DEVICE_ABSENT", Ok},
    {"READY_FOR_INSERTION/REMOVAL", Ok},
    {"PREARED_FOR_OPEERATION", Ok},
    {"PREPARED_FOR_OPERATION", Ok},
    {"DEVICE_INSERTED/PRESENT", Ok},
    {"PREDICTIVE_FAILURE", Ok},
    {"HOT_SPARE", Ok},
    {"CONSISTENCY_CHECK/PARITY_CHECK_IN_PROGRESS", Ok},
    {"SLEEP_BUTTON_PRESSED", Ok},
    {"RESET_BUTTON_PRESSED", Ok},
    {"FRU_LATCH_OPEN", Ok},
    {"FRU_SERVICE_REQUEST_BUTTON_PRESSED", Ok},
    {"TIMER_EXPIRED", Ok},
    {"HARD_RESET", Ok},
    {"POWER_DOWN", Ok},
    {"POWER_CYCLE", Ok},
    {"TIMER_INTERRUPT", Ok},
    {"ENTITY_PRESENT", Ok},
    {"ENTITY_ABSENT", Ok},
    {"ENTITY_DISABLED", Ok},
    {"BATTERY_PRESENCE_DETECTED", Ok},
    {"IN_CRITICAL_ARRAY", Severe},
    {"IN_FAILED_ARRAY", Severe},
    {"REBUILD/REMAP_IN_PROGRESS", Severe},
    {"Drive Fault", Severe},
    {"DRIVE_FAULT", Severe},
    {"DEVICE_FAULT", Severe},
    {"Device Fault", Severe},
    {"BUS_FATAL_ERROR", Severe},
    {"PCI_PERR", Severe},
    {"PCI_SERR", Severe},
    {"BUS_UNCORRECTABLE_ERROR", Severe},
    {"FATAL_NMI", Severe},
    {"BATTERY_FAILED", Severe},
    {"GENERAL_CHASSIS_INTRUSION", NonCritical},
    {"DRIVE_BAY_INTRUSION", NonCritical},
    {"I/O_CARD_AREA_INTRUSION", NonCritical},
    {"PROCESSOR_AREA_INTRUSION", NonCritical},
    {"LAN_LEASH_LOST", NonCritical},
    {"UNAUTHORIZED_DOCK", NonCritical},
    {"FAN_AREA_INTRUSION", NonCritical},
    {"FRONT_PANEL_NMI/DIAGNOSTIC_INTERRUPT", NonCritical},
    {"BUS_TIMEOUT", NonCritical},
    {"I/O_CHANNEL_CHECK_NMI", NonCritical},
    {"SOFTWARE_NMI", NonCritical},
    {"EISA_FAIL_SAFE_TIMEOUT", NonCritical},
    {"BUS_CORRECTABLE_ERROR", NonCritical},
    {"BUS_DEGRADED", NonCritical},
    {"BATTERY_LOW", NonCritical},
};

enum RedundancyStatus : int {
    redundancyUnknown = 2,
    redundancyFull = 3,
    redundancyDegraded = 4,
    redundancyLost = 5,
    redundancyNone = 6,
    redundancyDeasserted = 8,
};

struct RedundancyRow {
    std::string_view word;
    RedundancyStatus status;
    bool overwrites; ///< otherwise it only makes things worse
};

constexpr RedundancyRow redundancyStatusRows[] = {
    {"Redundancy Regained", redundancyFull, false},
    {"OK", redundancyFull, false},
    {"Full Redundancy", redundancyFull, false},
    {"Redundancy Degraded", redundancyDegraded, false},
    {degradedFromFull, redundancyDegraded, false},
    {degradedFromLost, redundancyDegraded, false},
    {"Redundancy Lost", redundancyLost, true},
    {nonRedundantFromFull, redundancyNone, true},
    {nonRedundantFromInsufficient, redundancyNone, true},
    {nonRedundantInsufficient, redundancyNone, true},
    {"All Deasserted", redundancyDeasserted, true},
};

constexpr const char* present = "Device Inserted/Present";
constexpr const char* absent = "Device Removed/Absent";

struct PresenceRow {
    std::string_view word;
    const char* shown;
};

constexpr PresenceRow presenceRows[] = {
    {"Device Inserted/Present", present},     {"DRIVE_PRESENCE", present},
    {"DEVICE_INSERTED/PRESENT", present},     {"Device Removed/Absent", absent},
    {"DEVICE_REMOVED/DEVICE_ABSENT", absent}, {"reports the device has been removed or is absent", absent},
};

constexpr std::string_view laggingVoltageWords[] = {"performance is lagging", "State Asserted"};

/// A fan lags when it is gone, too, and when its group can no longer make up for a fan.
constexpr std::string_view laggingCoolingWords[] = {
    "performance is lagging", "State Asserted",     "Device Removed/Absent",
    "Redundancy Lost",        nonRedundantFromFull, nonRedundantFromInsufficient,
    nonRedundantInsufficient,
};

std::string_view cutToBlock(std::string_view text)
{
    return text.substr(0, textBlockBytes - 1);
}

/// Calls `visit` with each word, without the blanks before it; empty words don't count. Returns how many there were.
template<class Visit>
int forEachWord(std::string_view text, Visit visit)
{
    int count = 0;
    for (std::string_view rest = cutToBlock(text); !rest.empty();) {
        std::string_view word = rest.substr(0, rest.find(','));
        rest.remove_prefix(std::min(word.size() + 1, rest.size()));
        word.remove_prefix(std::min(word.find_first_not_of(' '), word.size()));
        if (word.empty())
            continue;
        visit(word);
        ++count;
    }
    return count;
}

template<class Rows, class Member>
auto findWord(const Rows& rows, std::string_view word, Member member) -> decltype(&*std::begin(rows))
{
    const auto found = std::ranges::find(rows, word, member);
    return found == std::end(rows) ? nullptr : &*found;
}

const char* severeStatus(std::string_view text, const StatusWords& words)
{
    const auto* const row = findWord(words.wholeTexts, cutToBlock(text), &WholeTextRow::text);
    return row ? row->status : words.severe;
}

bool isOneOf(const char* status, std::initializer_list<std::string_view> candidates)
{
    return std::ranges::find(candidates, std::string_view(status)) != candidates.end();
}

const char* statusAfter(const char* status, WordClass wordClass, const char* severe)
{
    switch (wordClass) {
    case Ok:
        return isOneOf(status, {"unknown"}) ? "ok" : status;
    case NonCritical:
        return isOneOf(status, {"unknown", "ok"}) ? "nonCritical" : status;
    case Severe:
        return severe;
    case Warning:
        return "warning";
    }
    return status;
}

int statusNumberAfter(int status, WordClass wordClass, bool severeIsCritical)
{
    switch (wordClass) {
    case Ok:
        return std::max<int>(status, ENUM_STATUS_OK);
    case NonCritical:
    case Warning:
        return std::max<int>(status, ENUM_STATUS_NONCRI);
    case Severe:
        return severeIsCritical ? ENUM_STATUS_CRITICAL : std::max<int>(status, ENUM_STATUS_NONCRI);
    }
    return status;
}

constexpr const char* gravityStatuses[] = {"unknown", "ok", "nonCritical", "critical", "nonRecoverable"};
constexpr std::string_view nothingAsserted = "ALL_DEASSERTED";

ipmi::Gravity gravityInGroup(std::string_view word, const StatusWords& words)
{
    const auto* row = findWord(words.words, MapQLStrToSNMPStr(std::string(word).c_str()), &StateWordRow::word);
    row = row ? row : findWord(words.words, word, &StateWordRow::word);
    if (!row)
        return ipmi::Gravity::untold;
    switch (row->wordClass) {
    case Ok:
        return ipmi::Gravity::fine;
    case NonCritical:
    case Warning:
        return ipmi::Gravity::nonCritical;
    case Severe:
        return ipmi::Gravity::critical;
    }
    return ipmi::Gravity::untold;
}

/// That a device is not there is never grave by itself, whatever the group says of it.
ipmi::Gravity gravityOf(std::string_view word, std::span<const ipmi::State> known, const StatusWords& words)
{
    const ipmi::State* const state = ipmi::findState(known, word);
    if (word == nothingAsserted)
        return ipmi::Gravity::fine;
    const ipmi::Gravity gravity = state ? ipmi::lastingGravity(*state) : ipmi::Gravity::untold;
    if (gravity != ipmi::Gravity::untold)
        return gravity;
    const ipmi::Gravity inGroup = gravityInGroup(word, words);
    const bool isMissing = state && state->lasting == ipmi::Lasting::missing;
    return isMissing && inGroup != ipmi::Gravity::fine ? ipmi::Gravity::untold : inGroup;
}

template<std::size_t Size>
int performanceOf(std::string_view text, const std::string_view (&laggingWords)[Size])
{
    int performance = ENUM_PERFORM_MET;
    forEachWord(text, [&](std::string_view word) {
        if (std::ranges::find(laggingWords, word) != std::end(laggingWords))
            performance = ENUM_PERFORM_LAGS;
    });
    return performance;
}

} // namespace

constexpr StatusWords powerSupplyWords{.words = powerSupplyRows};
constexpr StatusWords redundancyWords{.words = redundancyRows, .wholeTexts = redundancyTexts};
constexpr StatusWords discreteVoltageWords{.words = discreteVoltageRows};
constexpr StatusWords discreteCoolingWords{
    .words = discreteCoolingRows, .wholeTexts = discreteCoolingTexts, .severe = "ok"};
constexpr StatusWords driveSlotWords{.words = driveSlotRows, .strangersReset = true};
constexpr StatusWords miscSensorWords{.words = miscSensorRows, .strangersReset = true};
constexpr StatusWords discreteProcessorWords{.words = discreteProcessorRows, .strangersReset = true};
constexpr StatusWords discreteMemoryWords{.words = discreteMemoryRows, .strangersReset = true};

const char* mapValueToStatus(std::string_view text, const StatusWords& words)
{
    const char* const severe = severeStatus(text, words);
    const char* status = "unknown";
    forEachWord(text, [&](std::string_view word) {
        if (const auto* const row = findWord(words.words, word, &StateWordRow::word))
            status = statusAfter(status, row->wordClass, severe);
        else if (words.strangersReset)
            status = "unknown";
    });
    trace("mapValueToStatus: %s\n", status);
    return status;
}

const char* judgeStates(std::string_view states, std::span<const ipmi::State> known, const StatusWords& words)
{
    ipmi::Gravity worst = ipmi::Gravity::untold;
    forEachWord(states, [&](std::string_view word) { worst = std::max(worst, gravityOf(word, known, words)); });
    return gravityStatuses[static_cast<std::size_t>(worst)];
}

int mapValueToStatusEnum(std::string_view text, const StatusWords& words)
{
    const bool severeIsCritical = isOneOf(severeStatus(text, words), {"critical"});
    int status = ENUM_STATUS_UNKNOWN;
    const int count = forEachWord(text, [&](std::string_view word) {
        if (const auto* const row = findWord(words.words, word, &StateWordRow::word))
            status = statusNumberAfter(status, row->wordClass, severeIsCritical);
    });
    return count == 0 ? -1 : status;
}

int mapValueToRedundancyStatus(std::string_view text, bool eachWord)
{
    int status = redundancyUnknown;
    forEachWord(text, [&](std::string_view word) {
        if (const auto* const row = findWord(redundancyStatusRows, word, &RedundancyRow::word))
            status = row->overwrites ? row->status : std::max<int>(status, row->status);
        else if (eachWord && word == nonRedundantSufficient)
            status = redundancyNone;
    });
    return status;
}

const char* mapValueToPresenceStatusString(std::string_view text)
{
    const char* shown = "Unavailable";
    forEachWord(text, [&](std::string_view word) {
        if (const auto* const row = findWord(presenceRows, word, &PresenceRow::word))
            shown = row->shown;
    });
    return shown;
}

int getVoltagePerformanceEnum(std::string_view text)
{
    return performanceOf(text, laggingVoltageWords);
}

int getCoolingPerformanceEnum(std::string_view text)
{
    return performanceOf(text, laggingCoolingWords);
}

} // namespace client::status

#pragma once

#include "ipmi/States.hpp"

#include <span>
#include <string_view>

namespace client::status {

/// How a word of a sensor's text moves the status of its row.
enum class WordClass {
    Ok,          ///< better than no status, but lifts none that is worse
    NonCritical, ///< lowers what is no worse than ok
    Severe,      ///< overwrites; what it gives may hang on the whole text
    Warning,     ///< overwrites, a worse status too
};

struct StateWordRow {
    std::string_view word;
    WordClass wordClass;
};

struct WholeTextRow {
    std::string_view text;
    const char* status;
};

/// The words of one group. Texts are lists of words with commas between them; only the first 511 characters count.
struct StatusWords {
    std::span<const StateWordRow> words;
    std::span<const WholeTextRow> wholeTexts = {}; ///< whole texts that decide what a severe word gives
    const char* severe = "critical";               ///< what it gives with any other text
    bool strangersReset = false;                   ///< a word of no class makes the status unknown again
};

/// The status word of a sensor's text: "unknown", "ok", "nonCritical", "warning" or "critical".
const char* mapValueToStatus(std::string_view text, const StatusWords& words);

/// The status word of a sensor by all its states, whose words in the SDK's list `states` are those of `known`: the
/// worst counts, and a word that says nothing of the status changes nothing. What only the maker of a sensor knows the
/// words of its group decide, by their text in the MIB or by the SDK's word.
const char* judgeStates(std::string_view states, std::span<const ipmi::State> known, const StatusWords& words);

/// The HEALTH_STATUS of a sensor's text, -1 if there is no word in it. Here the words only ever make things worse,
/// except that a severe word stands for critical whatever came before.
int mapValueToStatusEnum(std::string_view text, const StatusWords& words);

/// The redundancy that the text of a redundancy sensor tells: 2 unknown, 3 full, 4 degraded, 5 lost, 6 none left, 8 all
/// states deasserted. `eachWord`: none left, too, where what is left suffices.
int mapValueToRedundancyStatus(std::string_view text, bool eachWord = false);

/// Whether a drive is in its slot: "Device Inserted/Present", "Device Removed/Absent", or "Unavailable".
const char* mapValueToPresenceStatusString(std::string_view text);

/// PERFORMANCE of a voltage regulator or of a fan by its sensor's text; met unless a word says otherwise.
int getVoltagePerformanceEnum(std::string_view text);
int getCoolingPerformanceEnum(std::string_view text);

extern const StatusWords powerSupplyWords;
extern const StatusWords redundancyWords; ///< of power units and cooling units
extern const StatusWords discreteVoltageWords;
extern const StatusWords discreteCoolingWords;
extern const StatusWords driveSlotWords;
extern const StatusWords miscSensorWords;
extern const StatusWords discreteProcessorWords;
extern const StatusWords discreteMemoryWords;

} // namespace client::status

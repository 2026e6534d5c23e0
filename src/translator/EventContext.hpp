#pragma once

#include "translator/SDREntry.hpp"
#include "translator/SELEntry.hpp"
#include "translator/TranslationTables.hpp"

#include <string>
#include <string_view>

namespace translator {

/// Numbers of the miscellaneous strings (section 15) that the program itself asks for.
enum MiscString : int {
    MISC_PERCENT = 0,
    MISC_RATE = 1, ///< to 6: "per microsecond" to "per day", by the rate code of the record
    MISC_UNIT_PER_UNIT = 7,
    MISC_THE_SENSOR = 8,
    MISC_TRANSITION_TO = 9,
    MISC_UNKNOWN = 10, ///< stands in for a value that is not there
    MISC_UNIT_TIMES_UNIT = 11,
    MISC_LOWER = 12,
    MISC_UPPER = 13,
    MISC_STATUS = 14, ///< to 17: "OK", "Non-Critical", "Critical", "Non-Recoverable", by severity
    MISC_ASSERTED = 18,
    MISC_DEASSERTED = 19,
    MISC_ASSERTION_EVENT = 20,
    MISC_DEASSERTION_EVENT = 21,
    MISC_RESERVED = 22,
    MISC_OEM_SEVERITY = 23,
    MISC_SERVER = 24,
    MISC_EVENT_DATA_2 = 25,
    MISC_EVENT_DATA_3 = 26,
};

/// Rows of the severities (section 3).
enum Severity : int { SEVERITY_INFORMATIONAL, SEVERITY_WARNING, SEVERITY_CRITICAL, SEVERITY_NON_RECOVERABLE };

constexpr int firstUpperOffset = 6; ///< of the threshold events

/// All that a translation's text can draw on. Views hold for the time of one translation.
struct EventContext {
    const SELEntry& entry;
    const TranslationTables& tables;
    const SDREntry* sdr = nullptr;
    int severityId = SEVERITY_INFORMATIONAL;
    int action = anyByte;
    std::wstring_view severity;
    std::wstring_view sensorName;
    std::wstring_view timestamp;
    int platformBiosId = 0;
    int socketType = 0;

    /// True if event data `number` (2 or 3) is what the standard says of the event (IPMI 2.0, table 29-6): the reading
    /// or threshold of a threshold event, if the sensor's record tells its value, or the sensor type's own extension.
    bool isStandardData(int number) const;
    /// True if that byte holds something that only the record's maker can read.
    bool isForeignData(int number) const;
    /// Miscellaneous string `id`; `otherwise` in a file that has none.
    std::wstring_view misc(int id, std::wstring_view otherwise) const
    {
        const std::wstring* text = tables.miscStrings.find(id);
        return text ? std::wstring_view(*text) : otherwise;
    }
    std::wstring_view unknown() const { return misc(MISC_UNKNOWN, L"unknown"); }
    /// Word `id` of `table`, or what stands in for a missing value.
    std::wstring_view wordOf(const MetaInfoTable& table, int id) const
    {
        const std::wstring* text = table.find(id);
        return text ? std::wstring_view(*text) : unknown();
    }
};

/// `translation` with its placeholders in brackets and its tokens between percent signs filled, in one pass: what a
/// value brings in is not looked at again. A text "A||B" says A of an assertion and B of a deassertion. A part
/// "<2:text>" or "<3:text>", or "<23:text>" for both, stands only where that event data is the standard's.
std::wstring expandTranslation(std::wstring_view translation, const EventContext& context);

} // namespace translator

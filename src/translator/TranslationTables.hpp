#pragma once

#include "translator/EventTable.hpp"
#include "translator/MetaInfoTable.hpp"
#include "translator/OEMTables.hpp"
#include "translator/OverrideTable.hpp"
#include "translator/PlatformTable.hpp"

#include <string_view>

namespace translator {

/// All a translation file holds.
struct TranslationTables {
    MetaInfoTable devices{L"device"};
    MetaInfoTable secondDevices{L"device"};
    MetaInfoTable severities{L"severity"};
    MetaInfoTable models{L"string model"};
    MetaInfoTable sensorTypes{L"sensor type"};
    MetaInfoTable sensorUnits{L"sensor unit"};
    MetaInfoTable entityIds{L"entity ID"};
    MetaInfoTable productIds{L"platform name"};
    EventTable genericEvents;
    EventTable specificEvents;
    OEMTSTable oemTimestamped;
    OEMNonTSTable oemNonTimestamped;
    OverrideTable overrides;
    PlatformTable platformOverrides;
    MetaInfoTable recommendedActions{L"recommended action"};
    MetaInfoTable miscStrings{L"miscellaneous string"};
};

/// Reads the text of a translation file: sections from '$' and a decimal number to '^', each with a decimal count of
/// entries and a heading line behind '&'; numbers hexadecimal, fields separated by tabs, texts in double quotes. Takes
/// anything: a line that is malformed or longer than 1,000 characters is left out, a section number above 15 ends the
/// reading, a section that is not closed ends with the text.
TranslationTables parseTranslations(std::wstring_view text);

} // namespace translator

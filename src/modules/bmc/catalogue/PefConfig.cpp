#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/PefAreas.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// Platform event filtering (IPMI 2.0, 17 and 30): what the BMC does about events. Here: its switches, delays and
// counts, and what it can do at all.

namespace Module::BMCConfig {

using namespace steps;

namespace pefConfig {

constexpr char getCommand[] = "GET_PEF_CONFIGURATION_PARAMETERS", setCommand[] = "SET_PEF_CONFIGURATION_PARAMETERS";

constexpr TextRow constants[] = {
    {"$/PEF/BLOCK", "00"},
    {"$/PEF/SET", "00"},
};

constexpr PacketRow packets[] = {
    {"GET://BMC/PEF/ALERT_POLICY_ENTRY", getCommand, "09 $POLICY_NUMBER 00"},
    {"GET://BMC/PEF/CAPABILITIES", "GET_PEF_CAPABILITIES"},
    {"GET://BMC/PEF/DATA", getCommand, "$/PEF/SELECTOR $/PEF/SET $/PEF/BLOCK"},
    {"GET://BMC/PEF/FILTER_EVENT_ENTRY", getCommand, "06 $FILTER_NUMBER 00"},
    {"SET://BMC/PEF/ACKNOWLEDGE", "PET_ACKNOWLEDGE", "$ACKNOWLEDGE"},
    {"SET://BMC/PEF/ALERT_IMMEDIATE", "ALERT_IMMEDIATE", "$ALERT_IMMEDIATE"},
    {"SET://BMC/PEF/ALERT_POLICY_ENTRY", setCommand, "09 $RECORD"},
    {"SET://BMC/PEF/ALERT_POLICY_ENTRY_RAW", setCommand, "09 $POLICY_NUMBER $RAW"},
    {"SET://BMC/PEF/DATA", setCommand, "$/PEF/SELECTOR $RECORD"},
    {"SET://BMC/PEF/ENABLE", setCommand, "01 $ENABLE"},
    {"SET://BMC/PEF/FILTER_EVENT_ENTRY", setCommand, "06 $RECORD"},
    {"SET://BMC/PEF/FILTER_EVENT_ENTRY_RAW", setCommand, "06 $FILTER_NUMBER $RAW"},
};

constexpr Record parameterAt(const char* given, unsigned size, const char* set = "PEF/DATA")
{
    Record record = parameterRecord("PEF", "PEF/DATA", set, size);
    record.given = given;
    return record;
}

constexpr char actionError[] = "ERROR_SET_PEF_ACTION";

/// Parameter 1: the switches.
constexpr Field control[] = {
    {.name = "STATUS", .codec = Codec::word, .mask = 0x01, .setError = actionError},
    {.name = "EVENT_MESSAGES_STATUS", .codec = Codec::word, .mask = 0x02},
    {.name = "STARTUP_DELAY_STATUS", .codec = Codec::word, .mask = 0x04},
    {.name = "ALERT_STARTUP_DELAY_STATUS", .codec = Codec::word, .mask = 0x08},
};

/// Parameter 2: a bit for each action that is allowed; 20h diagnostic interrupt, 10h the manufacturer's, 8 power cycle,
/// 4 reset, 2 power down, 1 alert.
constexpr Field actions[] = {{.name = "GLOBAL_ACTION", .setError = actionError}};

constexpr Field delay[] = {{.name = "STARTUP_DELAY", .codec = Codec::number}}; // seconds
constexpr Field alertDelay[] = {{.name = "ALERT_STARTUP_DELAY", .codec = Codec::number}};
constexpr Field filters[] = {{.name = "EVENT_FILTERS_SUPPORTED", .codec = Codec::number, .mask = 0x7F}};
constexpr Field policies[] = {{.name = "ALERT_POLICIES_SUPPORTED", .codec = Codec::number, .mask = 0x7F}};
constexpr Field strings[] = {{.name = "ALERT_STRINGS_SUPPORTED", .codec = Codec::number, .mask = 0x7F}};

/// Parameter 10: the GUID in alerts, and whether it takes the place of the system's.
constexpr Field guid[] = {
    {.name = "GUID", .byte = 1, .count = 16},
    {.name = "GUID_STATUS", .codec = Codec::word, .mask = 0x01},
};

constexpr Record capabilities = {.path = "PEF/INFO", .get = "PEF/CAPABILITIES", .size = 3};
constexpr Field information[] = {
    {.name = "EVENT_ENTRIES", .byte = 2, .codec = Codec::number},
    {.name = "SUPPORT_DATA", .byte = 1},
};

struct Action {
    const char* name;
    unsigned bit;
};
constexpr Action supported[] = {
    {"ALERT", 0x01},       {"POWER_DOWN", 0x02}, {"RESET", 0x04},
    {"POWER_CYCLE", 0x08}, {"OEM_ACTION", 0x10}, {"DIAGNOSTIC_INTERRUPT", 0x20},
};

void addSupport(Stores& stores)
{
    Record record = capabilities;
    record.path = "PEF/INFO/SUPPORT";
    std::vector<Field> fields;
    for (const Action& action : supported)
        fields.push_back({.name = action.name,
                          .byte = 1,
                          .codec = Codec::word,
                          .mask = action.bit,
                          .table = "INFO/FEATURE",
                          .inPlace = true});
    addFieldBranch(stores, record, fields);
}

void addInfo(Stores& stores)
{
    addFields(stores, capabilities, information);
    addSupport(stores);
    addFilter(stores, "GET://BMC/PEF/INFO/VERSION", "1");
    addTemplate(stores, "GET://BMC/PEF/INFO/VERSION",
                script({
                    sendAndCheck("GET://BMC/PEF/CAPABILITIES"),
                    readField("GET://BMC/PEF/INFO/VERSION", "$VERSION", "$COMPLETION_CODE"),
                    returnBcdVersion("$VERSION"),
                }));
    for (const char* key : {"GET://BMC/PEF/CAPABILITIES", "GET://BMC/PEF/INFO_CAPABILITIES"})
        addTemplate(stores, key, returnData("GET://BMC/PEF/CAPABILITIES"));
}

/// ENABLE with all that belongs to it - messages about what was done, both delays -, MINIMAL_ENABLE without.
void addEnable(Stores& stores)
{
    addTable(stores, "SET://BMC/PEF/ENABLE", {{"ENABLE", "F"}, {"DISABLE", "0"}});
    addTable(stores, "SET://BMC/PEF/MINIMAL_ENABLE", {{"ENABLE", "1"}, {"DISABLE", "0"}});
    for (const char* name : {"ENABLE", "MINIMAL_ENABLE"}) {
        const std::string key = std::string("SET://BMC/PEF/") + name;
        addTemplate(stores, key,
                    script({LookupTable(std::string("$") + name, key, "$ENABLE"),
                            sendOrThrow("SET://BMC/PEF/ENABLE", actionError)}));
    }
}

/// Any parameter as it is: the caller gives SELECTOR and, where they count, SET and BLOCK, hexadecimal.
Script readParameter()
{
    return script({
        takeRequired("$/PEF/SELECTOR"),
        take("$/PEF/SET"),
        take("$/PEF/BLOCK"),
        returnData("GET://BMC/PEF/DATA"),
    });
}

/// Bytes of a command that the caller gives as a whole.
void addCommand(Stores& stores, const char* name, unsigned bytes)
{
    const std::string key = std::string("SET://BMC/PEF/") + name;
    const Field whole{.name = name, .count = bytes};
    addTemplate(stores, key, script({encode(std::string("$") + name, whole), sendOrThrow(key, "$COMPLETION_CODE")}));
}

} // namespace pefConfig

PefConfig::PefConfig(Stores& stores)
{
    using namespace pefConfig;
    addConstants(stores, constants);
    addPackets(stores, packets);
    addFields(stores, parameterAt("$/PEF/SELECTOR 01", 1), control);
    addFields(stores, parameterAt("$/PEF/SELECTOR 02", 1), actions);
    addFields(stores, parameterAt("$/PEF/SELECTOR 03", 1), delay);
    addFields(stores, parameterAt("$/PEF/SELECTOR 04", 1), alertDelay);
    addFields(stores, parameterAt("$/PEF/SELECTOR 05", 1, nullptr), filters);
    addFields(stores, parameterAt("$/PEF/SELECTOR 08", 1, nullptr), policies);
    addFields(stores, parameterAt("$/PEF/SELECTOR 0B", 1, nullptr), strings);
    addFields(stores, parameterAt("$/PEF/SELECTOR 0A", 17), guid);
    addInfo(stores);
    addEnable(stores);
    addTemplate(stores, "GET://BMC/PEF/DATA", readParameter());
    addCommand(stores, "ACKNOWLEDGE", 12);
    addCommand(stores, "ALERT_IMMEDIATE", 3);
    addPefTables(stores);
    addPefStrings(stores);

    constexpr BranchRow branches[] = {
        {"GET://BMC/PEF",
         "INFO STATUS EVENT_MESSAGES_STATUS STARTUP_DELAY_STATUS STARTUP_DELAY ALERT_STARTUP_DELAY_STATUS "
         "ALERT_STARTUP_DELAY GLOBAL_ACTION GUID_STATUS GUID EVENT_FILTERS_SUPPORTED ALERT_POLICIES_SUPPORTED "
         "ALERT_STRINGS_SUPPORTED FILTER POLICY"},
        {"GET://BMC/PEF/INFO", "VERSION EVENT_ENTRIES SUPPORT SUPPORT_DATA"},
    };
    addBranches(stores, branches);
}

} // namespace Module::BMCConfig

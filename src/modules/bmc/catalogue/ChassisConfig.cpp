#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

// The chassis device (IPMI 2.0, 28): power, front panel, identification and boot options.

namespace Module::BMCConfig {

using namespace steps;

namespace {

constexpr TextRow constants[] = {
    {"$/CHASSIS/BOOT_TABLE_PARAMETER", "61"}, // of the manufacturer's own, as is its size
    {"$/CHASSIS/BOOT_TABLE_SIZE_PARAMETER", "60"},
    {"$/CHASSIS/PARAMETER_SELECTOR", "05"}, // the boot flags, unless told otherwise
    {"$/CHASSIS/SET_SELECTOR", "00"},
    {"$/CHASSIS/BLOCK_SELECTOR", "00"},
};

constexpr PacketRow packets[] = {
    {"GET://BMC/CHASSIS/BOOTOPTION_GETBOOTTABLE", "GET_SYSTEM_BOOT_OPTIONS",
     "$/CHASSIS/BOOT_TABLE_PARAMETER $/CHASSIS/SET_SELECTOR $/CHASSIS/BLOCK_SELECTOR"},
    {"GET://BMC/CHASSIS/BOOTOPT_TABLESIZE", "GET_SYSTEM_BOOT_OPTIONS", "$/CHASSIS/BOOT_TABLE_SIZE_PARAMETER 00 00"},
    {"GET://BMC/CHASSIS/BOOT_OPTION", "GET_SYSTEM_BOOT_OPTIONS",
     "$/CHASSIS/PARAMETER_SELECTOR $/CHASSIS/SET_SELECTOR $/CHASSIS/BLOCK_SELECTOR"},
    {"GET://BMC/CHASSIS/CAPABILITIES", "GET_CHASSIS_CAPABILITIES"},
    {"GET://BMC/CHASSIS/FRONT_PANEL", "GET_CHASSIS_STATUS"},
    {"GET://BMC/CHASSIS/LEDSTATUS", "GET_LED_STATUS"},
    {"GET://BMC/CHASSIS/STATUS", "GET_CHASSIS_STATUS"},
    {"GET://BMC/CHASSIS/SYSTEMRESTARTCAUSE", "GET_SYSTEM_RESTART_CAUSE"},
    {"SET://BMC/CHASSIS/BOOTOPTION_SETBOOTTABLE", "SET_SYSTEM_BOOT_OPTIONS",
     "$/CHASSIS/BOOT_TABLE_PARAMETER $BOOTOPTION_SETTABLE"},
    {"SET://BMC/CHASSIS/BOOT_OPTION", "SET_SYSTEM_BOOT_OPTIONS", "$BOOT_OPTION"},
    {"SET://BMC/CHASSIS/CONTROL", "CHASSIS_CONTROL", "$CONTROL"},
    {"SET://BMC/CHASSIS/FRONT_PANEL", "SET_FRONT_PANEL_ENABLES", "$FRONT_PANEL"},
    {"SET://BMC/CHASSIS/FRONT_PANEL_ENABLES", "SET_FRONT_PANEL_ENABLES", "$FRONT_PANEL_ENABLES"},
    {"SET://BMC/CHASSIS/IDENTIFY", "CHASSIS_IDENTIFY", "$INTERVAL"},
    {"SET://BMC/CHASSIS/POWERRESTOREPOLICY", "SET_POWER_RESTORE_POLICY", "$RESTOREPOLICY"},
};

constexpr TextRow filters[] = {
    {"GET://BMC/CHASSIS/CAPABILITIES", "1"},
    {"GET://BMC/CHASSIS/CAPABILITIES/BRIDGEDEVADDRESS", "6"},
    {"GET://BMC/CHASSIS/CAPABILITIES/FRUDEVADDRESS", "2"},
    {"GET://BMC/CHASSIS/CAPABILITIES/SELDEVADDRESS", "4"},
    {"GET://BMC/CHASSIS/CAPABILITIES/SYSMGMTDEVADDRESS", "5"},
    {"GET://BMC/CHASSIS/STATUS/FPBCAPABILITIES", "4"},
    {"GET://BMC/CHASSIS/STATUS/LASTPOWEREVENT", "2"},
    {"GET://BMC/CHASSIS/STATUS/MISCSTATE", "3"},
    {"GET://BMC/CHASSIS/STATUS/POWERSTATE", "1"},
    {"GET://BMC/CHASSIS/SYSTEMRESTARTCAUSE", "1"},
};

constexpr char flagTable[] = "GET://BMC/CHASSIS/FLAG", powerTable[] = "GET://BMC/CHASSIS/POWER",
               policyTable[] = "GET://BMC/CHASSIS/STATUS/POWERSTATE/RESTOREPOLICY",
               causeTable[] = "GET://BMC/CHASSIS/SYSTEMRESTARTCAUSE",
               setPolicyTable[] = "SET://BMC/CHASSIS/STATUS/POWERSTATE/RESTOREPOLICY",
               setControlTable[] = "SET://BMC/CHASSIS/CONTROL", setPanelTable[] = "SET://BMC/CHASSIS/FRONT_PANEL";

/// What stands in some bits of a byte, as a word.
struct BitField {
    const char* name;
    const char* shift; ///< where its lowest bit stands, hexadecimal as Map takes it
    const char* mask = "1";
    const char* table = flagTable;
};

/// A branch whose leaves are all in one byte of an answer, the one that the filter of the branch's key names.
struct Byte {
    const char* key;
    const char* packet;
    std::vector<BitField> fields;
};

const Byte bytes[] = {
    {.key = "GET://BMC/CHASSIS/STATUS/POWERSTATE",
     .packet = "GET://BMC/CHASSIS/STATUS",
     .fields = {{"SYSPOWER", "0", "1", powerTable},
                {"POWEROVERLOAD", "1"},
                {"INTERLOCK", "2"},
                {"POWERFAULT", "3"},
                {"CONTROLFAULT", "4"},
                {"RESTOREPOLICY", "5", "3", policyTable}}},
    {.key = "GET://BMC/CHASSIS/STATUS/LASTPOWEREVENT",
     .packet = "GET://BMC/CHASSIS/STATUS",
     .fields = {{"ACFAILED", "0"},
                {"DOWNBYPOWEROVERLOAD", "1"},
                {"DOWNBYILACTIVATION", "2"},
                {"DOWNBYPOWERFAULT", "3"},
                {"ONVIAIPMI", "4"}}},
    {.key = "GET://BMC/CHASSIS/STATUS/MISCSTATE",
     .packet = "GET://BMC/CHASSIS/STATUS",
     .fields = {{"INTRUSIONACTIVE", "0"}, {"FPLACTIVE", "1"}, {"DRIVEFAULT", "2"}, {"FANFAULT", "3"}}},
    {.key = "GET://BMC/CHASSIS/STATUS/FPBCAPABILITIES",
     .packet = "GET://BMC/CHASSIS/STATUS",
     .fields = {{"POWEROFFDISABLED", "0"},
                {"RESETDISABLED", "1"},
                {"DIAGINTERRUPTDISABLED", "2"},
                {"STANDBYDISABLED", "3"},
                {"POWEROFFDISABLEALLOWED", "4"},
                {"RESETDISABLEALLOWED", "5"},
                {"DIAGINTERRUPTDISABLEALLOWED", "6"},
                {"STANDBYDISABLEALLOWED", "7"}}},
    {.key = "GET://BMC/CHASSIS/CAPABILITIES",
     .packet = "GET://BMC/CHASSIS/CAPABILITIES",
     .fields = {{"INTRUSIONSENSOR", "0"}, {"FPLOCKOUT", "1"}, {"DIAGINTERRUPT", "2"}, {"POWERINTERLOCK", "3"}}},
};

constexpr const char* addresses[] = {"FRUDEVADDRESS", "SELDEVADDRESS", "SYSMGMTDEVADDRESS", "BRIDGEDEVADDRESS"};

/// The field that the filter names, in $FIELD. Bytes at the end of these answers are optional, as are commands.
Steps readOptional(const char* packet, const std::string& filter)
{
    return script({
        send(packet),
        answerIfAbsent("NOT_SUPPORTED"),
        If("$COMPLETION_CODE != 0", {Throw("$COMPLETION_CODE")}),
        IPMIResponse("$BUFFER", filter, "$FIELD"),
        If("$FIELD == ERROR", {returnText("NOT_SUPPORTED")}),
    });
}

Script readBits(const Byte& byte, const BitField& field)
{
    return script({
        readOptional(byte.packet, byte.key),
        Map("$FIELD", "RIGHT_SHIFT", field.shift, "$FIELD"),
        Map("$FIELD", "MASK", field.mask, "$FIELD"),
        LookupTable("$FIELD", field.table, "$RESULT"),
        Return("$RESULT"),
    });
}

/// A slave address in the 8-bit form, hexadecimal as the BMC gave it.
Script readAddress(const std::string& key)
{
    return script({readOptional("GET://BMC/CHASSIS/CAPABILITIES", key), Return("$FIELD")});
}

Script readRestartCause()
{
    return script({
        readOptional("GET://BMC/CHASSIS/SYSTEMRESTARTCAUSE", causeTable),
        Map("$FIELD", "MASK", "F", "$FIELD"),
        LookupTable("$FIELD", causeTable, "$RESULT"),
        Return("$RESULT"),
    });
}

/// The buttons that are disabled, as the bits in which SET "FRONT_PANEL_ENABLES" takes them.
Script readFrontPanel()
{
    return script({
        readOptional("GET://BMC/CHASSIS/FRONT_PANEL", "GET://BMC/CHASSIS/STATUS/FPBCAPABILITIES"),
        Map("$FIELD", "MASK", "F", "$RESULT"),
        Return("$RESULT"),
    });
}

/// Sets what `table` has for the word that the caller gave under `name`.
Script setWord(const char* packet, const char* name, const char* table, const char* error)
{
    return script({LookupTable(name, table, name), sendOrThrow(packet, error)});
}

/// Sets the caller's hexadecimal bytes, separated by blanks or commas.
Script setBytes(const char* packet, const char* name)
{
    return script({Split(name, " ,", name), sendOrThrow(packet, "$COMPLETION_CODE")});
}

void addBranch(Stores& stores, const char* key, std::vector<std::string> names)
{
    names.emplace_back("$RESULT");
    addTemplate(stores, key, makeStep(Opcode::Append, std::move(names)));
}

void addBytes(Stores& stores)
{
    for (const Byte& byte : bytes) {
        std::vector<std::string> names;
        for (const BitField& field : byte.fields) {
            names.emplace_back(field.name);
            addTemplate(stores, std::string(byte.key) + "/" + field.name, readBits(byte, field));
        }
        if (byte.key == byte.packet) // its answer goes on with addresses
            names.insert(names.end(), std::begin(addresses), std::end(addresses));
        addBranch(stores, byte.key, std::move(names));
    }
    for (const char* name : addresses) {
        const std::string key = std::string("GET://BMC/CHASSIS/CAPABILITIES/") + name;
        addTemplate(stores, key, readAddress(key));
    }
}

void addWords(Stores& stores)
{
    const TableRow tables[] = {
        {.key = flagTable, .pairs = {{"0", "FALSE"}, {"1", "TRUE"}}},
        {.key = powerTable, .pairs = {{"0", "OFF"}, {"1", "ON"}}},
        {.key = policyTable, .pairs = {{"0", "ALWAYS_OFF"}, {"1", "PREVIOUS"}, {"2", "ALWAYS_ON"}, {"3", "UNKNOWN"}}},
        {.key = causeTable,
         .pairs = {{"0", "UNKNOWN"},
                   {"1", "CHASSIS_CONTROL"},
                   {"2", "RESET_BUTTON"},
                   {"3", "POWER_BUTTON"},
                   {"4", "WATCHDOG"},
                   {"5", "OEM"},
                   {"6", "ALWAYS_RESTORE"},
                   {"7", "RESTORE_PREVIOUS"},
                   {"8", "PEF_RESET"},
                   {"9", "PEF_POWER_CYCLE"},
                   {"A", "SOFT_RESET"},
                   {"B", "RTC_WAKEUP"}}},
        {.key = setPolicyTable, .pairs = {{"ALWAYS_OFF", "0"}, {"PREVIOUS", "1"}, {"ALWAYS_ON", "2"}}},
        {.key = setControlTable,
         .pairs = {{"POWER_DOWN", "0"},
                   {"POWER_UP", "1"},
                   {"POWER_CYCLE", "2"},
                   {"RESET", "3"},
                   {"DIAGNOSTIC_INTERRUPT", "4"},
                   {"SOFT_SHUTDOWN", "5"}}},
        {.key = setPanelTable, .pairs = {{"ENABLE", "0"}, {"DISABLE", "F"}}},
    };
    addTables(stores, tables);
}

void addSets(Stores& stores)
{
    constexpr const char* codesName = "$COMPLETION_CODE";
    addTemplate(stores, "SET://BMC/CHASSIS/BOOTOPTION_SETTABLE",
                setBytes("SET://BMC/CHASSIS/BOOTOPTION_SETBOOTTABLE", "$BOOTOPTION_SETTABLE"));
    addTemplate(stores, "SET://BMC/CHASSIS/BOOT_OPTION", setBytes("SET://BMC/CHASSIS/BOOT_OPTION", "$BOOT_OPTION"));
    addTemplate(stores, "SET://BMC/CHASSIS/CONTROL",
                setWord("SET://BMC/CHASSIS/CONTROL", "$CONTROL", setControlTable, "ERROR_CHASSIS_CONTROL_SET"));
    addTemplate(stores, "SET://BMC/CHASSIS/FRONT_PANEL",
                setWord("SET://BMC/CHASSIS/FRONT_PANEL", "$FRONT_PANEL", setPanelTable, codesName));
    addTemplate(
        stores, "SET://BMC/CHASSIS/FRONT_PANEL_ENABLES",
        script({require("$FRONT_PANEL_ENABLES"), Map("$FRONT_PANEL_ENABLES", "MASK", "F", "$FRONT_PANEL_ENABLES"),
                sendOrThrow("SET://BMC/CHASSIS/FRONT_PANEL_ENABLES", codesName)}));
    addTemplate(stores, "SET://BMC/CHASSIS/IDENTIFY/LEDOFF",
                script({Copy("00", "$INTERVAL"), sendOrThrow("SET://BMC/CHASSIS/IDENTIFY", codesName)}));
    addTemplate(
        stores, "SET://BMC/CHASSIS/IDENTIFY/LEDONINTERVAL",
        script({Assert("$LEDONINTERVAL", "RANGE_CHECK", "0", "255", "$ASSERT_VALUE"),
                Map("$LEDONINTERVAL", "DEC2HEX", "$INTERVAL"), sendOrThrow("SET://BMC/CHASSIS/IDENTIFY", codesName)}));
    addTemplate(stores, setPolicyTable,
                setWord("SET://BMC/CHASSIS/POWERRESTOREPOLICY", "$RESTOREPOLICY", setPolicyTable, codesName));
}

} // namespace

ChassisConfig::ChassisConfig(Stores& stores)
{
    addConstants(stores, constants);
    addPackets(stores, packets);
    addFilters(stores, filters);
    addWords(stores);
    addBytes(stores);
    addTemplate(stores, "GET://BMC/CHASSIS", branch({"CAPABILITIES", "STATUS", "SYSTEMRESTARTCAUSE"}));
    addTemplate(stores, "GET://BMC/CHASSIS/STATUS",
                branch({"POWERSTATE", "LASTPOWEREVENT", "MISCSTATE", "FPBCAPABILITIES"}));
    addTemplate(stores, "GET://BMC/CHASSIS/SYSTEMRESTARTCAUSE", readRestartCause());
    addTemplate(stores, "GET://BMC/CHASSIS/FRONT_PANEL", readFrontPanel());
    addTemplate(stores, "GET://BMC/CHASSIS/LEDSTATUS", returnData("GET://BMC/CHASSIS/LEDSTATUS"));
    addTemplate(stores, "GET://BMC/CHASSIS/BOOT_OPTION",
                script({take("$/CHASSIS/PARAMETER_SELECTOR"), take("$/CHASSIS/SET_SELECTOR"),
                        take("$/CHASSIS/BLOCK_SELECTOR"), returnData("GET://BMC/CHASSIS/BOOT_OPTION")}));
    addTemplate(stores, "GET://BMC/CHASSIS/BOOTOPTION_GETTABLE",
                script({take("$/CHASSIS/SET_SELECTOR"), take("$/CHASSIS/BLOCK_SELECTOR"),
                        returnData("GET://BMC/CHASSIS/BOOTOPTION_GETBOOTTABLE")}));
    addTemplate(stores, "GET://BMC/CHASSIS/BOOTOPT_GETSIZE", returnData("GET://BMC/CHASSIS/BOOTOPT_TABLESIZE"));
    addSets(stores);
}

} // namespace Module::BMCConfig

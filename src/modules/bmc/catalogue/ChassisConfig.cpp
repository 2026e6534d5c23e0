#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Fields.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

// The chassis device (IPMI 2.0, 28): power, front panel, identification and boot options.

namespace Module::BMCConfig {

using namespace steps;

namespace chassisConfig {

constexpr TextRow constants[] = {
    {"$/CHASSIS/BLOCK_SELECTOR", "00"},
    {"$/CHASSIS/BOOT_TABLE_PARAMETER", "61"}, // of the manufacturer's own, as is its size
    {"$/CHASSIS/BOOT_TABLE_SIZE_PARAMETER", "60"},
    {"$/CHASSIS/PARAMETER_SELECTOR", "05"}, // the boot flags, unless told otherwise
    {"$/CHASSIS/SET_SELECTOR", "00"},
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

constexpr char setPolicyTable[] = "SET://BMC/CHASSIS/STATUS/POWERSTATE/RESTOREPOLICY",
               setControlTable[] = "SET://BMC/CHASSIS/CONTROL", setPanelTable[] = "SET://BMC/CHASSIS/FRONT_PANEL";
constexpr char powerTable[] = "CHASSIS/POWER", policyTable[] = "CHASSIS/STATUS/POWERSTATE/RESTOREPOLICY";

/// Bytes at the end of these answers are optional, as are the commands.
constexpr Record recordOf(const char* path, const char* packet)
{
    return {.path = path, .get = packet, .absentCode = "193", .mayEndEarly = true};
}

constexpr Field bits(const char* name, unsigned byte, unsigned mask, const char* table = "CHASSIS/FLAG")
{
    return {.name = name, .byte = byte, .codec = Codec::word, .mask = mask, .table = table};
}

constexpr Field powerState[] = {
    bits("SYSPOWER", 0, 0x01, powerTable), bits("POWEROVERLOAD", 0, 0x02), bits("INTERLOCK", 0, 0x04),
    bits("POWERFAULT", 0, 0x08),           bits("CONTROLFAULT", 0, 0x10),  bits("RESTOREPOLICY", 0, 0x60, policyTable),
};
constexpr Field lastPowerEvent[] = {
    bits("ACFAILED", 1, 0x01),         bits("DOWNBYPOWEROVERLOAD", 1, 0x02), bits("DOWNBYILACTIVATION", 1, 0x04),
    bits("DOWNBYPOWERFAULT", 1, 0x08), bits("ONVIAIPMI", 1, 0x10),
};
constexpr Field miscState[] = {
    bits("INTRUSIONACTIVE", 2, 0x01),
    bits("FPLACTIVE", 2, 0x02),
    bits("DRIVEFAULT", 2, 0x04),
    bits("FANFAULT", 2, 0x08),
};
constexpr Field buttons[] = {
    bits("POWEROFFDISABLED", 3, 0x01),
    bits("RESETDISABLED", 3, 0x02),
    bits("DIAGINTERRUPTDISABLED", 3, 0x04),
    bits("STANDBYDISABLED", 3, 0x08),
    bits("POWEROFFDISABLEALLOWED", 3, 0x10),
    bits("RESETDISABLEALLOWED", 3, 0x20),
    bits("DIAGINTERRUPTDISABLEALLOWED", 3, 0x40),
    bits("STANDBYDISABLEALLOWED", 3, 0x80),
};
/// Behind the flags slave addresses in the 8-bit form, hexadecimal.
constexpr Field capabilities[] = {
    bits("INTRUSIONSENSOR", 0, 0x01),         bits("FPLOCKOUT", 0, 0x02),
    bits("DIAGINTERRUPT", 0, 0x04),           bits("POWERINTERLOCK", 0, 0x08),
    {.name = "FRUDEVADDRESS", .byte = 1},     {.name = "SELDEVADDRESS", .byte = 3},
    {.name = "SYSMGMTDEVADDRESS", .byte = 4}, {.name = "BRIDGEDEVADDRESS", .byte = 5},
};
constexpr Field restartCause[] = {bits("SYSTEMRESTARTCAUSE", 0, 0x0F, "CHASSIS/SYSTEMRESTARTCAUSE")};
/// The buttons that are disabled, as the bits in which SET "FRONT_PANEL_ENABLES" takes them.
Script readFrontPanel()
{
    return script({
        send("GET://BMC/CHASSIS/FRONT_PANEL"),
        answerIfAbsent("NOT_SUPPORTED"),
        checkCode(),
        IPMIResponse("$BUFFER", "GET://BMC/CHASSIS/FRONT_PANEL", "$FIELD"),
        If("$FIELD == ERROR", {returnText("NOT_SUPPORTED")}),
        Map("$FIELD", "MASK", "F", "$RESULT"),
        Return("$RESULT"),
    });
}

void addBytes(Stores& stores)
{
    constexpr char status[] = "CHASSIS/STATUS";
    addFieldBranch(stores, recordOf("CHASSIS/STATUS/POWERSTATE", status), powerState);
    addFieldBranch(stores, recordOf("CHASSIS/STATUS/LASTPOWEREVENT", status), lastPowerEvent);
    addFieldBranch(stores, recordOf("CHASSIS/STATUS/MISCSTATE", status), miscState);
    addFieldBranch(stores, recordOf("CHASSIS/STATUS/FPBCAPABILITIES", status), buttons);
    addFieldBranch(stores, recordOf("CHASSIS/CAPABILITIES", "CHASSIS/CAPABILITIES"), capabilities);
    addFields(stores, recordOf("CHASSIS", "CHASSIS/SYSTEMRESTARTCAUSE"), restartCause);
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

void addWords(Stores& stores)
{
    const TableRow tables[] = {
        {.key = "GET://BMC/CHASSIS/FLAG", .pairs = {{"0", "FALSE"}, {"1", "TRUE"}}},
        {.key = "GET://BMC/CHASSIS/POWER", .pairs = {{"0", "OFF"}, {"1", "ON"}}},
        {.key = "GET://BMC/CHASSIS/STATUS/POWERSTATE/RESTOREPOLICY",
         .pairs = {{"0", "ALWAYS_OFF"}, {"1", "PREVIOUS"}, {"2", "ALWAYS_ON"}, {"3", "UNKNOWN"}}},
        {.key = "GET://BMC/CHASSIS/SYSTEMRESTARTCAUSE",
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

} // namespace chassisConfig

ChassisConfig::ChassisConfig(Stores& stores)
{
    using namespace chassisConfig;
    addConstants(stores, constants);
    addPackets(stores, packets);
    addFilter(stores, "GET://BMC/CHASSIS/FRONT_PANEL", "4");
    addWords(stores);
    addBytes(stores);
    addTemplate(stores, "GET://BMC/CHASSIS", branch({"CAPABILITIES", "STATUS", "SYSTEMRESTARTCAUSE"}));
    addTemplate(stores, "GET://BMC/CHASSIS/STATUS",
                branch({"POWERSTATE", "LASTPOWEREVENT", "MISCSTATE", "FPBCAPABILITIES"}));
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

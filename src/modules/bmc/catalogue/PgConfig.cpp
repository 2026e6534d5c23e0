#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/PgAreas.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// Power governing: policies by which the chipset's engine keeps the machine below a limit, per domain (platform, CPU,
// memory), and statistics of what it measures. Commands of network function 2Eh carry the enterprise number of the
// group that defined them in front of their own data (IPMI 2.0, table 5-1), here and in the answers.

namespace Module::BMCConfig {

using namespace steps;

namespace pgConfig {

/// Four commands take a domain and one byte more: which one, and that byte, are set by each query.
constexpr PacketRow packets[] = {
    {"GET://BMC/PG/ALERT_DESTINATION", "GET_ALERT_DESTINATION", "57 01 00", governor},
    {"GET://BMC/PG/DATA", "$/PG/COMMAND", "57 01 00 $DOMAIN_NUMBER $/PG/SUBJECT", governor},
    {"GET://BMC/PG/STATISTICS", "GET_STATISTICS", "57 01 00 $STATISTICS_MODE_NUMBER $DOMAIN_NUMBER $POLICY_NUMBER",
     governor},
    {"GET://BMC/PG/VERSION", "GET_GOVERNOR_VERSION", "57 01 00", governor},
};

constexpr TextRow filters[] = {
    {"GET://BMC/PG/NEXT_POLICY", "4"},
    {"GET://BMC/PG/VERSION/FIRMWARE", "7 8"},
};

constexpr Record alertDestination{.path = "PG/ALERT_DESTINATION", .get = "PG/ALERT_DESTINATION", .first = 4},
    alertThresholds{.path = "PG/DOMAIN[]/POLICY[]/ALERT_THRESHOLDS",
                    .get = "PG/DATA",
                    .first = 4,
                    .given = "$/PG/COMMAND $/IPMI/GET_ALERT_THRESHOLDS, $/PG/SUBJECT $POLICY_NUMBER",
                    .subscripts = domainAndPolicy},
    capabilities{.path = "PG/DOMAIN[]/POLICY_TYPE[]/CAPABILITIES",
                 .get = "PG/DATA",
                 .first = 4,
                 .given = "$/PG/COMMAND $/IPMI/GET_CAPABILITIES, $/PG/SUBJECT $POLICY_TYPE_NUMBER BIT_OR 10",
                 .subscripts = "DOMAIN 0 15, POLICY_TYPE 0 15"},
    policy{.path = "PG/DOMAIN[]/POLICY[]/POLICY_PARAMETERS",
           .get = "PG/DATA",
           .first = 4,
           .given = "$/PG/COMMAND $/IPMI/GET_POLICY, $/PG/SUBJECT $POLICY_NUMBER",
           .subscripts = domainAndPolicy},
    statistics{.path = "PG/STATISTICS_MODE[]/DOMAIN[]/POLICY[]/STATISTICS",
               .get = "PG/STATISTICS",
               .first = 4,
               .subscripts = "STATISTICS_MODE 0 31, DOMAIN 0 15, POLICY 0 255"},
    suspendPeriods{.path = "PG/DOMAIN[]/POLICY[]/SUSPEND_PERIOD",
                   .get = "PG/DATA",
                   .first = 4,
                   .given = "$/PG/COMMAND $/IPMI/GET_SUSPEND_PERIODS, $/PG/SUBJECT $POLICY_NUMBER",
                   .subscripts = domainAndPolicy},
    version{.path = "PG/VERSION", .get = "PG/VERSION", .first = 4};

constexpr Field alertDestinationFields[] = {
    {"ALERT_STRING_SELECTOR", 2, 1, Codec::number, 0x7F},
    {"CHANNEL_NUMBER", 0, 1, Codec::number, 0x0F},
    {"DESTINATION_INFO", 1, 1, Codec::number}, // of a LAN the destination's number, of IPMB the slave address
    {"VALID", 0, 1, Codec::word, 0x80, "PG/VALID"},
};

constexpr Field alertThresholdFields[] = {
    {"NUMBER_OF_ALERT_THRESHOLDS", 0, 1, Codec::number},
};

constexpr Field capabilityFields[] = {
    {"DOMAIN_LIMITING_SCOPE/LIMITING_BASED_ON", 17, 1, Codec::word, 0x80, "PG/LIMITING_BASED_ON"},
    {"DOMAIN_LIMITING_SCOPE/LIMITING_TYPE", 17, 1, Codec::word, 0x0F, "PG/LIMITING_TYPE"},
    {"MAX_CORRECTION_TIME/VALUE", 9, 4, Codec::number},
    {"MAX_POWER_LIMIT/VALUE", 1, 2, Codec::number},
    {"MAX_STATISTICS_REPORTING_PERIOD/VALUE", 15, 2, Codec::number},
    {"MIN_CORRECTION_TIME/VALUE", 5, 4, Codec::number},
    {"MIN_POWER_LIMIT/VALUE", 3, 2, Codec::number},
    {"MIN_STATISTICS_REPORTING_PERIOD/VALUE", 13, 2, Codec::number},
    {"NUMBER_OF_POLICIES_SUPPORTED", 0, 1, Codec::number},
};

constexpr Field policyFields[] = {
    {"CORRECTION_TIPX_LIMIT/VALUE", 5, 4, Codec::number},
    {"GLOBAL_POLICY_CONTROL_ENABLED", 0, 1, Codec::word, 0x40},
    {"PER_DOMAIN_POLICY_CONTROL_ENABLED", 0, 1, Codec::word, 0x20},
    policyEnabled,
    policyAction,
    {"POLICY_TRIGGER_LIMIT", 9, 2, Codec::number},
    policyType,
    {"POWER_LIMIT/UNIT", 1, 1, Codec::word, 0x0F, "PG/POLICY_UNIT"},
    {"POWER_LIMIT/VALUE", 3, 2, Codec::number},
    {"STATISTIC_REPORTING_PERIOD/VALUE", 11, 2, Codec::number},
};

constexpr Field statisticsFields[] = {
    {"ACTIVATION_STATE", 16, 1, Codec::word, 0x80, "PG/ACTIVATION_STATE"},
    {"AVERAGE_READING/VALUE", 6, 2, Codec::number},
    {"CURRENT_READING/VALUE", 0, 2, Codec::number},
    {"MAXIMUM_READING/VALUE", 4, 2, Codec::number},
    {"MEASUREMENT_STATE", 16, 1, Codec::word, 0x40, "PG/MEASUREMENT_STATE"},
    {"MINIMUM_READING/VALUE", 2, 2, Codec::number},
    {"OPERATIONAL_STATE", 16, 1, Codec::word, 0x20, "PG/OPERATIONAL_STATE"},
    {"STATISTIC_REPORTING_PERIOD/VALUE", 12, 4, Codec::number},
    {"TIPX_STAMP", 8, 4, Codec::number}, // seconds since 1970
};

constexpr Field versionFields[] = {
    {"IPMI_INTERFACE", 1, 1, Codec::word, 0xFF, "PG/VERSION"},
    {"NODE_MANAGER", 0, 1, Codec::word, 0xFF, "PG/VERSION"},
    {"PATCH", 2, 1, Codec::number},
};

/// A quantity: its branch, and the unit of its value or the table that has the units by `key`.
struct Quantity {
    const Record& record;
    const char* name;
    const char* unit;
    const char* key = nullptr;
};

constexpr char limitUnit[] = "GET://BMC/PG/LIMIT_UNIT", statisticsUnit[] = "GET://BMC/PG/STATISTICS_UNIT";

constexpr Quantity quantities[] = {
    {capabilities, "MAX_CORRECTION_TIME", "MILLISECONDS"},
    {capabilities, "MAX_POWER_LIMIT", limitUnit, "$POLICY_TYPE_NUMBER"},
    {capabilities, "MAX_STATISTICS_REPORTING_PERIOD", "SECONDS"},
    {capabilities, "MIN_CORRECTION_TIME", "MILLISECONDS"},
    {capabilities, "MIN_POWER_LIMIT", limitUnit, "$POLICY_TYPE_NUMBER"},
    {capabilities, "MIN_STATISTICS_REPORTING_PERIOD", "SECONDS"},
    {policy, "CORRECTION_TIPX_LIMIT", "MILLISECONDS"},
    {policy, "POWER_LIMIT", nullptr}, // its unit is a field
    {policy, "STATISTIC_REPORTING_PERIOD", "SECONDS"},
    {statistics, "AVERAGE_READING", statisticsUnit, "$STATISTICS_MODE_NUMBER"},
    {statistics, "CURRENT_READING", statisticsUnit, "$STATISTICS_MODE_NUMBER"},
    {statistics, "MAXIMUM_READING", statisticsUnit, "$STATISTICS_MODE_NUMBER"},
    {statistics, "MINIMUM_READING", statisticsUnit, "$STATISTICS_MODE_NUMBER"},
    {statistics, "STATISTIC_REPORTING_PERIOD", "SECONDS"},
};

constexpr BranchRow branches[] = {
    {"GET://BMC/PG/ALERT_DESTINATION", "ALERT_STRING_SELECTOR CHANNEL_NUMBER DESTINATION_INFO VALID"},
    {"GET://BMC/PG/DOMAIN[]/POLICY[]/POLICY_PARAMETERS",
     "CORRECTION_TIPX_LIMIT GLOBAL_POLICY_CONTROL_ENABLED PER_DOMAIN_POLICY_CONTROL_ENABLED POLICY_ENABLED "
     "POLICY_EXCEPTION_ACTION POLICY_TRIGGER_LIMIT POLICY_TYPE POWER_LIMIT STATISTIC_REPORTING_PERIOD"},
    {"GET://BMC/PG/DOMAIN[]/POLICY_TYPE[]/CAPABILITIES",
     "DOMAIN_LIMITING_SCOPE MAX_CORRECTION_TIME MAX_POWER_LIMIT MAX_STATISTICS_REPORTING_PERIOD MIN_CORRECTION_TIME "
     "MIN_POWER_LIMIT MIN_STATISTICS_REPORTING_PERIOD NUMBER_OF_POLICIES_SUPPORTED"},
    {"GET://BMC/PG/DOMAIN[]/POLICY_TYPE[]/CAPABILITIES/DOMAIN_LIMITING_SCOPE", "LIMITING_BASED_ON LIMITING_TYPE"},
    {"GET://BMC/PG/STATISTICS_MODE[]/DOMAIN[]/POLICY[]/STATISTICS",
     "ACTIVATION_STATE AVERAGE_READING CURRENT_READING GLOBAL_POLICY_CONTROL_ENABLED MAXIMUM_READING "
     "MEASUREMENT_STATE MINIMUM_READING OPERATIONAL_STATE POLICY_ENABLED STATISTIC_REPORTING_PERIOD TIPX_STAMP"},
    {"GET://BMC/PG/VERSION", "FIRMWARE IPMI_INTERFACE NODE_MANAGER PATCH"},
};

void addWords(Stores& stores)
{
    const TablePair pairs[] = {
        {"GET://BMC/PG/EXCEPTION_ACTION",
         "SET://BMC/PG/EXCEPTION_ACTION",
         {{"0", "NONE"}, {"1", "ALERT"}, {"2", "SHUTDOWN"}, {"3", "ALERT_AND_SHUTDOWN"}}},
        {"GET://BMC/PG/POLICY_TYPE",
         "SET://BMC/PG/POLICY_TYPE",
         {{"0", "NO_TRIGGER"},
          {"1", "INLET_TEMPERATURE"},
          {"2", "MISSING_POWER_READING"},
          {"3", "TIME_AFTER_RESET"},
          {"4", "BOOT_TIME"}}},
        {"GET://BMC/PG/VALID", "SET://BMC/PG/VALID", {{"0", "TRUE"}, {"1", "FALSE"}}},
    };
    const TableRow tables[] = {
        {"GET://BMC/PG/ACTIVATION_STATE", {{"0", "NOT_LIMITING"}, {"1", "LIMITING"}}},
        {"GET://BMC/PG/LIMITING_BASED_ON", {{"0", "INPUT_POWER"}, {"1", "OUTPUT_POWER"}}},
        {"GET://BMC/PG/LIMITING_TYPE", {{"0", "PLATFORM"}, {"1", "CPU"}, {"2", "MEMORY"}}},
        {limitUnit,
         {{"0", "WATTS"}, {"1", "CELSIUS"}, {"2", "TENTHS_OF_SECONDS"}, {"3", "TENTHS_OF_SECONDS"}, {"4", "WATTS"}}},
        {"GET://BMC/PG/MEASUREMENT_STATE", {{"0", "STOPPED"}, {"1", "IN_PROGRESS"}}},
        {"GET://BMC/PG/OPERATIONAL_STATE", {{"0", "SUSPENDED"}, {"1", "MONITORING"}}},
        {"GET://BMC/PG/POLICY_UNIT",
         {{"0", "WATTS"}, {"1", "WATTS"}, {"2", "PERCENT"}, {"3", "WATTS"}, {"4", "WATTS"}}},
        {"GET://BMC/PG/VERSION", {{"1", "1.0"}, {"2", "1.5"}, {"3", "2.0"}, {"4", "2.5"}, {"5", "3.0"}}},
        {"SET://BMC/PG/DATA",
         {{"ALERT_THRESHOLDS", "C4"}, {"CAPABILITIES", "C9"}, {"POLICY", "C2"}, {"SUSPEND_PERIODS", "C6"}}},
    };
    const WordTable words[] = {
        {statisticsUnit, {{"WATTS", "1 6 11"}, {"CELSIUS", "2 5 12"}, {"PERCENT", "3 13"}}},
    };
    addTables(stores, pairs);
    addTables(stores, tables);
    addTables(stores, words);
}

std::string pathOf(const Record& record, const char* name)
{
    return std::string("GET://BMC/") + record.path + name;
}

/// All behind the enterprise number, as one text.
Steps returnInfo(const Record& record)
{
    return script({
        sendAndCheck(std::string("GET://BMC/") + record.get),
        returnBytes(4),
    });
}

Steps returnUnit(const char* table, const char* key)
{
    return script({
        LookupTable(key, table, "$RESULT"),
        If("$RESULT == ERROR", {returnText("UNKNOWN")}),
        Return("$RESULT"),
    });
}

/// The answer's one bit is the policy's in modes from 10h on, and the whole governor's below.
Script enabledScript(const char* name, const char* otherMode)
{
    return script({
        prepare(statistics),
        Map("$STATISTICS_MODE_NUMBER", "MASK", "10", "$MODE"),
        If(std::string("$MODE == ") + otherMode, {returnText("NOT_SUPPORTED")}),
        sendAndCheck("GET://BMC/PG/STATISTICS"),
        readField(pathOf(statistics, "/ACTIVATION_STATE"), "$FIELD", "$COMPLETION_CODE"),
        decode({.name = name, .codec = Codec::word, .mask = 0x10}),
        Return("$RESULT"),
    });
}

/// Asked for a policy that is not there, the governor refuses with 80h and tells the next number that is, or 0.
Script policiesScript()
{
    return script({
        assertSubscript("DOMAIN", 0, 15),
        Copy(":NULL", "$MEMBERS"),
        Copy("$/IPMI/GET_POLICY", "$/PG/COMMAND"),
        Copy("0", "$POLICY"),
        While(
            "$POLICY < 256",
            {
                Map("$POLICY", "DEC2HEX", "$/PG/SUBJECT"),
                send("GET://BMC/PG/DATA"),
                Copy("$POLICY", "$LAST"),
                If("$COMPLETION_CODE == 0",
                   {FormatString("POLICY[", "$POLICY", "]/POLICY_PARAMETERS", "$MEMBER"), Append("$MEMBER", "$MEMBERS"),
                    Expression("$POLICY", "+", "1", "$POLICY")}),
                If("$BMC_COMPLETION_CODE == 128",
                   {Filter("$BUFFER", "GET://BMC/PG/NEXT_POLICY", "$NEXT"), If("$NEXT == ERROR", {Return("$MEMBERS")}),
                    Map("$NEXT", "HEX2DEC", "$POLICY"), If("$POLICY <= $LAST", {Return("$MEMBERS")})}),
                If("$POLICY == $LAST", {Throw("$COMPLETION_CODE")}),
            }),
        Return("$MEMBERS"),
    });
}

/// The number of thresholds in $COUNT, and the answer's fields in $FIELDS; of each threshold the low byte comes first.
Steps readThresholds()
{
    return script({
        prepare(alertThresholds),
        sendAndCheck("GET://BMC/PG/DATA"),
        readField(pathOf(alertThresholds, "/NUMBER_OF_ALERT_THRESHOLDS"), "$COUNT", "$COMPLETION_CODE"),
        Map("$COUNT", "HEX2DEC", "$COUNT"),
        Split("$BUFFER", ":SPACE", "$FIELDS"),
    });
}

Script thresholdScript()
{
    return script({
        readThresholds(),
        Map("$THRESHOLD_NUMBER", "HEX2DEC", "$THRESHOLD"),
        Assert("$THRESHOLD", "RANGE_CHECK", "1", "$COUNT", "$ASSERT_VALUE"),
        Expression("$THRESHOLD", "+", "$THRESHOLD", "+", "4", "$PLACE"),
        Read("$FIELDS", "$PLACE", "$HIGH"),
        Expression("$PLACE", "-", "1", "$PLACE"),
        Read("$FIELDS", "$PLACE", "$LOW"),
        Copy(":NULL", "$THRESHOLD"),
        Append("$HIGH", "$LOW", "$THRESHOLD"),
        returnNumber("$THRESHOLD"),
    });
}

Script thresholdsScript()
{
    return script({
        readThresholds(),
        Copy(":NULL", "$MEMBERS"),
        Append("NUMBER_OF_ALERT_THRESHOLDS", "$MEMBERS"),
        If("$COUNT > 0", {For("THRESHOLD", "1", "$COUNT",
                              {
                                  Map("$THRESHOLD", "HEX2DEC", "$THRESHOLD_IN_DEC"),
                                  FormatString("THRESHOLD[", "$THRESHOLD_IN_DEC", "]", "$MEMBER"),
                                  Append("$MEMBER", "$MEMBERS"),
                              })}),
        Return("$MEMBERS"),
    });
}

/// Any of the four commands that the caller names, of a domain and a policy or type of policies.
Script dataScript()
{
    constexpr Field domain{.name = "DOMAIN", .codec = Codec::number, .high = 15};
    constexpr Field subject{.name = "SUBJECT", .codec = Codec::number};
    return script({
        LookupTable("$COMMAND", "SET://BMC/PG/DATA", "$/PG/COMMAND"),
        encode("$DOMAIN", domain),
        Copy("$DOMAIN", "$DOMAIN_NUMBER"),
        encode("$SUBJECT", subject),
        Copy("$SUBJECT", "$/PG/SUBJECT"),
        returnInfo(policy),
    });
}

void addQuantities(Stores& stores)
{
    for (const Quantity& row : quantities) {
        const std::string key = pathOf(row.record, "/") + row.name;
        const BranchRow branch{key.c_str(), "VALUE UNIT"};
        addBranches(stores, {&branch, 1});
        if (row.unit)
            addTemplate(stores, key + "/UNIT", row.key ? returnUnit(row.unit, row.key) : returnText(row.unit));
    }
}

} // namespace pgConfig

PgConfig::PgConfig(Stores& stores)
{
    using namespace pgConfig;
    addPackets(stores, packets);
    addFilters(stores, filters);
    addWords(stores);
    addBranches(stores, branches);
    addQuantities(stores);
    addFields(stores, alertDestination, alertDestinationFields);
    addFields(stores, alertThresholds, alertThresholdFields);
    addFields(stores, capabilities, capabilityFields);
    addFields(stores, policy, policyFields);
    addFields(stores, statistics, statisticsFields);
    addFields(stores, version, versionFields);
    for (const Record& record :
         {alertDestination, alertThresholds, capabilities, policy, statistics, suspendPeriods, version})
        addTemplate(stores, pathOf(record, "_INFO"), script({prepare(record), returnInfo(record)}));

    addTemplate(stores, "GET://BMC/PG/DATA", dataScript());
    addTemplate(stores, "GET://BMC/PG/DOMAIN[]", policiesScript());
    addTemplate(stores, pathOf(alertThresholds, ""), thresholdsScript());
    addTemplate(stores, pathOf(alertThresholds, "/THRESHOLD[]"), thresholdScript());
    addTemplate(stores, pathOf(statistics, "/GLOBAL_POLICY_CONTROL_ENABLED"), enabledScript("GLOBAL", "10"));
    addTemplate(stores, pathOf(statistics, "/POLICY_ENABLED"), enabledScript("POLICY", "0"));
    addTemplate(stores, pathOf(statistics, "_INFO_UNITS"), returnUnit(statisticsUnit, "$STATISTICS_MODE_NUMBER"));
    addTemplate(stores, "GET://BMC/PG/VERSION/FIRMWARE", // the minor one is BCD
                script({
                    sendAndCheck("GET://BMC/PG/VERSION"),
                    readField("GET://BMC/PG/VERSION/FIRMWARE", "$FIELD", "$COMPLETION_CODE"),
                    Read("$FIELD", "0", "$MAJOR"),
                    Map("$MAJOR", "HEX2DEC", "$MAJOR"),
                    Read("$FIELD", "1", "$MINOR"),
                    Prepend("$MINOR", "0", "2", "$MINOR"),
                    FormatString("$MAJOR", ".", "$MINOR", "$RESULT"),
                    Return("$RESULT"),
                }));
    addPgWrites(stores);
}

} // namespace Module::BMCConfig

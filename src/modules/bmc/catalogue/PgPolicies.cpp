#include "modules/bmc/catalogue/PgAreas.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// Power governing: writes. What each does is known, so that the word FORCE is not needed; nothing is sent of values
// that are not whole.

namespace Module::BMCConfig {

using namespace steps;

namespace pgPolicies {

/// The commands on policies share a packet; only a whole policy has what stands behind the record.
constexpr PacketRow packets[] = {
    {"SET://BMC/PG/ALERT_DESTINATION", "SET_ALERT_DESTINATION", "57 01 00 $/PG/RECORD", governor},
    {"SET://BMC/PG/POWER_DRAW_RANGE", "SET_POWER_DRAW_RANGE", "57 01 00 $DOMAIN_NUMBER $MINIMUM $MAXIMUM", governor},
    {"SET://BMC/PG/SET_POLICY", "$/PG/COMMAND",
     "57 01 00 $/PG/RECORD $/PG/POWER_LIMIT $/PG/CORRECTION_TIPX_LIMIT $/PG/POLICY_TRIGGER_LIMIT "
     "$/PG/STATISTIC_REPORTING_PERIOD",
     governor},
};

constexpr unsigned twoBytes = 0xFFFF;

constexpr Field limits[] = {
    {.name = "POWER_LIMIT", .count = 2, .codec = Codec::number, .high = twoBytes},
    {.name = "CORRECTION_TIPX_LIMIT", .count = 4, .codec = Codec::number, .high = 0xFFFFFFFF}, // in milliseconds
    {.name = "POLICY_TRIGGER_LIMIT", .count = 2, .codec = Codec::number, .high = twoBytes},
    {.name = "STATISTIC_REPORTING_PERIOD", .count = 2, .codec = Codec::number, .high = twoBytes}, // in seconds
};

void addWords(Stores& stores)
{
    const TableRow tables[] = {
        {"SET://BMC/PG/POLICY_CONTROL",
         {{"DISABLE", "4"},
          {"DOMAIN_DISABLE", "2"},
          {"DOMAIN_ENABLE", "3"},
          {"ENABLE", "5"},
          {"GLOBAL_DISABLE", "0"},
          {"GLOBAL_ENABLE", "1"}}},
        {"SET://BMC/PG/RESET_STATISTICS", {{"GLOBAL", "0"}, {"POLICY", "1"}}},
    };
    addTables(stores, tables);
}

Steps assertPolicy()
{
    return prepare({.path = "", .get = "", .subscripts = domainAndPolicy});
}

/// A parameter that the caller may leave out.
Steps orElse(const std::string& symbol, const std::string& text)
{
    return script({String_Length(symbol, "$SIZE"), If("$SIZE == 0", {Copy(text, symbol)})});
}

template<class... Bytes>
Steps sendPolicy(const char* command, Bytes... bytes)
{
    return script({
        Copy(command, "$/PG/COMMAND"),
        Copy(":NULL", "$/PG/RECORD"),
        Append(bytes..., "$/PG/RECORD"),
        sendOrThrow("SET://BMC/PG/SET_POLICY", "$COMPLETION_CODE"),
    });
}

/// A whole policy; one that is there already is written over. Bit 4 of its type says that it is not to be removed.
Script policyScript()
{
    Steps taken;
    for (const Field& field : limits) {
        const std::string name = field.name;
        taken = script({taken, encode("$" + name, field), Copy("$" + name, "$/PG/" + name)});
    }
    return script({
        assertPolicy(),
        orElse("$POLICY_TYPE", "NO_TRIGGER"),
        orElse("$POLICY_TRIGGER_LIMIT", "0"),
        orElse("$POLICY_EXCEPTION_ACTION", "NONE"),
        orElse("$POLICY_ENABLED", "ENABLE"),
        encode("$POLICY_TYPE", policyType),
        encode("$POLICY_EXCEPTION_ACTION", policyAction),
        encode("$POLICY_ENABLED", policyEnabled),
        taken,
        Map("$DOMAIN_NUMBER", "BIT_OR", "$POLICY_ENABLED", "$DOMAIN"),
        Map("$POLICY_TYPE", "BIT_OR", "10", "$TYPE"),
        sendPolicy("$/IPMI/SET_POLICY", "$DOMAIN", "$POLICY_NUMBER", "$TYPE", "$POLICY_EXCEPTION_ACTION"),
    });
}

Script deleteScript()
{
    return script({
        assertPolicy(),
        sendPolicy("$/IPMI/SET_POLICY", "$DOMAIN_NUMBER", "$POLICY_NUMBER", "0", "0", "0", "0", "0", "0", "0", "0", "0",
                   "0", "0", "0"),
    });
}

Script controlScript()
{
    return script({
        assertPolicy(),
        LookupTable("$ENABLE_DISABLE_POLICY", "SET://BMC/PG/POLICY_CONTROL", "$FLAGS"),
        sendPolicy("$/IPMI/ENABLE_POLICY", "$FLAGS", "$DOMAIN_NUMBER", "$POLICY_NUMBER"),
    });
}

Script resetScript()
{
    return script({
        assertPolicy(),
        LookupTable("$RESET_STATISTICS", "SET://BMC/PG/RESET_STATISTICS", "$MODE"),
        sendPolicy("$/IPMI/RESET_STATISTICS", "$MODE", "$DOMAIN_NUMBER", "$POLICY_NUMBER"),
    });
}

/// Up to three decimal numbers, parted by blanks or commas, or NONE.
Script thresholdsScript()
{
    const Steps cut = script({
        Assert("$ALERT_THRESHOLDS", "RANGE_CHECK", "0", std::to_string(twoBytes), "$ASSERT_VALUE"),
        For("PLACE", "0", "$LAST",
            {
                Read("$ALERT_THRESHOLDS", "$PLACE", "$THRESHOLD"),
                Map("$THRESHOLD", "DEC2HEX", "$THRESHOLD"),
                Map("$THRESHOLD", "MASK", "FF", "$LOW"),
                Map("$THRESHOLD", "RIGHT_SHIFT", "8", "$HIGH"),
                Append("$LOW", "$HIGH", "$/PG/RECORD"),
            }),
    });
    return script({
        assertPolicy(),
        Split("$ALERT_THRESHOLDS", " ,", "$ALERT_THRESHOLDS"),
        Size("$ALERT_THRESHOLDS", "$COUNT"),
        Assert("$COUNT", "RANGE_CHECK", "1", "3", "$ASSERT_VALUE"),
        Expression("$COUNT", "-", "1", "$LAST"),
        If("$ALERT_THRESHOLDS == NONE AND $COUNT == 1", {Copy("0", "$COUNT")}),
        Copy("$/IPMI/SET_ALERT_THRESHOLDS", "$/PG/COMMAND"),
        Copy(":NULL", "$/PG/RECORD"),
        Append("$DOMAIN_NUMBER", "$POLICY_NUMBER", "$COUNT", "$/PG/RECORD"),
        If("$COUNT > 0", {cut}),
        sendOrThrow("SET://BMC/PG/SET_POLICY", "$COMPLETION_CODE"),
    });
}

/// Watts between which the domain can be held at all.
Script rangeScript()
{
    constexpr Field low{.name = "MINIMUM", .count = 2, .codec = Codec::number, .high = twoBytes}, high = low;
    return script({
        assertSubscript("DOMAIN", 0, 15),
        require("$MINIMUM"),
        require("$MAXIMUM"),
        If("$MINIMUM > $MAXIMUM", {refuse("$MINIMUM")}),
        encode("$MINIMUM", low),
        encode("$MAXIMUM", high),
        sendOrThrow("SET://BMC/PG/POWER_DRAW_RANGE", "$COMPLETION_CODE"),
    });
}

/// Where the governor's alerts go; VALID=FALSE ends it. An alert string is sent along if its number is given.
Script destinationScript()
{
    constexpr Field channel{.name = "CHANNEL_NUMBER", .codec = Codec::number, .high = 15};
    constexpr Field info{.name = "DESTINATION_INFO", .codec = Codec::number};
    constexpr Field text{.name = "ALERT_STRING_SELECTOR", .codec = Codec::number, .high = 127};
    constexpr Field valid{.name = "VALID", .codec = Codec::word, .mask = 0x80, .table = "PG/VALID"};
    return script({
        orElse("$VALID", "TRUE"),
        encode("$VALID", valid),
        encode("$CHANNEL_NUMBER", channel),
        encode("$DESTINATION_INFO", info),
        Copy("0", "$TEXT"),
        String_Length("$ALERT_STRING_SELECTOR", "$SIZE"),
        If("$SIZE > 0",
           {encode("$ALERT_STRING_SELECTOR", text), Map("$ALERT_STRING_SELECTOR", "BIT_OR", "80", "$TEXT")}),
        Map("$CHANNEL_NUMBER", "BIT_OR", "$VALID", "$CHANNEL"),
        Copy(":NULL", "$/PG/RECORD"),
        Append("$CHANNEL", "$DESTINATION_INFO", "$TEXT", "$/PG/RECORD"),
        sendOrThrow("SET://BMC/PG/ALERT_DESTINATION", "$COMPLETION_CODE"),
    });
}

} // namespace pgPolicies

void addPgWrites(Stores& stores)
{
    using namespace pgPolicies;
    addPackets(stores, packets);
    addWords(stores);
    addTemplate(stores, "SET://BMC/PG/ALERT_DESTINATION", destinationScript());
    addTemplate(stores, "SET://BMC/PG/DOMAIN[]/POLICY[]/ALERT_THRESHOLDS", thresholdsScript());
    addTemplate(stores, "SET://BMC/PG/DOMAIN[]/POLICY[]/DELETE_POLICY", deleteScript());
    addTemplate(stores, "SET://BMC/PG/DOMAIN[]/POLICY[]/ENABLE_DISABLE_POLICY", controlScript());
    addTemplate(stores, "SET://BMC/PG/DOMAIN[]/POLICY[]/POLICY_PARAMETERS", policyScript());
    addTemplate(stores, "SET://BMC/PG/DOMAIN[]/POLICY[]/RESET_STATISTICS", resetScript());
    addTemplate(stores, "SET://BMC/PG/DOMAIN[]/POWER_DRAW_RANGE", rangeScript());
}

} // namespace Module::BMCConfig

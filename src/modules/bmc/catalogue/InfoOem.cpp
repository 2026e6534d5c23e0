#include "modules/bmc/catalogue/InfoAreas.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// What no standard's command tells. The controllers beside the BMC - hot-swap backplanes (HSC), front panel (LCP), the
// chipset's engine (PX) - answer Get Device ID at their own addresses. A backplane without a controller on the bus
// keeps its version in two registers behind the BMC. The rest are commands of the manufacturer's network function 30h:
//
//   Get Add-in Support (5Bh)         1 bit 0: management add-in (ZRA) fitted; 2 its major, 3 its minor version
//   Get Advanced Support Configuration (5Ah)  1, 2 what the add-in serves, a bit each; 3 what the board itself has
//   Get Buffer Size (5Ch)            1 longest KCS message, 2 longest IPMB message, in bytes
//
// A BMC that knows none of them answers C1h, and each query says so by its error.

namespace Module::BMCConfig {

using namespace steps;

namespace infoOem {

/// Where the boards keep them; a caller may give others under the same names without the "$".
constexpr TextRow constants[] = {
    {"$/INFO/BACKPLANE/BUS_ID", "0F"},
    {"$/INFO/BACKPLANE/MAJOR_REGISTER", "0A"},
    {"$/INFO/BACKPLANE/MINOR_REGISTER", "0B"},
    {"$/INFO/BACKPLANE/SLAVE_ADDRESS", "D0"},
    {"$/INFO/PMBUS/BUS_ID", "0F"},
    {"$/INFO/PMBUS/REVISION_COMMAND", "98"},
    {"$/INFO/PMBUS/SLAVE_ADDRESS", "B0"},
};

constexpr PacketRow packets[] = {
    {"GET://BMC/INFO/ADD_IN_SUPPORT", "GET_ADD_IN_SUPPORT"},
    {"GET://BMC/INFO/ADV_SUP_CONFIG", "GET_ADVANCED_SUPPORT"},
    {"GET://BMC/INFO/BUFFER_SIZE", "GET_BUFFER_SIZE"},
    {"GET://BMC/INFO/HSCVERSION1", "GET_DEVICE_ID", "", "$/BMC/HOT_SWAP_ADDRESS"},
    {"GET://BMC/INFO/HSCVERSION2", "GET_DEVICE_ID", "", "$/BMC/SECOND_HOT_SWAP_ADDRESS"},
    {"GET://BMC/INFO/HSCVERSIONMAJOR", "MASTER_WRITE_READ",
     "$/INFO/BACKPLANE/BUS_ID $/INFO/BACKPLANE/SLAVE_ADDRESS 01 $/INFO/BACKPLANE/MAJOR_REGISTER"},
    {"GET://BMC/INFO/HSCVERSIONMINOR", "MASTER_WRITE_READ",
     "$/INFO/BACKPLANE/BUS_ID $/INFO/BACKPLANE/SLAVE_ADDRESS 01 $/INFO/BACKPLANE/MINOR_REGISTER"},
    {"GET://BMC/INFO/LCPVERSION", "GET_DEVICE_ID", "", "$/BMC/FRONT_PANEL_ADDRESS"},
    {"GET://BMC/INFO/MEVERSION", "GET_DEVICE_ID", "", "$/BMC/CHIPSET_ENGINE_ADDRESS"},
    {"GET://BMC/INFO/PMBUSREVISION", "MASTER_WRITE_READ",
     "$/INFO/PMBUS/BUS_ID $/INFO/PMBUS/SLAVE_ADDRESS 01 $/INFO/PMBUS/REVISION_COMMAND"},
};

constexpr TextRow filters[] = {
    {"GET://BMC/INFO/ADD_IN_SUPPORT", "1"},    {"GET://BMC/INFO/ADV_SUP_CONFIG", "1 2 3"},
    {"GET://BMC/INFO/BUFFER_SIZE/IPMB", "2"},  {"GET://BMC/INFO/BUFFER_SIZE/KCS", "1"},
    {"GET://BMC/INFO/HSCVERSIONMAJOR", "1"},   {"GET://BMC/INFO/PMBUSREVISION", "1"},
    {"GET://BMC/INFO/SUPPORT_BYTE1", "1"},     {"GET://BMC/INFO/SUPPORT_BYTE2", "2"},
    {"GET://BMC/INFO/SUPPORT_BYTE3", "3"},     {"GET://BMC/INFO/ZRA/VERSION_MAJOR", "2"},
    {"GET://BMC/INFO/ZRA/VERSION_MINOR", "3"},
};

void addOemTables(Stores& stores)
{
    const TableRow tables[] = {
        {.key = "GET://BMC/INFO/ADD_IN_SUPPORT", .pairs = {{"0", "NOT PRESENT"}, {"1", "PRESENT"}}},
        // The low four bits of PMBUS_REVISION: the revision of the command language.
        {.key = "GET://BMC/INFO/PMBUSREVISION", .pairs = {{"0", "1.0"}, {"1", "1.1"}, {"2", "1.2"}, {"3", "1.3"}}},
    };
    const WordTable words[] = {
        {.key = "GET://BMC/INFO/FEATURE", .words = {{"NOT SUPPORTED", "0"}, {"SUPPORTED", "1 2 4 8 10 20 40 80"}}},
    };
    addTables(stores, tables);
    addTables(stores, words);
}

constexpr ReadRow reads[] = {
    {.key = "GET://BMC/INFO/ADD_IN_SUPPORT", .map = "MASK 1", .table = "GET://BMC/INFO/ADD_IN_SUPPORT"},
    {.key = "GET://BMC/INFO/ADV_SUP_CONFIG", .separator = ":SPACE"},
    {.key = "GET://BMC/INFO/BUFFER_SIZE/IPMB", .packet = "GET://BMC/INFO/BUFFER_SIZE", .map = "HEX2DEC"},
    {.key = "GET://BMC/INFO/BUFFER_SIZE/KCS", .packet = "GET://BMC/INFO/BUFFER_SIZE", .map = "HEX2DEC"},
    {.key = "GET://BMC/INFO/DEDICATED_NIC",
     .packet = "GET://BMC/INFO/ADV_SUP_CONFIG",
     .filter = "GET://BMC/INFO/SUPPORT_BYTE3",
     .map = "MASK 1",
     .table = "GET://BMC/INFO/FEATURE"},
    {.key = "GET://BMC/INFO/EWS_SUPPORTED",
     .packet = "GET://BMC/INFO/ADV_SUP_CONFIG",
     .filter = "GET://BMC/INFO/SUPPORT_BYTE3",
     .map = "MASK 2",
     .table = "GET://BMC/INFO/FEATURE"},
};

/// A controller that answers Get Device ID at its own address. Its boot block's version, where it has one, stands in
/// the auxiliary revision.
struct ControllerVersionRow {
    const char* key;
    const char* packet;
    const char* majorFilter;
    const char* minorFilter;
    const char* error;
};
constexpr ControllerVersionRow controllerVersions[] = {
    {"GET://BMC/INFO/HSC_BOOT_AREA_VERSION", "GET://BMC/INFO/HSCVERSION1", "GET://BMC/INFO/BOOT_MAJOR",
     "GET://BMC/INFO/BOOT_MINOR", "ERROR_HSC_NOT_PRESENT"},
    {"GET://BMC/INFO/HSC_OP_AREA_VERSION", "GET://BMC/INFO/HSCVERSION1", "GET://BMC/INFO/OPCODE_MAJOR",
     "GET://BMC/INFO/OPCODE_MINOR", "ERROR_HSC_NOT_PRESENT"},
    {"GET://BMC/INFO/LCPVERSION", "GET://BMC/INFO/LCPVERSION", "GET://BMC/INFO/OPCODE_MAJOR",
     "GET://BMC/INFO/OPCODE_MINOR", "ERROR_LCP_NOT_PRESENT"},
    {"GET://BMC/INFO/LCP_BOOT_AREA_VERSION", "GET://BMC/INFO/LCPVERSION", "GET://BMC/INFO/BOOT_MAJOR",
     "GET://BMC/INFO/BOOT_MINOR", "ERROR_LCP_NOT_PRESENT"},
    {"GET://BMC/INFO/LCP_OP_AREA_VERSION", "GET://BMC/INFO/LCPVERSION", "GET://BMC/INFO/OPCODE_MAJOR",
     "GET://BMC/INFO/OPCODE_MINOR", "ERROR_LCP_NOT_PRESENT"},
    {"GET://BMC/INFO/PX_BOOT_AREA_VERSION", "GET://BMC/INFO/MEVERSION", "GET://BMC/INFO/BOOT_MAJOR",
     "GET://BMC/INFO/BOOT_MINOR", "ERROR_PX_NOT_PRESENT"},
};

/// Ends the script with the version if the controller is there, goes on otherwise.
Steps returnVersionIfPresent(const ControllerVersionRow& row)
{
    return script({
        sendWithoutThrow(row.packet),
        If("$COMPLETION_CODE == 0", {returnVersion(row.majorFilter, row.minorFilter, row.error)}),
    });
}

/// The first of two controllers that answers, or else the registers.
Script hotSwapVersionScript()
{
    constexpr ControllerVersionRow second = {nullptr, "GET://BMC/INFO/HSCVERSION2", "GET://BMC/INFO/OPCODE_MAJOR",
                                             "GET://BMC/INFO/OPCODE_MINOR", "ERROR_HSC_NOT_PRESENT"};
    return script({
        Template_with_Catch("GET://BMC/INFO/HSC_OP_AREA_VERSION"),
        If("$RESULT != FAILURE", {Return("$RESULT")}),
        returnVersionIfPresent(second),
        sendWithoutThrow("GET://BMC/INFO/HSCVERSIONMAJOR"),
        If("$COMPLETION_CODE != 0", {Throw("ERROR_HSC_NOT_PRESENT")}),
        readField("GET://BMC/INFO/HSCVERSIONMAJOR", "$MAJOR", "ERROR_HSC_NOT_PRESENT"),
        sendWithoutThrow("GET://BMC/INFO/HSCVERSIONMINOR"),
        If("$COMPLETION_CODE != 0", {Throw("ERROR_HSC_NOT_PRESENT")}),
        readField("GET://BMC/INFO/HSCVERSIONMAJOR", "$MINOR", "ERROR_HSC_NOT_PRESENT"),
        Prepend("$MINOR", "0", "2", "$MINOR"),
        FormatString("$MAJOR", ".", "$MINOR", "$RESULT"),
        Return("$RESULT"),
    });
}

/// A power supply that answers no such command, or with nonsense, is none of PMBus.
Script pmbusRevisionScript()
{
    return script({
        send("GET://BMC/INFO/PMBUSREVISION"),
        If("$COMPLETION_CODE != 0", {Throw("ERROR_NOT_A_PMBUS_POWER_SUPPLY")}),
        readField("GET://BMC/INFO/PMBUSREVISION", "$REVISION", "ERROR_NOT_A_PMBUS_POWER_SUPPLY"),
        Map("$REVISION", "MASK", "F", "$REVISION"),
        LookupTable("$REVISION", "GET://BMC/INFO/PMBUSREVISION", "$RESULT"),
        If("$RESULT == ERROR", {Throw("ERROR_NOT_A_PMBUS_POWER_SUPPLY")}),
        Return("$RESULT"),
    });
}

/// One service of the management add-in: a bit of the support configuration.
struct FeatureRow {
    const char* key;
    const char* filter;
    const char* mask;
};
constexpr FeatureRow features[] = {
    {"GET://BMC/INFO/ZRA/KVM", "GET://BMC/INFO/SUPPORT_BYTE1", "1"},
    {"GET://BMC/INFO/ZRA/MEDIA_REDIRECTION", "GET://BMC/INFO/SUPPORT_BYTE1", "2"},
    {"GET://BMC/INFO/ZRA/HTTP", "GET://BMC/INFO/SUPPORT_BYTE1", "4"},
    {"GET://BMC/INFO/ZRA/HTTPS", "GET://BMC/INFO/SUPPORT_BYTE1", "8"},
    {"GET://BMC/INFO/ZRA/TELNET", "GET://BMC/INFO/SUPPORT_BYTE1", "10"},
    {"GET://BMC/INFO/ZRA/SMASHCLP_LITE", "GET://BMC/INFO/SUPPORT_BYTE1", "20"},
    {"GET://BMC/INFO/ZRA/WSMAN_CIMOM", "GET://BMC/INFO/SUPPORT_BYTE1", "40"},
    {"GET://BMC/INFO/ZRA/SNMP", "GET://BMC/INFO/SUPPORT_BYTE1", "80"},
    {"GET://BMC/INFO/ZRA/SMTP", "GET://BMC/INFO/SUPPORT_BYTE2", "1"},
    {"GET://BMC/INFO/ZRA/LDAP", "GET://BMC/INFO/SUPPORT_BYTE2", "2"},
    {"GET://BMC/INFO/ZRA/BMC_DHCP_ARP", "GET://BMC/INFO/SUPPORT_BYTE2", "4"},
};

/// Throws unless the add-in is fitted; the answer that says so stays in $BUFFER.
Steps assertAddIn()
{
    return script({
        send("GET://BMC/INFO/ADD_IN_SUPPORT"),
        If("$COMPLETION_CODE != 0", {Throw("ERROR_ZRA_NOT_PRESENT")}),
        readField("GET://BMC/INFO/ADD_IN_SUPPORT", "$FITTED", "ERROR_ZRA_NOT_PRESENT"),
        Map("$FITTED", "MASK", "1", "$FITTED"),
        If("$FITTED == 0", {Throw("ERROR_ZRA_NOT_PRESENT")}),
    });
}

Script featureScript(const FeatureRow& row)
{
    return script({
        assertAddIn(),
        sendAndCheck("GET://BMC/INFO/ADV_SUP_CONFIG"),
        readField(row.filter, "$RESULT", "$COMPLETION_CODE"),
        Map("$RESULT", "MASK", row.mask, "$RESULT"),
        LookupTable("$RESULT", "GET://BMC/INFO/FEATURE", "$RESULT"),
        Return("$RESULT"),
    });
}

void addAddIn(Stores& stores)
{
    addTemplate(stores, "GET://BMC/INFO/ZRA",
                branch({"VERSION", "DETAILS", "KVM", "MEDIA_REDIRECTION", "HTTP", "HTTPS", "TELNET", "SMASHCLP_LITE",
                        "WSMAN_CIMOM", "SNMP", "SMTP", "LDAP", "BMC_DHCP_ARP"}));
    for (const FeatureRow& row : features)
        addTemplate(stores, row.key, featureScript(row));
    addTemplate(stores, "GET://BMC/INFO/ZRA/DETAILS", script({assertAddIn(), joinData("$RESULT"), Return("$RESULT")}));

    // The second key ends in a blank; it is told apart from the first, and kept.
    for (const char* key : {"GET://BMC/INFO/ZRA/VERSION", "GET://BMC/INFO/ZRA_VERSION "})
        addTemplate(stores, key,
                    script({
                        assertAddIn(),
                        returnVersion("GET://BMC/INFO/ZRA/VERSION_MAJOR", "GET://BMC/INFO/ZRA/VERSION_MINOR",
                                      "ERROR_ZRA_NOT_PRESENT"),
                    }));
}

} // namespace infoOem

void addOemInfo(Stores& stores)
{
    using namespace infoOem;
    addConstants(stores, constants);
    addPackets(stores, packets);
    addFilters(stores, filters);
    addOemTables(stores);
    addReads(stores, reads);
    for (const ControllerVersionRow& row : controllerVersions)
        addTemplate(stores, row.key, script({returnVersionIfPresent(row), Throw(row.error)}));
    addTemplate(stores, "GET://BMC/INFO/BUFFER_SIZE", branch({"KCS", "IPMB"}));
    addTemplate(stores, "GET://BMC/INFO/HSCVERSION", hotSwapVersionScript());
    addTemplate(stores, "GET://BMC/INFO/PMBUSREVISION", pmbusRevisionScript());
    addAddIn(stores);
}

} // namespace Module::BMCConfig

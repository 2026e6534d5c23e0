#include "modules/bmc/catalogue/LanAreas.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// Alert destinations (IPMI 2.0, table 23-4): parameter 17 has their number, 18 how each is alerted, 19 where it is. All
// three go by one packet, whose selectors the scripts set.

namespace Module::BMCConfig {

using namespace steps;

namespace lanAlerts {

constexpr char path[] = "LAN[]/ALERT/DESTINATION[]", packet[] = "LAN[]/ALERT/IP", count[] = "11", type[] = "12",
               address[] = "13";

constexpr TextRow constants[] = {
    {"$/LAN/ALERT/DESTINATION", "01"},
    {"$/LAN/ALERT/SELECTOR", address},
};

constexpr PacketRow packets[] = {
    {"GET://BMC/LAN[]/ALERT/IP", "GET_LAN_CONFIGURATION_PARAMETERS",
     "$LAN_NUMBER $/LAN/ALERT/SELECTOR $/LAN/ALERT/DESTINATION 00"},
    {"GET://BMC/LAN[]/ALERT/IPV6", "GET_LAN_CONFIGURATION_PARAMETERS", "$LAN_NUMBER 13 $DESTINATION_NUMBER 00"},
    {"SET://BMC/LAN[]/ALERT/IP", "SET_LAN_CONFIGURATION_PARAMETERS", "$LAN_NUMBER 13 $RECORD"},
    {"SET://BMC/LAN[]/ALERT/IPV6_SET_PACKET", "SET_LAN_CONFIGURATION_PARAMETERS", "$LAN_NUMBER 13 01 10 $IPV6"},
};

constexpr char ofDestination[] = "$/LAN/ALERT/SELECTOR 12, $/LAN/ALERT/DESTINATION $DESTINATION_NUMBER",
               whereDestination[] = "$/LAN/ALERT/SELECTOR 13, $/LAN/ALERT/DESTINATION $DESTINATION_NUMBER",
               isIpv4[] = "1 F0 0", isIpv6[] = "1 F0 10";

/// Destination 0 is the one for the session that is open now, which has no address of its own to keep.
constexpr Record recordAt(const char* given, unsigned size, const char* set, const char* kind)
{
    Record record = lanRecord(path, packet, set, size);
    record.given = given;
    record.subscripts = "DESTINATION 0 15";
    record.kind = kind;
    return record;
}

constexpr Field typeFields[] = {
    {.name = "ACKNOWLEDGE", .byte = 1, .codec = Codec::word, .mask = 0x80},
    {.name = "TYPE", .byte = 1, .codec = Codec::word, .mask = 0x07, .table = "LAN[]/ALERT/DESTINATION[]/TYPE"},
    {.name = "ACK_TIMEOUT", .byte = 2, .codec = Codec::number}, // seconds
    {.name = "NUM_RETRIES", .byte = 3, .codec = Codec::number, .mask = 0x07},
    {.name = "INFO", .count = 4},
};

constexpr Field addressFields[] = {
    {.name = "BACKUP_GATEWAY_STATE", .byte = 2, .codec = Codec::word, .mask = 0x01},
    {.name = "GATEWAY_SELECTOR",
     .byte = 2,
     .codec = Codec::word,
     .mask = 0x01,
     .table = "LAN[]/ALERT/DESTINATION[]/GATEWAY_SELECTOR"},
    {.name = "IP", .byte = 3, .count = 4, .codec = Codec::ip, .access = Access::read},
    {.name = "MAC",
     .byte = 7,
     .count = 6,
     .codec = Codec::mac,
     .access = Access::read,
     .getError = "ERROR_LAN_ALERT_DESTINATION_MAC_GET"},
    {.name = "SCF", .byte = 1, .count = 12}, // the number of the destination is the query's
};

constexpr Field ipv6[] = {{.name = "IPV6",
                           .byte = 2,
                           .count = 16,
                           .codec = Codec::ipv6,
                           .access = Access::read,
                           .getError = "ERROR_IPV6_DESTINATION_IP_GET"}};

/// The first destination, which is the only one that most boards use.
void addFirst(Stores& stores)
{
    Record first = recordAt("$/LAN/ALERT/SELECTOR 13, $/LAN/ALERT/DESTINATION 01", 13, packet, isIpv4);
    first.path = "LAN[]/ALERT";
    first.subscripts = "";
    constexpr Field ip[] = {{.name = "IP", .byte = 3, .count = 4, .codec = Codec::ip}};
    addFields(stores, first, ip);

    constexpr Field wholeIpv6{.name = "IPV6", .count = 16, .codec = Codec::ipv6};
    addTemplate(stores, "SET://BMC/LAN[]/ALERT/IPV6",
                script({prepare(first), encode("$IPV6", wholeIpv6),
                        sendOrThrow("SET://BMC/LAN[]/ALERT/IPV6_SET_PACKET", "ERROR_IPV6_DESTINATION_IP_SET")}));
}

/// Members from 1 on, as many as the BMC says.
Script readMembers()
{
    return script({
        Template("GET://BMC/LAN[]/ASSERT"),
        Copy(count, "$/LAN/ALERT/SELECTOR"),
        Copy("00", "$/LAN/ALERT/DESTINATION"),
        send("GET://BMC/LAN[]/ALERT/IP"),
        Copy("0", "$COUNT"),
        If("$COMPLETION_CODE == 0", {readCount("GET://BMC/LAN[]/ALERT/DESTINATION", "0F")}),
        // a BMC without alerts has no such parameter, and no destinations
        If("$COMPLETION_CODE != 0 AND $BMC_COMPLETION_CODE != 128", {Throw("$COMPLETION_CODE")}),
        returnMembers("DESTINATION", "1", "$COUNT"),
    });
}

} // namespace lanAlerts

void addLanAlerts(Stores& stores)
{
    using namespace lanAlerts;
    addConstants(stores, constants);
    addPackets(stores, packets);
    addTable(stores, "GET://BMC/LAN[]/ALERT/DESTINATION[]/TYPE", {{"0", "PET"}, {"6", "OEM_1"}, {"7", "OEM_2"}});
    const TablePair words[] = {
        {"GET://BMC/LAN[]/ALERT/DESTINATION[]/GATEWAY_SELECTOR",
         "SET://BMC/LAN[]/ALERT/DESTINATION[]/GATEWAY_SELECTOR",
         {{"0", "DEFAULT"}, {"1", "BACKUP"}}},
    };
    addTables(stores, words);
    addFilter(stores, "GET://BMC/LAN[]/ALERT/DESTINATION", "2");
    constexpr BranchRow branches[] = {
        {"GET://BMC/LAN[]/ALERT", "DESTINATION"},
        {"GET://BMC/LAN[]/ALERT/DESTINATION[]",
         "TYPE ACKNOWLEDGE ACK_TIMEOUT NUM_RETRIES GATEWAY_SELECTOR BACKUP_GATEWAY_STATE IP MAC IPV6"},
    };
    addBranches(stores, branches);
    addTemplate(stores, "GET://BMC/LAN[]/ALERT/DESTINATION", readMembers());

    addFields(stores, recordAt(ofDestination, 4, nullptr, nullptr), typeFields);
    addFields(stores, recordAt(whereDestination, 13, packet, isIpv4), addressFields);
    Record sixth = recordAt("", 18, nullptr, isIpv6);
    sixth.get = "LAN[]/ALERT/IPV6";
    addFields(stores, sixth, ipv6);
    addFirst(stores);
}

} // namespace Module::BMCConfig

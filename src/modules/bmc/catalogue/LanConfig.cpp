#include "modules/bmc/catalogue/ChannelSteps.hpp"
#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/LanAreas.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// A LAN channel's addresses and what they need (IPMI 2.0, table 23-4).

namespace Module::BMCConfig {

using namespace steps;

namespace lanConfig {

constexpr Parameter parameters[] = {
    {.name = "ARPINTERVAL", .selector = "0B"}, // in steps of half a second
    {.name = "BACKUPGATEWAYIP",
     .selector = "0E",
     .size = 4,
     .codec = Codec::ip,
     .getError = "ERROR_LAN_GET_BACKUPGATEWAYIP",
     .setError = "ERROR_LAN_SET_BACKUPGATEWAYIP"},
    {.name = "BACKUPGATEWAYMAC",
     .selector = "0F",
     .size = 6,
     .codec = Codec::mac,
     .getError = "ERROR_LAN_GET_BACKUPGATEWAYMAC",
     .setError = "ERROR_LAN_SET_BACKUPGATEWAYMAC"},
    {.name = "COMMUNITYSTRING",
     .selector = "10",
     .size = 18,
     .codec = Codec::text,
     .getError = "ERROR_LAN_GET_COMMUNITY_STRING",
     .setError = "ERROR_LAN_SET_COMMUNITY_STRING"},
    {.name = "DEFAULTGATEWAYIP",
     .selector = "0C",
     .size = 4,
     .codec = Codec::ip,
     .getError = "ERROR_LAN_DEFAULTGATEWAYIP_GET",
     .setError = "ERROR_LAN_DEFAULTGATEWAYIP_SET",
     .packet = "GATEWAYIP"},
    {.name = "DEFAULTGATEWAYMAC",
     .selector = "0D",
     .size = 6,
     .codec = Codec::mac,
     .getError = "ERROR_LAN_DEFAULTGATEWAYMAC_GET",
     .setError = "ERROR_INVALID_GATEWAY_DATA",
     .packet = "GATEWAYMAC"},
    {.name = "IP",
     .selector = "03",
     .size = 4,
     .codec = Codec::ip,
     .getError = "ERROR_LAN_IP_GET",
     .setError = nullptr},
    {.name = "IPTYPE",
     .selector = "04",
     .codec = Codec::word,
     .getError = "ERROR_LAN_IPTYPE_GET",
     .setError = "ERROR_LAN_IPTYPE_SET",
     .table = "LAN/IPTYPE"},
    {.name = "MAC",
     .selector = "05",
     .size = 6,
     .codec = Codec::mac,
     .getError = "ERROR_LAN_MAC_GET",
     .setError = nullptr},
    {.name = "SUBNETMASK",
     .selector = "06",
     .size = 4,
     .codec = Codec::ip,
     .getError = "ERROR_LAN_GET_SUBNETMASK",
     .setError = "ERROR_LAN_SET_SUBNETMASK"},
};

/// Parameter 10: ARP responses and gratuitous ARP are two bits of one byte.
void addArp(Stores& stores)
{
    addParameterPackets(stores, lanParameters, "LAN[]/ARPRESPONSE", "0A", nullptr);
    addParameterPackets(stores, lanParameters, "LAN[]/GRATUITOUSARP", "0A", nullptr);
    addPacket(stores, "SET://BMC/LAN[]/ARP", lanParameters.setCommand, "$LAN_NUMBER 0A $RECORD");
    constexpr Field response[] = {{.name = "ARPRESPONSE", .codec = Codec::word, .mask = 0x02}};
    addFields(stores, lanRecord("LAN[]", "LAN[]/ARPRESPONSE", "LAN[]/ARP", 1), response);
    constexpr Field gratuitous[] = {{.name = "GRATUITOUSARP", .codec = Codec::word, .mask = 0x01}};
    addFields(stores, lanRecord("LAN[]", "LAN[]/GRATUITOUSARP", "LAN[]/ARP", 1), gratuitous);
}

/// Whether the address comes from a server; and the two sources by name, whose value does not count.
void addSource(Stores& stores)
{
    constexpr const char* command = lanParameters.setCommand;
    addPacket(stores, "SET://BMC/LAN[]/DHCP", command, "$LAN_NUMBER 04 02");
    addPacket(stores, "SET://BMC/LAN[]/STATIC", command, "$LAN_NUMBER 04 01");
    addPacket(stores, "SET://BMC/LAN[]/IPTYPE_IPV4", command, "$LAN_NUMBER 04 $IPTYPE_STATUS");
    addTable(stores, "GET://BMC/LAN[]/IPTYPE_STATUS", {{"1", "DISABLE"}, {"2", "ENABLE"}, {"3", "DISABLE"}});
    addTable(stores, "SET://BMC/LAN[]/IPTYPE_STATUS", {{"DISABLE", "1"}, {"ENABLE", "2"}});
    constexpr Field status[] = {{.name = "IPTYPE_STATUS",
                                 .codec = Codec::word,
                                 .table = "LAN[]/IPTYPE_STATUS",
                                 .getError = "ERROR_LAN_IPTYPE_GET",
                                 .setError = "ERROR_LAN_IPTYPE_SET"}};
    addFields(stores, lanRecord("LAN[]", "LAN[]/IPTYPE", "LAN[]/IPTYPE_IPV4", 1), status);
    for (const char* key : {"SET://BMC/LAN[]/DHCP", "SET://BMC/LAN[]/STATIC"})
        addTemplate(stores, key,
                    script({Template("GET://BMC/LAN[]/ASSERT"), sendOrThrow(key, "ERROR_LAN_IPTYPE_SET")}));
}

/// The address counts as set when the BMC reports it.
Script setIp()
{
    const Field address{.name = "IP", .count = 4, .codec = Codec::ip};
    return script({
        Template("GET://BMC/LAN[]/ASSERT"),
        Copy("$IP", "$/LAN/IP"),
        encode("$IP", address),
        send("SET://BMC/LAN[]/IP"),
        If("$COMPLETION_CODE != 0", {Throw("ERROR_LAN_IP_SET")}),
        waitFor("GET://BMC/LAN[]/IP", "$/LAN/IP", "ERROR_LAN_IP_SET"),
        returnText("SUCCESS"),
    });
}

void addLists(Stores& stores)
{
    addTable(stores, "GET://BMC/LAN/CHANNELS", {{"4", "LAN"}, {"6", "LAN"}}); // of the media, IPMI 2.0, table 6-3
    const Steps channels = findChannels("GET://BMC/LAN/CHANNELS", "LAN");
    addTemplate(stores, "GET://BMC/LAN", script({channels, Return("$MEMBERS")}));
    for (const char* key : {"GET://BMC/LAN/CHANNELS", "GET://BMC/LAN[@INDEXES]"})
        addTemplate(stores, key, script({channels, Join("$CHANNELS", ":SPACE", "$RESULT"), Return("$RESULT")}));
    constexpr BranchRow branches[] = {
        {"GET://BMC/LAN[]",
         "IPTYPE IP SUBNETMASK MAC DEFAULTGATEWAYIP DEFAULTGATEWAYMAC BACKUPGATEWAYIP BACKUPGATEWAYMAC COMMUNITYSTRING "
         "ARPRESPONSE GRATUITOUSARP ARPINTERVAL IPV6STATUS IPV6SOURCE IPV6 IPV6PREFIXLENGTH IPV6_GATEWAYIP "
         "AUTHENTICATIONTYPE ALERT"},
    };
    addBranches(stores, branches);
    addTemplate(stores, "GET://BMC/LAN[]/ASSERT", script({assertSubscript("LAN", 1, 14), returnText("SUCCESS")}));
}

} // namespace lanConfig

LanConfig::LanConfig(Stores& stores)
{
    using namespace lanConfig;
    const TablePair words[] = {
        {"GET://BMC/LAN/IPTYPE",
         "SET://BMC/LAN/IPTYPE",
         {{"1", "STATIC"}, {"2", "DHCP"}, {"3", "BIOS"}, {"4", "UNDEFINED"}}},
    };
    addTables(stores, words);
    addParameters(stores, lanParameters, parameters);
    addArp(stores);
    addSource(stores);
    addLists(stores);
    addLanAlerts(stores);
    addLanAuthentication(stores);
    addLanIpv6(stores);
    addLanOem(stores);
    constexpr Field raw[] = {{.name = "IP", .count = 4, .getError = "ERROR_LAN_IP_GET"}};
    addFields(stores, lanRecord("LAN[]/RAW", "LAN[]/IP", nullptr, 4), raw);
    addPacket(stores, "SET://BMC/LAN[]/IP", lanParameters.setCommand, "$LAN_NUMBER 03 $IP");
    addTemplate(stores, "SET://BMC/LAN[]/IP", setIp());
    addConfigure(stores, "LAN[]", "LAN[]/CONFIGURE", "IPTYPE IP SUBNETMASK DEFAULTGATEWAYIP");
    addProfile(stores, "LAN[]", "LAN[]/SCF",
               "IPTYPE IP SUBNETMASK DEFAULTGATEWAYIP DEFAULTGATEWAYMAC BACKUPGATEWAYIP BACKUPGATEWAYMAC "
               "COMMUNITYSTRING ARPRESPONSE GRATUITOUSARP ARPINTERVAL IPV6STATUS IPV6SOURCE IPV6 IPV6PREFIXLENGTH "
               "IPV6_GATEWAYIP");
}

} // namespace Module::BMCConfig

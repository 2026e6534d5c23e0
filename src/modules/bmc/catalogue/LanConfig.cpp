#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/LanAreas.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// A LAN channel's addresses and what they need (IPMI 2.0, table 23-4).

namespace Module::BMCConfig {

using namespace steps;

namespace {

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

} // namespace

LanConfig::LanConfig(Stores& stores)
{
    const TablePair words[] = {
        {"GET://BMC/LAN/IPTYPE",
         "SET://BMC/LAN/IPTYPE",
         {{"1", "STATIC"}, {"2", "DHCP"}, {"3", "BIOS"}, {"4", "UNDEFINED"}}},
    };
    addTables(stores, words);
    addParameters(stores, lanParameters, parameters);
    addLanAuthentication(stores);

    addTemplate(stores, "GET://BMC/LAN[]/ASSERT", script({assertSubscript("LAN", 1, 14), returnText("SUCCESS")}));
}

} // namespace Module::BMCConfig

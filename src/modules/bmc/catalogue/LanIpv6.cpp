#include "modules/bmc/catalogue/LanAreas.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// IPv6 of a LAN channel (IPMI 2.0 with errata 7, table 23-4, parameters 51, 56 and 65). Source, address and length of
// the prefix are bytes of the first static address; while that is off, the BMC finds addresses by itself.

namespace Module::BMCConfig {

namespace lanIpv6 {

constexpr char staticAddress[] = "38", router[] = "41", enables[] = "33";

constexpr Parameter parameters[] = {
    {.name = "IPV6STATUS",
     .selector = enables,
     .codec = Codec::word,
     .getError = "ERROR_IPV6_STATUS_GET",
     .setError = "ERROR_IPV6_STATUS_SET",
     .table = "LAN[]/IPV6STATUS"},
};

constexpr Field source = {.name = "IPV6SOURCE",
                          .byte = 1,
                          .codec = Codec::word,
                          .mask = 0x80,
                          .table = "LAN[]/IPV6SOURCE",
                          .getError = "ERROR_IPV6_SOURCE_GET",
                          .setError = "ERROR_IPV6_SOURCE_SET"};
constexpr Field address = {.name = "IPV6",
                           .byte = 2,
                           .count = 16,
                           .codec = Codec::ipv6,
                           .getError = "ERROR_IPV6_IP_GET",
                           .setError = "ERROR_IPV6_IP_SET"};
constexpr Field prefix = {.name = "IPV6PREFIXLENGTH",
                          .byte = 18,
                          .codec = Codec::number,
                          .high = 128,
                          .getError = "ERROR_IPV6_PREFIX_LENGTH_GET",
                          .setError = "ERROR_IPV6_PREFIX_LENGTH_SET",
                          .rangeError = "ERROR_IPV6_PREFIX_LENGTH_EXCEEDED"};
constexpr Field gateway = {.name = "IPV6_GATEWAYIP",
                           .count = 16,
                           .codec = Codec::ipv6,
                           .getError = "ERROR_IPV6_GATEWAY_IP_GET",
                           .setError = "ERROR_IPV6_GATEWAY_IP_SET"};

/// The setting under packets of its own.
void addSetting(Stores& stores, const Field& field, const char* selector, const char* get, const char* set,
                unsigned size)
{
    const std::string subject = std::string(lanParameters.subject) + " " + selector;
    addPacket(stores, std::string("GET://BMC/") + get, lanParameters.getCommand, subject + " 00 00");
    addPacket(stores, std::string("SET://BMC/") + set, lanParameters.setCommand, subject + " $RECORD");
    addFields(stores, lanRecord(lanParameters.path, get, set, size), {&field, 1});
}

} // namespace lanIpv6

void addLanIpv6(Stores& stores)
{
    using namespace lanIpv6;
    addTable(stores, "GET://BMC/LAN[]/IPV6STATUS", {{"0", "DISABLE"}, {"1", "ENABLE"}, {"2", "ENABLE"}});
    addTable(stores, "SET://BMC/LAN[]/IPV6STATUS", {{"DISABLE", "0"}, {"ENABLE", "2"}}); // beside IPv4
    const TablePair words[] = {
        {"GET://BMC/LAN[]/IPV6SOURCE", "SET://BMC/LAN[]/IPV6SOURCE", {{"0", "DYNAMIC"}, {"1", "STATIC"}}},
    };
    addTables(stores, words);
    addParameters(stores, lanParameters, parameters);

    constexpr unsigned addressBytes = 19, routerBytes = 16;
    addSetting(stores, source, staticAddress, "LAN[]/IPV6SOURCE", "LAN[]/IPV6SOURCE", addressBytes);
    addSetting(stores, address, staticAddress, "LAN[]/IPV6_PACKET", "LAN[]/IPV6_SET_PACKET", addressBytes);
    addSetting(stores, prefix, staticAddress, "LAN[]/IPV6PREFIXLENGTH", "LAN[]/IPV6PREFIXLENGTH", addressBytes);
    addSetting(stores, gateway, router, "LAN[]/IPV6_GATEWAYIP_PACKET", "LAN[]/IPV6_GATEWAY_IP_SET_PACKET", routerBytes);
}

} // namespace Module::BMCConfig

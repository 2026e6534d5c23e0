#include "modules/bmc/catalogue/LanAreas.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// The manufacturer's own of the LAN. No public document has the numbers of these commands and parameters nor the
// meaning of all their bytes: what is read is given as it came, and what is written needs the caller's word (FORCE). A
// caller may give another parameter number and channel under the names without "$/LAN/OEM/", hexadecimal.

namespace Module::BMCConfig {

using namespace steps;

namespace lanOem {

/// Parameters from C0h on are the manufacturer's (IPMI 2.0, table 23-4).
constexpr TextRow constants[] = {
    {"$/LAN/OEM/CHANNEL", "01"},
    {"$/LAN/OEM/HOSTNAME_PARAMETER", "C3"},
    {"$/LAN/OEM/SMTP_PARAMETER", "C4"},
};

constexpr PacketRow packets[] = {
    {"GET://BMC/LAN/DHCP_HOSTNAME", "GET_LAN_CONFIGURATION_PARAMETERS",
     "$/LAN/OEM/CHANNEL $/LAN/OEM/HOSTNAME_PARAMETER 00 00"},
    {"GET://BMC/LAN/FAILOVERMODE", "GET_LAN_FAILOVER_MODE"},
    {"GET://BMC/LAN/RESOLVE_MAC_ADDRESS", "RESOLVE_MAC_ADDRESS", "$IP"},
    {"GET://BMC/LAN/SMTPCONFIG", "GET_LAN_CONFIGURATION_PARAMETERS",
     "$/LAN/OEM/CHANNEL $/LAN/OEM/SMTP_PARAMETER 00 00"},
    {"SET://BMC/LAN/DHCP_HOSTNAME", "SET_LAN_CONFIGURATION_PARAMETERS",
     "$/LAN/OEM/CHANNEL $/LAN/OEM/HOSTNAME_PARAMETER $DHCP_HOSTNAME"},
    {"SET://BMC/LAN/FAILOVERMODE", "SET_LAN_FAILOVER_MODE", "$FAILOVERMODE"},
    {"SET://BMC/LAN/SMTPCONFIG", "SET_LAN_CONFIGURATION_PARAMETERS",
     "$/LAN/OEM/CHANNEL $/LAN/OEM/SMTP_PARAMETER $SMTPCONFIG"},
};

constexpr Field mode{.name = "FAILOVERMODE", .codec = Codec::word};
constexpr Field address{.name = "RESOLVE_MAC_ADDRESS", .count = 6, .codec = Codec::mac};

Steps takeParameter(const char* symbol)
{
    return script({take("$/LAN/OEM/CHANNEL"), take(symbol)});
}

/// What stands behind the parameter's revision, as a list in $FIELD.
Steps readData(const char* packet)
{
    return script({
        sendAndCheck(packet),
        Split("$BUFFER", ":SPACE", "$FIELD"),
        Read("$FIELD", "2-SIZE", "$FIELD"),
        Size("$FIELD", "$SIZE"),
        If("$SIZE == 0", {Throw("IPMI_RESPONSE_ERROR")}),
    });
}

Script readFailover()
{
    return script({
        send("GET://BMC/LAN/FAILOVERMODE"),
        If("$COMPLETION_CODE == RESPONSE_ERROR_INVALID_COMMAND", {Throw("ERROR_LAN_FAILOVER_NOT_SUPPORTED")}),
        If("$COMPLETION_CODE != 0", {Throw("ERROR_LAN_FAILOVER_STATUS")}),
        readField("GET://BMC/LAN/FAILOVERMODE", "$FIELD", "ERROR_LAN_FAILOVER_STATUS"),
        decode(mode),
        Return("$RESULT"),
    });
}

/// The address of a machine on the BMC's network; the caller gives its IP.
Script resolveAddress()
{
    constexpr Field ip{.name = "IP", .count = 4, .codec = Codec::ip};
    return script({
        encode("$IP", ip),
        sendAndCheck("GET://BMC/LAN/RESOLVE_MAC_ADDRESS"),
        readField("GET://BMC/LAN/RESOLVE_MAC_ADDRESS", "$FIELD", "$COMPLETION_CODE"),
        decode(address),
        Return("$RESULT"),
    });
}

/// Names of up to 63 characters (RFC 1123), ended by a zero.
Script writeHostname()
{
    return script({
        requireForce(),
        takeParameter("$/LAN/OEM/HOSTNAME_PARAMETER"),
        require("$DHCP_HOSTNAME"),
        Assert("$DHCP_HOSTNAME", "STR_SIZE_CHECK", "63", "$ASSERT_VALUE"),
        Map("$DHCP_HOSTNAME", "STR2HEX", "$DHCP_HOSTNAME"),
        If("$DHCP_HOSTNAME == ERROR", {refuse("$DHCP_HOSTNAME")}),
        Append("0", "$DHCP_HOSTNAME"),
        sendOrThrow("SET://BMC/LAN/DHCP_HOSTNAME", "$COMPLETION_CODE"),
    });
}

Script writeSmtp()
{
    return script({
        requireForce(),
        takeParameter("$/LAN/OEM/SMTP_PARAMETER"),
        encodeBytes("$SMTPCONFIG"),
        sendOrThrow("SET://BMC/LAN/SMTPCONFIG", "$COMPLETION_CODE"),
    });
}

} // namespace lanOem

void addLanOem(Stores& stores)
{
    using namespace lanOem;
    addConstants(stores, constants);
    addPackets(stores, packets);
    addFilter(stores, "GET://BMC/LAN/FAILOVERMODE", "1");
    addFilter(stores, "GET://BMC/LAN/RESOLVE_MAC_ADDRESS", "1 2 3 4 5 6");
    addTemplate(stores, "GET://BMC/LAN/DHCP_HOSTNAME",
                script({takeParameter("$/LAN/OEM/HOSTNAME_PARAMETER"), readData("GET://BMC/LAN/DHCP_HOSTNAME"),
                        decode({.name = "DHCP_HOSTNAME", .codec = Codec::text}), Return("$RESULT")}));
    addTemplate(stores, "GET://BMC/LAN/SMTPCONFIG",
                script({takeParameter("$/LAN/OEM/SMTP_PARAMETER"), readData("GET://BMC/LAN/SMTPCONFIG"),
                        decode({.name = "SMTPCONFIG"}), Return("$RESULT")}));
    addTemplate(stores, "GET://BMC/LAN/FAILOVERMODE", readFailover());
    addTemplate(stores, "GET://BMC/LAN/RESOLVE_MAC_ADDRESS", resolveAddress());
    addTemplate(stores, "SET://BMC/LAN/DHCP_HOSTNAME", writeHostname());
    addTemplate(stores, "SET://BMC/LAN/FAILOVERMODE",
                script({requireForce(), encode("$FAILOVERMODE", mode),
                        sendOrThrow("SET://BMC/LAN/FAILOVERMODE", "ERROR_LAN_FAILOVER_SET_FAILED")}));
    addTemplate(stores, "SET://BMC/LAN/SMTPCONFIG", writeSmtp());
}

} // namespace Module::BMCConfig

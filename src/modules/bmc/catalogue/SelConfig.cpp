#include "ipmi/Codes.hpp"
#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

// The system event log: its state, its records one by one, and its erasure. The extended commands are the
// manufacturer's own, for boards whose records are longer.

namespace Module::BMCConfig {

using namespace steps;

namespace {

constexpr TextRow constants[] = {
    {"$/SEL/BYTES_TO_READ", "FF"},
};

constexpr CodeConstant codes[] = {
    {"$/SEL/CLEAR_CMD", ipmi::cmd::clearSel},
    {"$/SEL/EXTENDED_ALLOCATION_INFO_CMD", ipmi::cmd::extendedSelAllocationInfo},
    {"$/SEL/EXTENDED_ENTRY_CMD", ipmi::cmd::extendedSelEntry},
    {"$/SEL/EXTENDED_INFO_CMD", ipmi::cmd::extendedSelInfo},
    {"$/SEL/GET_ENTRY_CMD", ipmi::cmd::getSelEntry},
    {"$/SEL/GET_INFO_CMD", ipmi::cmd::getSelInfo},
    {"$/SEL/GET_TIME_CMD", ipmi::cmd::getSelTime},
    {"$/SEL/RESERVE_CMD", ipmi::cmd::reserveSel},
};

constexpr TextRow packets[] = {
    {"GET://BMC/SEL/EXTENDED_ALLOCATION_INFO",
     "$/BMC/BASE_ADDRESS $/IPMI/ORVEL_PLATFORM_APP 00 $/SEL/EXTENDED_ALLOCATION_INFO_CMD"},
    {"GET://BMC/SEL/EXTENDED_ENTRY", "$/BMC/BASE_ADDRESS $/IPMI/ORVEL_PLATFORM_APP 00 $/SEL/EXTENDED_ENTRY_CMD "
                                     "$/SEL/RESERVATION_LS $/SEL/RESERVATION_MS $/SEL/GET_SEL_ENTRY_LS "
                                     "$/SEL/GET_SEL_ENTRY_MS 00 $/SEL/BYTES_TO_READ"},
    {"GET://BMC/SEL/EXTENDED_INFO", "$/BMC/BASE_ADDRESS $/IPMI/ORVEL_PLATFORM_APP 00 $/SEL/EXTENDED_INFO_CMD"},
    {"GET://BMC/SEL/INFO", "$/BMC/BASE_ADDRESS $/IPMI/STORAGE_NET_FUNCTION 00 $/SEL/GET_INFO_CMD"},
    {"GET://BMC/SEL/RECORD", "$/BMC/BASE_ADDRESS $/IPMI/STORAGE_NET_FUNCTION 00 $/SEL/GET_ENTRY_CMD "
                             "$/SEL/RESERVATION_LS $/SEL/RESERVATION_MS $/SEL/GET_SEL_ENTRY_LS "
                             "$/SEL/GET_SEL_ENTRY_MS 00 FF"},
    {"GET://BMC/SEL/RESERVE", "$/BMC/BASE_ADDRESS $/IPMI/STORAGE_NET_FUNCTION 00 $/SEL/RESERVE_CMD"},
    {"GET://BMC/SEL/TIME", "$/BMC/BASE_ADDRESS $/IPMI/STORAGE_NET_FUNCTION 00 $/SEL/GET_TIME_CMD"},
    {"SET://BMC/SEL/CLEAR", "$/BMC/BASE_ADDRESS $/IPMI/STORAGE_NET_FUNCTION 00 $/SEL/CLEAR_CMD "
                            "$/SEL/RESERVATION_LS $/SEL/RESERVATION_MS 43 4C 52 AA"},
};

/// The high byte first, as a reader writes numbers.
constexpr TextRow filters[] = {
    {"GET://BMC/SEL/TIME", "4 3 2 1"},
};

/// All data of the answer as one text; what it means is the handler's affair, or the caller's where the layout is the
/// manufacturer's own.
Script readData(const char* packet)
{
    return script({
        send(packet),
        If("$COMPLETION_CODE != 0", {Throw("$COMPLETION_CODE")}),
        joinData("$RESULT"),
        Return("$RESULT"),
    });
}

/// The whole answer, completion code first: whether to ask again is the handler's affair. "CC" stands for none at all.
Script readAnswer(const char* packet)
{
    return script({
        IPMI_Without_Throw(packet, "$BUFFER"),
        Return("$BUFFER"),
    });
}

/// Begins a walk. Whole records are read without a reservation, which would have to be renewed whenever another reader
/// takes one; a BMC that wants one all the same says so (IPMI 2.0, 31.5).
Script beginWalk()
{
    return script({
        Copy("00", "$/SEL/RESERVATION_LS"),
        Copy("00", "$/SEL/RESERVATION_MS"),
        returnText("SUCCESS"),
    });
}

/// The log's clock, in seconds since 1970.
Script readTime()
{
    return script({
        send("GET://BMC/SEL/TIME"),
        If("$COMPLETION_CODE != 0", {Throw("$COMPLETION_CODE")}),
        readField("GET://BMC/SEL/TIME", "$NUMBER", "$COMPLETION_CODE"),
        Prepend("$NUMBER", "0", "2", "$NUMBER"),
        Flatten("$NUMBER", "$NUMBER"),
        Map("$NUMBER", "HEX2DEC", "$RESULT"),
        Return("$RESULT"),
    });
}

Script clear()
{
    return script({
        Template("GET://BMC/SEL/RESERVE"),
        sendOrThrow("SET://BMC/SEL/CLEAR", "ERROR_SEL_CLEAR"),
    });
}

} // namespace

SelConfig::SelConfig(Stores& stores)
{
    addConstants(stores, constants);
    addConstants(stores, codes);
    addPackets(stores, packets);
    addFilters(stores, filters);
    addTemplate(stores, "GET://BMC/SEL", beginWalk());
    addTemplate(stores, "GET://BMC/SEL/EXTENDED_ALLOCATION_INFO", readData("GET://BMC/SEL/EXTENDED_ALLOCATION_INFO"));
    addTemplate(stores, "GET://BMC/SEL/EXTENDED_INFO", readData("GET://BMC/SEL/EXTENDED_INFO"));
    addTemplate(stores, "GET://BMC/SEL/EXTENDED_RECORD", readAnswer("GET://BMC/SEL/EXTENDED_ENTRY"));
    addTemplate(stores, "GET://BMC/SEL/INFO", readData("GET://BMC/SEL/INFO"));
    addTemplate(stores, "GET://BMC/SEL/RECORD", readAnswer("GET://BMC/SEL/RECORD"));
    addTemplate(stores, "GET://BMC/SEL/RESERVE", readAnswer("GET://BMC/SEL/RESERVE"));
    addTemplate(stores, "GET://BMC/SEL/TIME", readTime());
    addTemplate(stores, "SET://BMC/SEL/CLEAR", clear());
}

} // namespace Module::BMCConfig

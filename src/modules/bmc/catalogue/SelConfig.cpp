#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

// The system event log: its state, its records one by one, and its erasure. The extended commands are the
// manufacturer's own, for boards whose records are longer.

namespace Module::BMCConfig {

using namespace steps;

namespace selConfig {

constexpr TextRow constants[] = {
    {"$/SEL/BYTES_TO_READ", "FF"},
};

constexpr PacketRow packets[] = {
    {"GET://BMC/SEL/EXTENDED_ALLOCATION_INFO", "EXTENDED_SEL_ALLOCATION_INFO"},
    {"GET://BMC/SEL/EXTENDED_ENTRY", "EXTENDED_SEL_ENTRY",
     "$/SEL/RESERVATION_LS $/SEL/RESERVATION_MS $/SEL/GET_SEL_ENTRY_LS $/SEL/GET_SEL_ENTRY_MS 00 $/SEL/BYTES_TO_READ"},
    {"GET://BMC/SEL/EXTENDED_INFO", "EXTENDED_SEL_INFO"},
    {"GET://BMC/SEL/INFO", "GET_SEL_INFO"},
    {"GET://BMC/SEL/RECORD", "GET_SEL_ENTRY",
     "$/SEL/RESERVATION_LS $/SEL/RESERVATION_MS $/SEL/GET_SEL_ENTRY_LS $/SEL/GET_SEL_ENTRY_MS 00 FF"},
    {"GET://BMC/SEL/RESERVE", "RESERVE_SEL"},
    {"GET://BMC/SEL/TIME", "GET_SEL_TIME"},
    {"SET://BMC/SEL/CLEAR", "CLEAR_SEL", "$/SEL/RESERVATION_LS $/SEL/RESERVATION_MS 43 4C 52 AA"},
};

/// The log's clock, in seconds since 1970; the high byte first, as a reader writes numbers.
constexpr ReadRow reads[] = {
    {.key = "GET://BMC/SEL/TIME", .fields = "4 3 2 1", .isNumber = true},
};

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

Script clear()
{
    return script({
        Template("GET://BMC/SEL/RESERVE"),
        sendOrThrow("SET://BMC/SEL/CLEAR", "ERROR_SEL_CLEAR"),
    });
}

} // namespace selConfig

SelConfig::SelConfig(Stores& stores)
{
    using namespace selConfig;
    addConstants(stores, constants);
    addPackets(stores, packets);
    addReads(stores, reads);
    addTemplate(stores, "GET://BMC/SEL", beginWalk());
    addTemplate(stores, "GET://BMC/SEL/EXTENDED_ALLOCATION_INFO", returnData("GET://BMC/SEL/EXTENDED_ALLOCATION_INFO"));
    addTemplate(stores, "GET://BMC/SEL/EXTENDED_INFO", returnData("GET://BMC/SEL/EXTENDED_INFO"));
    addTemplate(stores, "GET://BMC/SEL/EXTENDED_RECORD", readAnswer("GET://BMC/SEL/EXTENDED_ENTRY"));
    addTemplate(stores, "GET://BMC/SEL/INFO", returnData("GET://BMC/SEL/INFO"));
    addTemplate(stores, "GET://BMC/SEL/RECORD", readAnswer("GET://BMC/SEL/RECORD"));
    addTemplate(stores, "GET://BMC/SEL/RESERVE", readAnswer("GET://BMC/SEL/RESERVE"));
    addTemplate(stores, "SET://BMC/SEL/CLEAR", clear());
}

} // namespace Module::BMCConfig

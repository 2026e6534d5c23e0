#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

// The sensor data record repository: its state, its records piece by piece, and the maker's configuration file of it.

namespace Module::BMCConfig {

using namespace steps;

namespace sdrConfig {

constexpr PacketRow packets[] = {
    {"GET://BMC/SDR/ALLOCATION_INFO", "$/SDR/ALLOCATION_INFO"},
    {"GET://BMC/SDR/CFG_READ", "$/SDR/CFG_READ_CMD", "$/SDR/CONTROL $/SDR/FILE_OFFSET $/SDR/FILE_LENGTH"},
    {"GET://BMC/SDR/RECORD", "$/SDR/GET_SDR",
     "$/SDR/RESERVATION_LS $/SDR/RESERVATION_MS $/SDR/ADDRESS_LS $/SDR/ADDRESS_MS $/SDR/OFFSET $/SDR/LEN"},
    {"GET://BMC/SDR/RESERVE", "RESERVE_SDR_REPOSITORY"},
    {"SET://BMC/SDR/ADD_PARTIAL", "$/SDR/PARTIAL_ADD",
     "$/SDR/RESERVATION_LS $/SDR/RESERVATION_MS $/SDR/RECORD_LS $/SDR/RECORD_MS $/SDR/RECORD_OFFSET "
     "$/SDR/PARTIAL_ADD_PROGRESS $/SDR/DATA"},
    {"SET://BMC/SDR/CFG_CONTROL", "$/SDR/CFG_CONTROL_CMD", "$/SDR/CONTROL"},
    {"SET://BMC/SDR/CFG_MANAGEMENT", "$/SDR/CFG_MANAGEMENT_CMD", "$/SDR/CONTROL"},
    {"SET://BMC/SDR/CFG_WRITE", "$/SDR/CFG_WRITE_CMD", "$/SDR/CONTROL $/SDR/FILE_OFFSET $/SDR/FILE_DATA"},
    {"SET://BMC/SDR/CFG_WRITE_LAST", "$/SDR/CFG_WRITE_CMD",
     "$/SDR/CONTROL 00 00 00 00 $/SDR/FILE_CRC32 $/SDR/FILE_TIMESTAMP"},
    {"SET://BMC/SDR/CLEAR", "$/SDR/CLEAR_CMD", "$/SDR/RESERVATION_LS $/SDR/RESERVATION_MS 43 4C 52 $/SDR/CLEAR"},
};

constexpr TextRow filters[] = {
    // Fields of answers.
    {"GET://BMC/SDR/INFO/VERSION", "1"},
    {"GET://BMC/SDR/RECORD_ID_LS", "1"},
    {"GET://BMC/SDR/RECORD_ID_MS", "2"},
    {"GET://BMC/SDR/RESERVATION_LS", "1"},
    {"GET://BMC/SDR/RESERVATION_MS", "2"},
    // Fields of a record.
    {"GET://BMC/SDR_RECORD", "0 1 2 3 4 5 6 7 8 9 10"},
    {"GET://BMC/SENSOR_DISCRETE_MASK_INDEX", "18"},
    {"GET://BMC/SENSOR_LINEAR_INDEX", "23"},
    {"GET://BMC/SENSOR_LUN", "6"},
    {"GET://BMC/SENSOR_NUMBER_INDEX", "7"},
    {"GET://BMC/SENSOR_OWNER", "5"},
    {"GET://BMC/SENSOR_READING_TYPE_INDEX", "13"},
    {"GET://BMC/SENSOR_TYPE_INDEX", "12"},
    {"GET://BMC/SENSOR_TYPE_INDEX_RECORD_THREE", "10"},
    {"GET://BMC/SENSOR_TYPE_RECORD", "3"},
};

constexpr const char* failure = "ERROR_SDR_REPOSITORY_EXCEPTION";

constexpr char info[] = "GET://BMC/SDR/ALLOCATION_INFO";

/// Numbers have the high byte first, as a reader writes them.
constexpr ReadRow reads[] = {
    {.key = "GET://BMC/SDR/INFO/FREESPACE", .error = failure, .packet = info, .fields = "5 4", .isNumber = true},
    {.key = "GET://BMC/SDR/INFO/NUMBER", .error = failure, .packet = info, .fields = "3 2", .isNumber = true},
    {.key = "GET://BMC/SDR/INFO/OP", .error = failure, .packet = info, .fields = "14"},
    {.key = "GET://BMC/SDR/INFO/RECENT_ADD_TIME",
     .error = failure,
     .packet = info,
     .fields = "9 8 7 6",
     .isNumber = true},
    {.key = "GET://BMC/SDR/INFO/RECENT_ERASE_TIME",
     .error = failure,
     .packet = info,
     .fields = "13 12 11 10",
     .isNumber = true},
};

Script readVersion()
{
    return script({
        send(info),
        If("$COMPLETION_CODE != 0", {Throw(failure)}),
        readField("GET://BMC/SDR/INFO/VERSION", "$VERSION", failure),
        returnBcdVersion("$VERSION"),
    });
}

/// Answers with the whole reply, and keeps the reservation for the steps that need one.
Script reserve()
{
    return script({
        send("GET://BMC/SDR/RESERVE"),
        If("$COMPLETION_CODE == 0",
           {
               IPMIResponse("$BUFFER", "GET://BMC/SDR/RESERVATION_LS", "$/SDR/RESERVATION_LS"),
               IPMIResponse("$BUFFER", "GET://BMC/SDR/RESERVATION_MS", "$/SDR/RESERVATION_MS"),
           }),
        Return("$BUFFER"),
    });
}

Script readPiece()
{
    return script({
        IPMI("GET://BMC/SDR/RECORD", "$BUFFER"),
        Return("$BUFFER"),
    });
}

/// The record id that the BMC gives is what the record's next part is added to.
Script addPartial()
{
    return script({
        require("$/SDR/RESERVATION_LS"),
        require("$/SDR/RESERVATION_MS"),
        takeRequired("$/SDR/RECORD_LS"),
        takeRequired("$/SDR/RECORD_MS"),
        takeRequired("$/SDR/RECORD_OFFSET"),
        takeRequired("$/SDR/PARTIAL_ADD_PROGRESS"),
        takeRequired("$/SDR/DATA"),
        send("SET://BMC/SDR/ADD_PARTIAL"),
        If("$COMPLETION_CODE != 0", {Throw(failure)}),
        readField("GET://BMC/SDR/RECORD_ID_LS", "$/SDR/RECORD_LS", failure),
        readField("GET://BMC/SDR/RECORD_ID_MS", "$/SDR/RECORD_MS", failure),
        returnText("SUCCESS"),
    });
}

/// Starts an erasure; the initiate byte is the caller's if it gives one ("00" asks how far the erasure is).
Script clear()
{
    return script({
        Copy("AA", "$/SDR/CLEAR"),
        takeRequired("$/SDR/CLEAR"),
        Template("GET://BMC/SDR/RESERVE"),
        If("$COMPLETION_CODE != 0", {Throw(failure)}),
        sendOrThrow("SET://BMC/SDR/CLEAR", failure),
    });
}

Script readFile()
{
    return script({
        takeRequired("$/SDR/CONTROL"),
        takeRequired("$/SDR/FILE_OFFSET"),
        takeRequired("$/SDR/FILE_LENGTH"),
        send("GET://BMC/SDR/CFG_READ"),
        If("$COMPLETION_CODE != 0", {Throw(failure)}),
        joinData("$RESULT"),
        Return("$RESULT"),
    });
}

} // namespace sdrConfig

SdrConfig::SdrConfig(Stores& stores)
{
    using namespace sdrConfig;
    addPackets(stores, packets);
    addFilters(stores, filters);
    addReads(stores, reads);
    addTemplate(stores, "GET://BMC/SDR/INFO",
                branch({"VERSION", "NUMBER", "FREESPACE", "RECENT_ADD_TIME", "RECENT_ERASE_TIME", "OP"}));
    addTemplate(stores, "GET://BMC/SDR/INFO/VERSION", readVersion());
    addTemplate(stores, "GET://BMC/SDR/CFG_READ", readFile());
    addTemplate(stores, "GET://BMC/SDR/READ", readPiece());
    addTemplate(stores, "GET://BMC/SDR/RESERVE", reserve());
    addTemplate(stores, "SET://BMC/SDR/ADD_PARTIAL", addPartial());
    addTemplate(stores, "SET://BMC/SDR/CFG_CONTROL",
                script({takeRequired("$/SDR/CONTROL"), sendOrThrow("SET://BMC/SDR/CFG_CONTROL", failure)}));
    addTemplate(stores, "SET://BMC/SDR/CFG_MANAGEMENT",
                script({takeRequired("$/SDR/CONTROL"), sendOrThrow("SET://BMC/SDR/CFG_MANAGEMENT", failure)}));
    addTemplate(stores, "SET://BMC/SDR/CFG_WRITE",
                script({takeRequired("$/SDR/CONTROL"), takeRequired("$/SDR/FILE_OFFSET"),
                        takeRequired("$/SDR/FILE_DATA"), sendOrThrow("SET://BMC/SDR/CFG_WRITE", failure)}));
    addTemplate(stores, "SET://BMC/SDR/CFG_WRITE_LAST",
                script({takeRequired("$/SDR/CONTROL"), takeRequired("$/SDR/FILE_CRC32"),
                        takeRequired("$/SDR/FILE_TIMESTAMP"), sendOrThrow("SET://BMC/SDR/CFG_WRITE_LAST", failure)}));
    addTemplate(stores, "SET://BMC/SDR/CLEAR", clear());
}

} // namespace Module::BMCConfig

#include "ipmi/Codes.hpp"
#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/SensorSteps.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

// The sensor data record repository: its state, its records piece by piece, and the maker's configuration file of it.

namespace Module::BMCConfig {

using namespace steps;

namespace {

constexpr CodeConstant constants[] = {
    {"$/SDR/ALLOCATION_INFO", ipmi::cmd::getSdrRepositoryInfo}, // Get SDR Repository Info, in spite of the name
    {"$/SDR/CFG_CONTROL_CMD", ipmi::cmd::controlSdrConfiguration},
    {"$/SDR/CFG_MANAGEMENT_CMD", ipmi::cmd::manageSdrConfiguration},
    {"$/SDR/CFG_READ_CMD", ipmi::cmd::readSdrConfiguration},
    {"$/SDR/CFG_WRITE_CMD", ipmi::cmd::writeSdrConfiguration},
    {"$/SDR/CLEAR_CMD", ipmi::cmd::clearSdrRepository},
    {"$/SDR/GET_SDR", ipmi::cmd::getSdr},
    {"$/SDR/PARTIAL_ADD", ipmi::cmd::partialAddSdr},
    {"$/SDR/REPOSITORY_ALLOCATION_INFO", ipmi::cmd::getSdrRepositoryAllocationInfo},
    {"$/SDR/RESERVE_REPOSITORY", ipmi::cmd::reserveSdrRepository},
};

constexpr TextRow packets[] = {
    {"GET://BMC/SDR/ALLOCATION_INFO", "$/BMC/BASE_ADDRESS $/IPMI/STORAGE_NET_FUNCTION 00 $/SDR/ALLOCATION_INFO"},
    {"GET://BMC/SDR/CFG_READ", "$/BMC/BASE_ADDRESS $/IPMI/ORVEL_GENERAL_APP 00 $/SDR/CFG_READ_CMD "
                               "$/SDR/CONTROL $/SDR/FILE_OFFSET $/SDR/FILE_LENGTH"},
    {"GET://BMC/SDR/RECORD", "$/BMC/BASE_ADDRESS $/IPMI/STORAGE_NET_FUNCTION 00 $/SDR/GET_SDR "
                             "$/SDR/RESERVATION_LS $/SDR/RESERVATION_MS $/SDR/ADDRESS_LS $/SDR/ADDRESS_MS "
                             "$/SDR/OFFSET $/SDR/LEN"},
    {"GET://BMC/SDR/RESERVE", "$/BMC/BASE_ADDRESS $/IPMI/STORAGE_NET_FUNCTION 00 $/SDR/RESERVE_REPOSITORY"},
    {"SET://BMC/SDR/ADD_PARTIAL", "$/BMC/BASE_ADDRESS $/IPMI/STORAGE_NET_FUNCTION 00 $/SDR/PARTIAL_ADD "
                                  "$/SDR/RESERVATION_LS $/SDR/RESERVATION_MS $/SDR/RECORD_LS $/SDR/RECORD_MS "
                                  "$/SDR/RECORD_OFFSET $/SDR/PARTIAL_ADD_PROGRESS $/SDR/DATA"},
    {"SET://BMC/SDR/CFG_CONTROL", "$/BMC/BASE_ADDRESS $/IPMI/ORVEL_GENERAL_APP 00 $/SDR/CFG_CONTROL_CMD $/SDR/CONTROL"},
    {"SET://BMC/SDR/CFG_MANAGEMENT",
     "$/BMC/BASE_ADDRESS $/IPMI/ORVEL_GENERAL_APP 00 $/SDR/CFG_MANAGEMENT_CMD $/SDR/CONTROL"},
    {"SET://BMC/SDR/CFG_WRITE", "$/BMC/BASE_ADDRESS $/IPMI/ORVEL_GENERAL_APP 00 $/SDR/CFG_WRITE_CMD "
                                "$/SDR/CONTROL $/SDR/FILE_OFFSET $/SDR/FILE_DATA"},
    {"SET://BMC/SDR/CFG_WRITE_LAST", "$/BMC/BASE_ADDRESS $/IPMI/ORVEL_GENERAL_APP 00 $/SDR/CFG_WRITE_CMD "
                                     "$/SDR/CONTROL 00 00 00 00 $/SDR/FILE_CRC32 $/SDR/FILE_TIMESTAMP"},
    {"SET://BMC/SDR/CLEAR", "$/BMC/BASE_ADDRESS $/IPMI/STORAGE_NET_FUNCTION 00 $/SDR/CLEAR_CMD "
                            "$/SDR/RESERVATION_LS $/SDR/RESERVATION_MS 43 4C 52 $/SDR/CLEAR"},
};

constexpr TextRow filters[] = {
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
    // Fields of answers; the high byte comes first, as a reader writes numbers.
    {"GET://BMC/SDR/INFO/FREESPACE", "5 4"},
    {"GET://BMC/SDR/INFO/NUMBER", "3 2"},
    {"GET://BMC/SDR/INFO/OP", "14"},
    {"GET://BMC/SDR/INFO/RECENT_ADD_TIME", "9 8 7 6"},
    {"GET://BMC/SDR/INFO/RECENT_ERASE_TIME", "13 12 11 10"},
    {"GET://BMC/SDR/INFO/VERSION", "1"},
    {"GET://BMC/SDR/RECORD_ID_LS", "1"},
    {"GET://BMC/SDR/RECORD_ID_MS", "2"},
    {"GET://BMC/SDR/RESERVATION_LS", "1"},
    {"GET://BMC/SDR/RESERVATION_MS", "2"},
};

constexpr const char* failure = "ERROR_SDR_REPOSITORY_EXCEPTION";

const ReadRow reads[] = {
    {.key = "GET://BMC/SDR/INFO/OP", .error = failure, .packet = "GET://BMC/SDR/ALLOCATION_INFO"},
};

/// A number of several bytes of the repository's state, in decimal.
Script readNumber(const char* key)
{
    return script({
        send("GET://BMC/SDR/ALLOCATION_INFO"),
        If("$COMPLETION_CODE != 0", {Throw(failure)}),
        readField(key, "$NUMBER", failure),
        Prepend("$NUMBER", "0", "2", "$NUMBER"),
        Flatten("$NUMBER", "$NUMBER"),
        Map("$NUMBER", "HEX2DEC", "$RESULT"),
        Return("$RESULT"),
    });
}

/// "1.5" for 51h: the digit after the point stands in the upper half.
Script readVersion()
{
    return script({
        send("GET://BMC/SDR/ALLOCATION_INFO"),
        If("$COMPLETION_CODE != 0", {Throw(failure)}),
        readField("GET://BMC/SDR/INFO/VERSION", "$VERSION", failure),
        Map("$VERSION", "MASK", "F", "$MAJOR"),
        Map("$VERSION", "RIGHT_SHIFT", "4", "$MINOR"),
        FormatString("$MAJOR", ".", "$MINOR", "$RESULT"),
        Return("$RESULT"),
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

/// A parameter of the caller's, without which nothing is sent.
Steps take(const std::string& name)
{
    return script({takeGiven(name, "$/SDR/" + name), require("$/SDR/" + name)});
}

/// The record id that the BMC gives is what the record's next part is added to.
Script addPartial()
{
    return script({
        require("$/SDR/RESERVATION_LS"),
        require("$/SDR/RESERVATION_MS"),
        take("RECORD_LS"),
        take("RECORD_MS"),
        take("RECORD_OFFSET"),
        take("PARTIAL_ADD_PROGRESS"),
        take("DATA"),
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
        take("CLEAR"),
        Template("GET://BMC/SDR/RESERVE"),
        If("$COMPLETION_CODE != 0", {Throw(failure)}),
        sendOrThrow("SET://BMC/SDR/CLEAR", failure),
    });
}

Script readFile()
{
    return script({
        take("CONTROL"),
        take("FILE_OFFSET"),
        take("FILE_LENGTH"),
        send("GET://BMC/SDR/CFG_READ"),
        If("$COMPLETION_CODE != 0", {Throw(failure)}),
        Split("$BUFFER", ":SPACE", "$BUFFER"),
        Exclude("$BUFFER", "GET://BMC/COMPLETION_CODE", "$BUFFER"),
        Join("$BUFFER", ":SPACE", "$RESULT"),
        Return("$RESULT"),
    });
}

} // namespace

SdrConfig::SdrConfig(Stores& stores)
{
    addConstants(stores, constants);
    addPackets(stores, packets);
    addFilters(stores, filters);
    addReads(stores, reads);
    for (const char* key : {"GET://BMC/SDR/INFO/FREESPACE", "GET://BMC/SDR/INFO/NUMBER",
                            "GET://BMC/SDR/INFO/RECENT_ADD_TIME", "GET://BMC/SDR/INFO/RECENT_ERASE_TIME"})
        addTemplate(stores, key, readNumber(key));
    addTemplate(stores, "GET://BMC/SDR/INFO",
                branch({"VERSION", "NUMBER", "FREESPACE", "RECENT_ADD_TIME", "RECENT_ERASE_TIME", "OP"}));
    addTemplate(stores, "GET://BMC/SDR/INFO/VERSION", readVersion());
    addTemplate(stores, "GET://BMC/SDR/CFG_READ", readFile());
    addTemplate(stores, "GET://BMC/SDR/READ", readPiece());
    addTemplate(stores, "GET://BMC/SDR/RESERVE", reserve());
    addTemplate(stores, "SET://BMC/SDR/ADD_PARTIAL", addPartial());
    addTemplate(stores, "SET://BMC/SDR/CFG_CONTROL",
                script({take("CONTROL"), sendOrThrow("SET://BMC/SDR/CFG_CONTROL", failure)}));
    addTemplate(stores, "SET://BMC/SDR/CFG_MANAGEMENT",
                script({take("CONTROL"), sendOrThrow("SET://BMC/SDR/CFG_MANAGEMENT", failure)}));
    addTemplate(stores, "SET://BMC/SDR/CFG_WRITE",
                script({take("CONTROL"), take("FILE_OFFSET"), take("FILE_DATA"),
                        sendOrThrow("SET://BMC/SDR/CFG_WRITE", failure)}));
    addTemplate(stores, "SET://BMC/SDR/CFG_WRITE_LAST",
                script({take("CONTROL"), take("FILE_CRC32"), take("FILE_TIMESTAMP"),
                        sendOrThrow("SET://BMC/SDR/CFG_WRITE_LAST", failure)}));
    addTemplate(stores, "SET://BMC/SDR/CLEAR", clear());
}

} // namespace Module::BMCConfig

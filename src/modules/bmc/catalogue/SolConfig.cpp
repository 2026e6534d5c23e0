#include "modules/bmc/catalogue/ChannelSteps.hpp"
#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Fields.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// Serial over LAN (IPMI 2.0, 26.2 and 26.3).

namespace Module::BMCConfig {

using namespace steps;

namespace solConfig {

constexpr char getCommand[] = "GET_SOL_CONFIGURATION_PARAMETERS", setCommand[] = "SET_SOL_CONFIGURATION_PARAMETERS";

constexpr PacketRow packets[] = {
    {"GET://BMC/SOL/CHANNEL[]/AUTHENTICATIONSTATUS", getCommand, "$CHANNEL_NUMBER 02 00 00"},
    {"GET://BMC/SOL/CHANNEL[]/BAUDRATE", getCommand, "$CHANNEL_NUMBER 05 00 00"}, // nonvolatile
    {"GET://BMC/SOL/CHANNEL[]/CHARACTER", getCommand, "$CHANNEL_NUMBER 03 00 00"},
    {"GET://BMC/SOL/CHANNEL[]/ENABLEUSER", getCommand, "$CHANNEL_NUMBER 01 00 00"},
    {"GET://BMC/SOL/CHANNEL[]/RETRY", getCommand, "$CHANNEL_NUMBER 04 00 00"},
    {"GET://BMC/SOL/CHANNEL[]/SERIAL", getCommand, "$CHANNEL_NUMBER 06 00 00"}, // as it is now
    {"GET://BMC/SOL/CHANNEL[]/USER[]/PAYLOADACCESS", "GET_USER_PAYLOAD_ACCESS", "$CHANNEL_NUMBER $USER_NUMBER"},
    {"SET://BMC/SOL/CHANNEL[]/ACTIVATE/PRIVILEGE", setCommand, "$CHANNEL_NUMBER 02 $RECORD"},
    {"SET://BMC/SOL/CHANNEL[]/BAUDRATE", setCommand, "$CHANNEL_NUMBER 05 $BAUDRATESERIAL"},
    {"SET://BMC/SOL/CHANNEL[]/BAUDRATESERIAL", setCommand, "$CHANNEL_NUMBER 06 $BAUDRATESERIAL"},
    {"SET://BMC/SOL/CHANNEL[]/CHARACTER", setCommand, "$CHANNEL_NUMBER 03 $RECORD"},
    {"SET://BMC/SOL/CHANNEL[]/ENABLEUSER", setCommand, "$CHANNEL_NUMBER 01 $RECORD"},
    {"SET://BMC/SOL/CHANNEL[]/PAYLOAD/AUTHENTICATION", setCommand, "$CHANNEL_NUMBER 02 $RECORD"},
    {"SET://BMC/SOL/CHANNEL[]/PAYLOAD/ENCRYPTION", setCommand, "$CHANNEL_NUMBER 02 $RECORD"},
    {"SET://BMC/SOL/CHANNEL[]/RETRY", setCommand, "$CHANNEL_NUMBER 04 $RECORD"},
    {"SET://BMC/SOL/CHANNEL[]/USER[]/PAYLOADACCESS", "SET_USER_PAYLOAD_ACCESS", "$CHANNEL_NUMBER $ACCESS 02 00 00 00"},
};

constexpr Record recordAt(const char* path, const char* get, const char* set, unsigned size)
{
    return parameterRecord(path, get, set, size, "CHANNEL 0 15");
}

struct Setting {
    Record record;
    Field field;
};

constexpr char parent[] = "SOL/CHANNEL[]", character[] = "SOL/CHANNEL[]/CHARACTER", retry[] = "SOL/CHANNEL[]/RETRY",
               payload[] = "SOL/CHANNEL[]/PAYLOAD", security[] = "SOL/CHANNEL[]/AUTHENTICATIONSTATUS";

constexpr Setting settings[] = {
    {recordAt(parent, "SOL/CHANNEL[]/ENABLEUSER", "SOL/CHANNEL[]/ENABLEUSER", 1),
     {.name = "ENABLEUSER", .codec = Codec::word, .mask = 0x01}},
    {recordAt(parent, security, "SOL/CHANNEL[]/ACTIVATE/PRIVILEGE", 1),
     {.name = "PRIVILEGE",
      .codec = Codec::word,
      .mask = 0x0F,
      .table = "PRIVILEGE",
      .getError = "ERROR_SOL_PRIVILEGE_GET",
      .setError = "ERROR_SOL_PRIVILEGE_SET"}},
    {recordAt(payload, security, "SOL/CHANNEL[]/PAYLOAD/AUTHENTICATION", 1),
     {.name = "AUTHENTICATION",
      .codec = Codec::word,
      .mask = 0x40,
      .getError = "ERROR_SOL_PAYLOAD_AUTHENTICATION_GET",
      .setError = "ERROR_SOL_PAYLOAD_AUTHENTICATION_SET"}},
    {recordAt(payload, security, "SOL/CHANNEL[]/PAYLOAD/ENCRYPTION", 1),
     {.name = "ENCRYPTION", .codec = Codec::word, .mask = 0x80}},
    {recordAt(character, character, character, 2), // steps of 5 ms
     {.name = "ACCUMULATEINTERVAL", .codec = Codec::number, .low = 1}},
    {recordAt(character, character, character, 2), {.name = "SENDTHRESHOLD", .byte = 1, .codec = Codec::number}},
    {recordAt(retry, retry, retry, 2),
     {.name = "COUNT",
      .codec = Codec::number,
      .mask = 0x07,
      .getError = "ERROR_SOL_RETRY_COUNT_GET",
      .setError = "ERROR_SOL_RETRY_COUNT_SET"}},
    {recordAt(retry, retry, retry, 2), // steps of 10 ms
     {.name = "INTERVAL",
      .byte = 1,
      .codec = Codec::number,
      .getError = "ERROR_SOL_RETRY_INTERVAL_GET",
      .setError = "ERROR_SOL_RETRY_INTERVAL_SET"}},
};

constexpr Field rate = {
    .name = "BAUDRATESERIAL", .codec = Codec::word, .mask = 0x0F, .table = "SOL/CHANNEL[]/BAUDRATESERIAL"};

/// The rate of a start; where that is left to the serial channel, the one of now.
Script readRate()
{
    const auto readOf = [](const char* packet) {
        return script({
            sendAndCheck(packet),
            readField("GET://BMC/SOL/CHANNEL[]/BAUDRATESERIAL", "$FIELD", "$COMPLETION_CODE"),
            decode(rate),
        });
    };
    return script({
        assertSubscript("CHANNEL", 0, 15),
        readOf("GET://BMC/SOL/CHANNEL[]/BAUDRATE"),
        If("$RESULT != SERIAL", {Return("$RESULT")}),
        readOf("GET://BMC/SOL/CHANNEL[]/SERIAL"),
        Return("$RESULT"),
    });
}

/// Both, so that the rate holds now and after a start.
Script writeRate()
{
    return script({
        assertSubscript("CHANNEL", 0, 15),
        If("$BAUDRATESERIAL != 9600 AND $BAUDRATESERIAL != 19200 AND $BAUDRATESERIAL != 38400 AND "
           "$BAUDRATESERIAL != 57600 AND $BAUDRATESERIAL != 115200 AND $BAUDRATESERIAL != SERIAL",
           {Throw("ERROR_BAUD_RATE_NOT_SUPPORTED")}),
        encode("$BAUDRATESERIAL", rate),
        sendAndCheck("SET://BMC/SOL/CHANNEL[]/BAUDRATE"),
        sendOrThrow("SET://BMC/SOL/CHANNEL[]/BAUDRATESERIAL", "$COMPLETION_CODE"),
    });
}

Script readPayloadAccess()
{
    constexpr Field access = {.name = "PAYLOADACCESS", .codec = Codec::word, .mask = 0x02};
    return script({
        assertSubscript("USER", 1, 63),
        assertSubscript("CHANNEL", 0, 15),
        send("GET://BMC/SOL/CHANNEL[]/USER[]/PAYLOADACCESS"),
        If("$COMPLETION_CODE != 0", {Throw("ERROR_GET_SOL_PAYLOADACCESS")}),
        readField("GET://BMC/SOL/CHANNEL[]/USER[]/PAYLOADACCESS", "$FIELD", "ERROR_GET_SOL_PAYLOADACCESS"),
        decode(access),
        Return("$RESULT"),
    });
}

} // namespace solConfig

SolConfig::SolConfig(Stores& stores)
{
    using namespace solConfig;
    addPackets(stores, packets);
    addFilter(stores, "GET://BMC/SOL/CHANNEL[]/BAUDRATESERIAL", "2");
    addFilter(stores, "GET://BMC/SOL/CHANNEL[]/USER[]/PAYLOADACCESS", "1");
    addTable(stores, "GET://BMC/SOL/CHANNEL", {{"4", "LAN"}, {"6", "LAN"}});
    const TablePair words[] = {
        {"GET://BMC/SOL/CHANNEL[]/BAUDRATESERIAL",
         "SET://BMC/SOL/CHANNEL[]/BAUDRATESERIAL",
         {{"0", "SERIAL"}, {"6", "9600"}, {"7", "19200"}, {"8", "38400"}, {"9", "57600"}, {"A", "115200"}}},
    };
    addTables(stores, words);
    for (const Setting& setting : settings)
        addFields(stores, setting.record, {&setting.field, 1});

    constexpr BranchRow branches[] = {
        {"GET://BMC/SOL", "CHANNEL"},
        {"GET://BMC/SOL/CHANNEL[]", "ENABLEUSER PRIVILEGE PAYLOAD CHARACTER RETRY BAUDRATESERIAL"},
        {"GET://BMC/SOL/CHANNEL[]/CHARACTER", "ACCUMULATEINTERVAL SENDTHRESHOLD"},
        {"GET://BMC/SOL/CHANNEL[]/PAYLOAD", "AUTHENTICATION ENCRYPTION"},
        {"GET://BMC/SOL/CHANNEL[]/RETRY", "COUNT INTERVAL"},
    };
    addBranches(stores, branches);
    addTemplate(stores, "GET://BMC/SOL/CHANNEL",
                script({findChannels("GET://BMC/SOL/CHANNEL", "CHANNEL"), Return("$MEMBERS")}));
    addTemplate(stores, "GET://BMC/SOL/CHANNEL[]/BAUDRATESERIAL", readRate());
    addTemplate(stores, "SET://BMC/SOL/CHANNEL[]/BAUDRATESERIAL", writeRate());
    for (const char* path : {"SOL/CHANNEL[]/USER[]/PAYLOADACCESS", "SOL/USER[]/CHANNEL[]/PAYLOADACCESS"}) {
        addTemplate(stores, std::string("GET://BMC/") + path, readPayloadAccess());
        addTemplate(stores, std::string("SET://BMC/") + path,
                    setPayloadAccess("SET://BMC/SOL/CHANNEL[]/USER[]/PAYLOADACCESS"));
    }
    addProfile(stores, parent, "SOL/CHANNEL[]/SCF",
               "ENABLEUSER PRIVILEGE PAYLOAD/AUTHENTICATION PAYLOAD/ENCRYPTION CHARACTER/ACCUMULATEINTERVAL "
               "CHARACTER/SENDTHRESHOLD RETRY/COUNT RETRY/INTERVAL BAUDRATESERIAL");
}

} // namespace Module::BMCConfig

#include "modules/bmc/catalogue/ChannelSteps.hpp"
#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Fields.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// Serial and modem channels (IPMI 2.0, 25.1 and 25.2, parameters of table 25-4).

namespace Module::BMCConfig {

using namespace steps;

namespace serialConfig {

/// One GET packet serves two parameters, the connection's mode and the terminal's; each query sets which.
constexpr PacketRow packets[] = {
    {"GET://BMC/SERIAL/CHANNEL[]/CALLBACKCONTROL", "GET_SERIAL_CONFIGURATION", "$CHANNEL_NUMBER 05 00 00"},
    {"GET://BMC/SERIAL/CHANNEL[]/CONNECTIONMODE", "GET_SERIAL_CONFIGURATION",
     "$CHANNEL_NUMBER $/SERIAL/PARAMETER 00 00"},
    {"GET://BMC/SERIAL/CHANNEL[]/INACTIVITYTIMEOUT", "GET_SERIAL_CONFIGURATION", "$CHANNEL_NUMBER 04 00 00"},
    {"GET://BMC/SERIAL/CHANNEL[]/IPMIMESSAGING", "GET_SERIAL_CONFIGURATION", "$CHANNEL_NUMBER 07 00 00"},
    {"GET://BMC/SERIAL/CHANNEL[]/MUXSWITCHCONTROL", "GET_SERIAL_CONFIGURATION", "$CHANNEL_NUMBER 08 00 00"},
    {"GET://BMC/SERIAL/CHANNEL[]/SESSIONTERMINATION", "GET_SERIAL_CONFIGURATION", "$CHANNEL_NUMBER 06 00 00"},
    {"SET://BMC/SERIAL/CHANNEL[]/CALLBACKCONTROL/MODEMCALLBACK", "SET_SERIAL_CONFIGURATION",
     "$CHANNEL_NUMBER 05 $RECORD"},
    {"SET://BMC/SERIAL/CHANNEL[]/CONNECTIONMODE/CONNECTMODE", "SET_SERIAL_CONFIGURATION", "$CHANNEL_NUMBER 03 $RECORD"},
    {"SET://BMC/SERIAL/CHANNEL[]/CONNECTIONMODE/CONNECTMODEENABLES", "SET_SERIAL_CONFIGURATION",
     "$CHANNEL_NUMBER 03 $RECORD"},
    {"SET://BMC/SERIAL/CHANNEL[]/IPMIMESSAGING", "SET_SERIAL_CONFIGURATION", "$CHANNEL_NUMBER 07 $RECORD"},
    {"SET://BMC/SERIAL/CHANNEL[]/MUXSWITCHCONTROL", "SET_SERIAL_CONFIGURATION", "$CHANNEL_NUMBER 08 $RECORD"},
    {"SET://BMC/SERIAL/CHANNEL[]/SESSIONINACTIVITYTIMEOUT", "SET_SERIAL_CONFIGURATION", "$CHANNEL_NUMBER 04 $RECORD"},
    {"SET://BMC/SERIAL/CHANNEL[]/SESSIONTERMINATION/CLOSEONDCDLOSS", "SET_SERIAL_CONFIGURATION",
     "$CHANNEL_NUMBER 06 $RECORD"},
    {"SET://BMC/SERIAL/CHANNEL[]/SESSIONTERMINATION/INACTIVITYTIMEOUT", "SET_SERIAL_CONFIGURATION",
     "$CHANNEL_NUMBER 06 $RECORD"},
    {"SET://BMC/SERIAL/CHANNEL[]/TERMINALMODE", "SET_SERIAL_CONFIGURATION", "$CHANNEL_NUMBER 1D $RECORD"},
};

constexpr BranchRow branches[] = {
    {"GET://BMC/SERIAL", "CHANNEL"},
    {"GET://BMC/SERIAL/CHANNEL[]", "CALLBACKCONTROL CONNECTIONMODE IPMIMESSAGING MUXSWITCHCONTROL "
                                   "SESSIONINACTIVITYTIMEOUT SESSIONTERMINATION TERMINALMODE/STATUS"},
    {"GET://BMC/SERIAL/CHANNEL[]/CALLBACKCONTROL", "MODEMCALLBACK"},
    {"GET://BMC/SERIAL/CHANNEL[]/CONNECTIONMODE", "CONNECTMODE CONNECTMODEENABLES"},
    {"GET://BMC/SERIAL/CHANNEL[]/IPMIMESSAGING", "BAUDRATE DTRHANGUP"},
    {"GET://BMC/SERIAL/CHANNEL[]/MUXSWITCHCONTROL", "MUXONDCDLOSS MUXTOBASEBOARD MUXTOBMC"},
    {"GET://BMC/SERIAL/CHANNEL[]/SESSIONTERMINATION", "CLOSEONDCDLOSS INACTIVITYTIMEOUT"},
};

constexpr char connectionMode[] = "$/SERIAL/PARAMETER 03", terminalMode[] = "$/SERIAL/PARAMETER 1D";

/// Part of a parameter, and the packets (below the channel) that read and write the whole.
struct Setting {
    const char* get;
    const char* set;
    unsigned size;
    Field field;
    const char* given = "";
};

constexpr Setting settings[] = {
    {"CALLBACKCONTROL",
     "CALLBACKCONTROL/MODEMCALLBACK",
     5,
     {"CALLBACKCONTROL/MODEMCALLBACK", 0, 1, Codec::word, 0x03, "SERIAL/CALLBACK"}},
    {"CONNECTIONMODE",
     "CONNECTIONMODE/CONNECTMODE",
     1,
     {"CONNECTIONMODE/CONNECTMODE", 0, 1, Codec::word, 0x80, "SERIAL/CONNECTMODE"},
     connectionMode},
    {"CONNECTIONMODE",
     "CONNECTIONMODE/CONNECTMODEENABLES",
     1,
     {"CONNECTIONMODE/CONNECTMODEENABLES", 0, 1, Codec::word, 0x07, "SERIAL/CONNECTMODEENABLES"},
     connectionMode},
    {"CONNECTIONMODE",
     "CONNECTIONMODE/CONNECTMODEENABLES",
     1,
     {"TERMINALMODE/STATUS", 0, 1, Codec::word, 0x04},
     connectionMode},
    {"IPMIMESSAGING",
     "IPMIMESSAGING",
     2,
     {.name = "IPMIMESSAGING/BAUDRATE",
      .byte = 1,
      .count = 1,
      .codec = Codec::word,
      .mask = 0x0F,
      .table = "SERIAL/BAUDRATE",
      .setError = "ERROR_BAUD_RATE_NOT_SUPPORTED"}},
    {"IPMIMESSAGING", "IPMIMESSAGING", 2, {"IPMIMESSAGING/DTRHANGUP", 0, 1, Codec::word, 0x20}},
    {"MUXSWITCHCONTROL", "MUXSWITCHCONTROL", 1, {"MUXSWITCHCONTROL/MUXONDCDLOSS", 0, 1, Codec::word, 0x01}},
    {"MUXSWITCHCONTROL", "MUXSWITCHCONTROL", 1, {"MUXSWITCHCONTROL/MUXTOBASEBOARD", 0, 1, Codec::word, 0x02}},
    {"MUXSWITCHCONTROL", "MUXSWITCHCONTROL", 1, {"MUXSWITCHCONTROL/MUXTOBMC", 0, 1, Codec::word, 0x04}},
    {"INACTIVITYTIMEOUT", // in steps of 30 seconds, 0 for never
     "SESSIONINACTIVITYTIMEOUT",
     1,
     {"SESSIONINACTIVITYTIMEOUT", 0, 1, Codec::number, 0x0F, nullptr, 0, 15}},
    {"SESSIONTERMINATION",
     "SESSIONTERMINATION/CLOSEONDCDLOSS",
     1,
     {"SESSIONTERMINATION/CLOSEONDCDLOSS", 0, 1, Codec::word, 0x01}},
    {"SESSIONTERMINATION",
     "SESSIONTERMINATION/INACTIVITYTIMEOUT",
     1,
     {"SESSIONTERMINATION/INACTIVITYTIMEOUT", 0, 1, Codec::word, 0x02}},
};

/// Of the terminal mode only whether it is on can be read by itself.
constexpr Field terminalFields[] = {
    {"DELETE_CONTROL", 0, 1, Codec::word, 0x0C, "SERIAL/DELETE_CONTROL", 0, 255, Access::write},
    {"ECHO", 0, 1, Codec::word, 0x02, "FLAG", 0, 255, Access::write},
    {"HANDSHAKE", 0, 1, Codec::word, 0x01, "FLAG", 0, 255, Access::write},
    {"INNEWLINESEQUENCE", 1, 1, Codec::word, 0x0F, "SERIAL/INNEWLINESEQUENCE", 0, 255, Access::write},
    {"LINE", 0, 1, Codec::word, 0x20, "FLAG", 0, 255, Access::write},
    {"OUTNEWLINESEQUENCE", 1, 1, Codec::word, 0xF0, "SERIAL/OUTNEWLINESEQUENCE", 0, 255, Access::write},
};

void addWords(Stores& stores)
{
    const TablePair words[] = {
        {"GET://BMC/SERIAL/BAUDRATE",
         "SET://BMC/SERIAL/BAUDRATE",
         {{"6", "9600"}, {"7", "19200"}, {"8", "38400"}, {"9", "57600"}, {"A", "115200"}}},
        {"GET://BMC/SERIAL/CALLBACK",
         "SET://BMC/SERIAL/CALLBACK",
         {{"0", "DISABLE"}, {"1", "IPMI"}, {"2", "CBCP"}, {"3", "IPMI_AND_CBCP"}}},
        {"GET://BMC/SERIAL/CONNECTMODE", "SET://BMC/SERIAL/CONNECTMODE", {{"0", "DIRECT"}, {"1", "MODEM"}}},
        {"GET://BMC/SERIAL/CONNECTMODEENABLES",
         "SET://BMC/SERIAL/CONNECTMODEENABLES",
         {{"0", "NONE"},
          {"1", "BASIC"},
          {"2", "PPP"},
          {"3", "BASIC_PPP"},
          {"4", "TERMINAL"},
          {"5", "BASIC_TERMINAL"},
          {"6", "PPP_TERMINAL"},
          {"7", "ALL"}}},
    };
    const TableRow tables[] = {
        {"GET://BMC/SERIAL/CHANNEL", {{"5", "SERIAL"}}}, // of the media (IPMI 2.0, table 6-3)
        {"SET://BMC/SERIAL/DELETE_CONTROL", {{"DEL", "0"}, {"BKSP_SP_BKSP", "1"}}},
        {"SET://BMC/SERIAL/INNEWLINESEQUENCE", {{"CR", "1"}, {"NULL", "2"}}},
        {"SET://BMC/SERIAL/OUTNEWLINESEQUENCE",
         {{"NONE", "0"}, {"CR_LF", "1"}, {"NULL", "2"}, {"CR", "3"}, {"LF_CR", "4"}, {"LF", "5"}}},
    };
    addTables(stores, words);
    addTables(stores, tables);
}

constexpr Record recordOf(const char* path, const char* get, unsigned size, const char* set, const char* given)
{
    Record record = parameterRecord(path, get, set, size, "CHANNEL 1 14");
    record.given = given;
    return record;
}

} // namespace serialConfig

SerialConfig::SerialConfig(Stores& stores)
{
    using namespace serialConfig;
    const std::string channel = "SERIAL/CHANNEL[]";
    addPackets(stores, packets);
    addWords(stores);
    addBranches(stores, branches);
    for (const Setting& row : settings) {
        const std::string get = channel + "/" + row.get, set = channel + "/" + row.set;
        addFields(stores, recordOf(channel.c_str(), get.c_str(), row.size, set.c_str(), row.given), {&row.field, 1});
    }
    addFields(stores,
              recordOf("SERIAL/CHANNEL[]/TERMINALMODE", "SERIAL/CHANNEL[]/CONNECTIONMODE", 2,
                       "SERIAL/CHANNEL[]/TERMINALMODE", terminalMode),
              terminalFields);
    addTemplate(stores, "GET://BMC/SERIAL/CHANNEL",
                script({findChannels("GET://BMC/SERIAL/CHANNEL", "CHANNEL"), Return("$MEMBERS")}));
}

} // namespace Module::BMCConfig

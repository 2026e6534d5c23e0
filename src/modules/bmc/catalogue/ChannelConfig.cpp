#include "modules/bmc/catalogue/ChannelSteps.hpp"
#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Fields.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// Channels: what they are and who may use them (IPMI 2.0, 22.22 to 22.24). Each setting stands twice, as it is now
// (volatile) and as it will be after a start (nonvolatile); bits 7 and 6 of the bytes say which one is meant.

namespace Module::BMCConfig {

using namespace steps;

namespace channelConfig {

constexpr TextRow constants[] = {
    {"$/CHANNEL/MEMORY", "80"}, // as it is now
};

constexpr PacketRow packets[] = {
    {"GET://BMC/CHANNEL[]/ACCESS", "GET_CHANNEL_ACCESS", "$CHANNEL_NUMBER $/CHANNEL/MEMORY"},
    {"GET://BMC/CHANNEL[]/INFO", "GET_CHANNEL_INFO", "$CHANNEL_NUMBER"},
    {"SET://BMC/CHANNEL[]/ACCESS", "SET_CHANNEL_ACCESS", "$CHANNEL_NUMBER $RECORD"},
};

constexpr TextRow filters[] = {
    {"GET://BMC/CHANNEL[]/MEDIUM", "2"},
    {"GET://BMC/CHANNEL[]/PROTOCOL", "3"},
    {"GET://BMC/CHANNEL[]/SESSIONS", "4"},
};

/// Media and protocols: IPMI 2.0, tables 6-3 and 6-2.
const TableRow tables[] = {
    {"GET://BMC/CHANNEL[]/TYPE",
     {{"1", "IPMB"},
      {"2", "ICMB_1.0"},
      {"3", "ICMB_0.9"},
      {"4", "LAN"},
      {"5", "SERIAL"},
      {"6", "OTHER_LAN"},
      {"7", "PCI_SMBUS"},
      {"8", "SMBUS_1"},
      {"9", "SMBUS_2"},
      {"A", "USB_1"},
      {"B", "USB_2"},
      {"C", "SYSTEM_INTERFACE"}}},
    {"GET://BMC/CHANNEL[]/PROTOCOL",
     {{"1", "IPMB"},
      {"2", "ICMB"},
      {"4", "IPMI_SMBUS"},
      {"5", "KCS"},
      {"6", "SMIC"},
      {"7", "BT_10"},
      {"8", "BT_15"},
      {"9", "TERMINAL_MODE"}}},
    {"GET://BMC/CHANNEL[]/SESSIONS", {{"0", "NONE"}, {"40", "SINGLE"}, {"80", "MULTI"}, {"C0", "BY_SESSION"}}},
};

const TablePair words[] = {
    {"GET://BMC/CHANNEL[]/ACCESS_MODE",
     "SET://BMC/CHANNEL[]/ACCESS_MODE",
     {{"0", "DISABLE"}, {"1", "PREBOOT"}, {"2", "ALWAYS"}, {"3", "SHARED"}}},
    {"GET://BMC/PRIVILEGE",
     "SET://BMC/PRIVILEGE",
     {{"1", "CALLBACK"}, {"2", "USER"}, {"3", "OPERATOR"}, {"4", "ADMIN"}, {"5", "OEM"}, {"F", "NO_ACCESS"}}},
};

constexpr char modeError[] = "ERROR_CHANNEL_ACCESS_MODE_SET", modeTable[] = "CHANNEL[]/ACCESS_MODE";

/// A byte whose upper bits are 0 is left alone, so each write marks only the byte that it changes.
void addAccess(Stores& stores, const char* path, const char* memory, unsigned mark)
{
    const std::string given = std::string("$/CHANNEL/MEMORY ") + memory;
    const Record access{.path = path,
                        .get = "CHANNEL[]/ACCESS",
                        .size = 2,
                        .set = "CHANNEL[]/ACCESS",
                        .given = given.c_str(),
                        .assertion = "CHANNEL[]/ASSERT",
                        .absentCode = "130"}; // a channel without sessions
    const auto bit = [&](const char* name, unsigned mask, const char* table) {
        return Field{.name = name, .codec = Codec::word, .mask = mask, .table = table, .marks = mark};
    };
    Field mode = bit("ACCESS_MODE", 0x07, modeTable);
    mode.setError = modeError;
    Field limit = bit("PRIVILEGE_LIMIT", 0x0F, "PRIVILEGE");
    limit.byte = 1;
    addFieldBranch(stores, access,
                   std::vector{mode, bit("PEF_ALERTING", 0x20, "FLAG_OFF"),
                               bit("PER_MESSAGE_AUTHENTICATION", 0x10, "FLAG_OFF"), limit,
                               bit("USER_LEVEL_AUTHENTICATION", 0x08, "FLAG_OFF")});
}

/// Authentication types are parameters of the LAN, whose channel this one is.
void addAuthenticationTypes(Stores& stores)
{
    const auto forward = [&](const std::string& from, const std::string& to, const char* value) {
        addTemplate(stores, from,
                    script({Template("GET://BMC/CHANNEL[]/ASSERT"), Copy("$CHANNEL_NUMBER", "$LAN_NUMBER"),
                            value ? require(value) : Steps{}, Template(to), Return("$RESULT")}));
    };
    constexpr const char* levels[][2] = {
        {"ADMIN", "$ADMIN"}, {"CALLBACK", "$CALLBACK"}, {"OEM", "$OEM"}, {"OPERATOR", "$OPERATOR"}, {"USER", "$USER"}};
    for (const auto& [name, value] : levels) {
        const std::string path = std::string("AUTHENTICATIONTYPE/") + name;
        const std::string target = std::string("//BMC/LAN[]/AUTHENTICATION_TYPE/") + name;
        forward("GET://BMC/CHANNEL[]/NONVOLATILE/" + path, "GET:" + target, nullptr);
        forward("SET://BMC/CHANNEL[]/NONVOLATILE/" + path, "SET:" + target, value);
    }
    forward("SET://BMC/CHANNEL[]/AUTHENTICATIONTYPE/OEM", "SET://BMC/LAN[]/AUTHENTICATION_TYPE/OEM", "$OEM");
}

/// One of the information's words, in `destination`.
Steps readWord(const char* filter, const char* mask, const char* table, const char* destination)
{
    return script({
        readField(filter, destination, "$COMPLETION_CODE"),
        Map(destination, "MASK", mask, destination),
        LookupTable(destination, table, destination),
    });
}

Script readInfo(const Steps& rest)
{
    return script({
        Template("GET://BMC/CHANNEL[]/ASSERT"),
        send("GET://BMC/CHANNEL[]/INFO"),
        If("$COMPLETION_CODE != 0", {Throw("ERROR_NOT_VALID_CHANNEL")}),
        rest,
        Return("$RESULT"),
    });
}

void addInfo(Stores& stores)
{
    const Steps medium = readWord("GET://BMC/CHANNEL[]/MEDIUM", "7F", "GET://BMC/CHANNEL[]/TYPE", "$MEDIUM");
    addTemplate(stores, "GET://BMC/CHANNEL[]/INFO", readInfo(joinData("$RESULT")));
    addTemplate(stores, "GET://BMC/CHANNEL[]/TYPE", readInfo(script({medium, Copy("$MEDIUM", "$RESULT")})));
    addTemplate(stores, "GET://BMC/CHANNEL[]/DETAILS",
                readInfo(script({
                    medium,
                    readWord("GET://BMC/CHANNEL[]/PROTOCOL", "1F", "GET://BMC/CHANNEL[]/PROTOCOL", "$PROTOCOL"),
                    readWord("GET://BMC/CHANNEL[]/SESSIONS", "C0", "GET://BMC/CHANNEL[]/SESSIONS", "$SESSIONS"),
                    FormatString("MEDIUM=", "$MEDIUM", ";PROTOCOL=", "$PROTOCOL", ";SESSIONS=", "$SESSIONS", "$RESULT"),
                })));
    addTemplate(stores, "GET://BMC/CHANNEL[]/ACCESS",
                script({Template("GET://BMC/CHANNEL[]/ASSERT"), take("MEMORY", "$/CHANNEL/MEMORY"),
                        returnData("GET://BMC/CHANNEL[]/ACCESS")}));
}

} // namespace channelConfig

namespace steps {

Steps findChannels(const std::string& table, const std::string& name)
{
    using namespace channelConfig;
    const Steps collect = script({
        Map("$CHANNEL_NUMBER", "HEX2DEC", "$CHANNEL_NUMBER_IN_DEC"),
        Append("$CHANNEL_NUMBER_IN_DEC", "$CHANNELS"),
        FormatString(name + "[", "$CHANNEL_NUMBER_IN_DEC", "]", "$MEMBER"),
        Append("$MEMBER", "$MEMBERS"),
    });
    return script({
        Copy(":NULL", "$CHANNELS"),
        Copy(":NULL", "$MEMBERS"),
        // 1 to Bh are a board's own to give to media (IPMI 2.0, table 6-1)
        For("CHANNEL_NUMBER", "1", "11",
            {
                send("GET://BMC/CHANNEL[]/INFO"),
                If("$COMPLETION_CODE == 0",
                   {
                       readField("GET://BMC/CHANNEL[]/MEDIUM", "$MEDIUM", "$COMPLETION_CODE"),
                       Map("$MEDIUM", "MASK", "7F", "$MEDIUM"),
                       LookupTable("$MEDIUM", table, "$MEDIUM"),
                       If("$MEDIUM != ERROR", {collect}),
                   }),
            }),
    });
}

} // namespace steps

ChannelConfig::ChannelConfig(Stores& stores)
{
    using namespace channelConfig;
    addConstants(stores, constants);
    addPackets(stores, packets);
    addFilters(stores, filters);
    addTables(stores, tables);
    addTables(stores, words);
    addInfo(stores);
    addAccess(stores, "CHANNEL[]/NONVOLATILE/ACCESS", "40", 0x40);
    addAccess(stores, "CHANNEL[]/VOLATILE/ACCESS", "80", 0x80);
    addAuthenticationTypes(stores);

    constexpr BranchRow branches[] = {
        {"GET://BMC/CHANNEL[]", "TYPE DETAILS VOLATILE NONVOLATILE"},
        {"GET://BMC/CHANNEL[]/NONVOLATILE", "ACCESS"},
        {"GET://BMC/CHANNEL[]/VOLATILE", "ACCESS"},
    };
    addBranches(stores, branches);
    const Steps channels = findChannels("GET://BMC/CHANNEL[]/TYPE", "CHANNEL");
    addTemplate(stores, "GET://BMC/CHANNEL", script({channels, Return("$MEMBERS")}));
    addTemplate(stores, "GET://BMC/CHANNEL[@INDEXES]",
                script({channels, Join("$CHANNELS", ":SPACE", "$RESULT"), Return("$RESULT")}));
    addTemplate(stores, "GET://BMC/CHANNEL[]/ASSERT",
                script({assertSubscript("CHANNEL", 0, 15), returnText("SUCCESS")}));
}

} // namespace Module::BMCConfig

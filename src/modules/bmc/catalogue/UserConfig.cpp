#include "modules/bmc/catalogue/ChannelSteps.hpp"
#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Fields.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// Users (IPMI 2.0, 22.26 to 22.30): who they are, what they may do on each channel, and their passwords. Packets that
// carry one have PASSWORD in their names, which keeps them out of the log.

namespace Module::BMCConfig {

using namespace steps;

namespace userConfig {

constexpr TextRow constants[] = {
    {"$/USER/CHANNEL", "01"}, // whether a user is enabled does not depend on the channel that is asked
};

constexpr PacketRow packets[] = {
    {"GET://BMC/USER[]/CHANNEL[]/PRIVILEGE", "GET_USER_ACCESS", "$CHANNEL_NUMBER $USER_NUMBER"},
    {"GET://BMC/USER[]/CHANNEL[]/STATUS", "GET_USER_ACCESS", "$/USER/CHANNEL $USER_NUMBER"},
    {"GET://BMC/USER[]/NAME", "GET_USER_NAME", "$USER_NUMBER"},
    {"SET://BMC/USER[]/CHANNEL[]/PAYLOADACCESS", "SET_USER_PAYLOAD_ACCESS", "$CHANNEL_NUMBER $ACCESS 02 00 00 00"},
    {"SET://BMC/USER[]/CHANNEL[]/PRIVILEGE", "SET_USER_ACCESS", "$CHANNEL_NUMBER $USER_NUMBER $PRIVILEGE"},
    {"SET://BMC/USER[]/CHANNEL[]/STATUS", "SET_USER_ACCESS", "$ACCESS $USER_NUMBER $LIMIT"},
    {"SET://BMC/USER[]/NAME", "SET_USER_NAME", "$USER_NUMBER $NAME"},
    {"SET://BMC/USER[]/PASSWORD", "SET_USER_PASSWORD", "$HEAD 02 $PASSWORD"},
    {"SET://BMC/USER[]/PASSWORD/DISABLE", "SET_USER_PASSWORD", "$USER_NUMBER 00"},
    {"SET://BMC/USER[]/PASSWORD/ENABLE", "SET_USER_PASSWORD", "$USER_NUMBER 01"},
    {"SET://BMC/USER[]/PASSWORD/TEST", "SET_USER_PASSWORD", "$HEAD 03 $TEST_PASSWORD"},
};

constexpr char ofUser[] = "USER 1 63", onChannel[] = "USER 1 63, CHANNEL 0 15";

/// The access byte goes back in two: its bits beside the channel, with the sign that they are meant, and the limit.
Steps splitAccess()
{
    return script({
        Map("$RECORD", "MASK", "70", "$ACCESS"),
        Map("$ACCESS", "BIT_OR", "80", "$ACCESS"),
        Map("$ACCESS", "BIT_OR", "$CHANNEL_NUMBER", "$ACCESS"),
        Map("$RECORD", "MASK", "0F", "$LIMIT"),
    });
}

constexpr Record name = {
    .path = "USER[]", .get = "USER[]/NAME", .size = 16, .set = "USER[]/NAME", .subscripts = ofUser};
constexpr Record status = {.path = "USER[]", .get = "USER[]/CHANNEL[]/STATUS", .first = 2, .subscripts = ofUser};
constexpr Record access = {.path = "USER[]/CHANNEL[]",
                           .get = "USER[]/CHANNEL[]/PRIVILEGE",
                           .set = "USER[]/CHANNEL[]/STATUS",
                           .first = 4,
                           .subscripts = onChannel,
                           .finish = splitAccess};
/// Without that sign the other bits stay as they are.
constexpr Record limit = {.path = "USER[]/CHANNEL[]",
                          .get = "USER[]/CHANNEL[]/PRIVILEGE",
                          .set = "USER[]/CHANNEL[]/PRIVILEGE",
                          .first = 4,
                          .subscripts = onChannel};

constexpr Field nameFields[] = {
    {.name = "NAME",
     .count = 16,
     .codec = Codec::text,
     .getError = "ERROR_USER_GET_USERNAME",
     .setError = "ERROR_USER_SET_USERNAME"},
    // the name's bytes as they are stored
    {.name = "NAPX_INFO", .count = 16, .access = Access::read, .getError = "ERROR_USER_GET_USERNAME"},
};

constexpr Field statusFields[] = {
    {.name = "STATUS", .codec = Codec::word, .mask = 0xC0, .table = "USER[]/STATUS", .access = Access::read},
};

constexpr Field accessFields[] = {
    {.name = "CALLBACK", .codec = Codec::word, .mask = 0x40},            // access by callback only
    {.name = "IPMI_AUTHENTICATION", .codec = Codec::word, .mask = 0x10}, // may log in for IPMI messages
};

constexpr Field limitFields[] = {
    {.name = "PRIVILEGE",
     .codec = Codec::word,
     .mask = 0x0F,
     .table = "PRIVILEGE",
     .access = Access::read,
     .getError = "ERROR_USER_GET_PRIVILEGE"},
    {.name = "PRIVILEGE",
     .codec = Codec::word,
     .table = "PRIVILEGE",
     .access = Access::write,
     .setError = "ERROR_USER_SET_PRIVILEGE"},
};

/// A password of up to 16 characters goes out as 16 bytes, a longer one as 20, which a bit beside the user says.
Steps encodePassword(const std::string& symbol)
{
    const auto filled = [&](const char* size) {
        return script({Map(symbol, "STR2HEX", symbol), If(symbol + " == ERROR", {refuse(symbol)}),
                       Pad(symbol, "0", size, symbol)});
    };
    return script({
        assertSubscript("USER", 1, 63),
        require(symbol),
        Assert(symbol, "STR_SIZE_CHECK", "20", "$ASSERT_VALUE"),
        Copy("$USER_NUMBER", "$HEAD"),
        String_Length(symbol, "$LENGTH"),
        If("$LENGTH > 16", {Map("$HEAD", "BIT_OR", "80", "$HEAD"), filled("20")}),
        If("$LENGTH <= 16", {filled("16")}),
    });
}

/// A password that does not fit is an answer, not a failure of the command (IPMI 2.0, 22.30).
Script testPassword()
{
    return script({
        encodePassword("$TEST_PASSWORD"),
        send("SET://BMC/USER[]/PASSWORD/TEST"),
        If("$COMPLETION_CODE == 0", {returnText("SUCCESS")}),
        If("$BMC_COMPLETION_CODE == 128 OR $BMC_COMPLETION_CODE == 129", {returnText("FAILURE")}),
        Throw("$COMPLETION_CODE"),
    });
}

Script setStatus()
{
    return script({
        assertSubscript("USER", 1, 63),
        LookupTable("$STATUS", "SET://BMC/FLAG", "$STATUS"),
        If("$STATUS == 1", {sendOrThrow("SET://BMC/USER[]/PASSWORD/ENABLE", "$COMPLETION_CODE")}),
        sendOrThrow("SET://BMC/USER[]/PASSWORD/DISABLE", "$COMPLETION_CODE"),
    });
}

/// As many as the BMC has room for.
Script readMembers()
{
    return script({
        Copy("01", "$USER_NUMBER"),
        sendAndCheck("GET://BMC/USER[]/CHANNEL[]/STATUS"),
        readCount("GET://BMC/USER", "3F"),
        returnMembers("USER", "1", "$COUNT"),
    });
}

void addWords(Stores& stores)
{
    addTable(stores, "GET://BMC/USER[]/STATUS", {{"0", "UNKNOWN"}, {"1", "ENABLE"}, {"2", "DISABLE"}});
    addTable(stores, "GET://BMC/USER[]/CHANNEL", {{"4", "LAN"}, {"5", "SERIAL"}, {"6", "LAN"}}); // media with sessions
    addTable(stores, "SET://BMC/USER[]/CHANNEL[]/PAYLOADACCESS", {{"ENABLE", "0"}, {"DISABLE", "40"}});
}

} // namespace userConfig

UserConfig::UserConfig(Stores& stores)
{
    using namespace userConfig;
    addConstants(stores, constants);
    addPackets(stores, packets);
    addFilter(stores, "GET://BMC/USER", "1");
    addWords(stores);
    addFields(stores, name, nameFields);
    addFields(stores, status, statusFields);
    addFields(stores, access, accessFields);
    addFields(stores, limit, limitFields);

    constexpr BranchRow branches[] = {
        {"GET://BMC/USER[]", "NAME STATUS CHANNEL"},
        {"GET://BMC/USER[]/CHANNEL[]", "PRIVILEGE CALLBACK IPMI_AUTHENTICATION"},
    };
    addBranches(stores, branches);
    addTemplate(stores, "GET://BMC/USER", readMembers());
    addTemplate(stores, "GET://BMC/USER[]/CHANNEL",
                script({findChannels("GET://BMC/USER[]/CHANNEL", "CHANNEL"), Return("$MEMBERS")}));
    addTemplate(stores, "SET://BMC/USER[]/CHANNEL[]/PAYLOADACCESS",
                setPayloadAccess("SET://BMC/USER[]/CHANNEL[]/PAYLOADACCESS"));
    addTemplate(
        stores, "SET://BMC/USER[]/PASSWORD",
        script({encodePassword("$PASSWORD"), sendOrThrow("SET://BMC/USER[]/PASSWORD", "ERROR_USER_SET_PASSWORD")}));
    addTemplate(stores, "SET://BMC/USER[]/STATUS", setStatus());
    addTemplate(stores, "SET://BMC/USER[]/TEST_PASSWORD", testPassword());
    addProfile(stores, "USER[]", "USER[]/SCF", "NAME STATUS");
    addProfile(stores, "USER[]/CHANNEL[]", "USER[]/CHANNEL[]/SCF", "PRIVILEGE CALLBACK IPMI_AUTHENTICATION");
}

namespace steps {

Script setPayloadAccess(const std::string& packet)
{
    using namespace userConfig;
    return script({
        assertSubscript("USER", 1, 63),
        assertSubscript("CHANNEL", 0, 15),
        LookupTable("$PAYLOADACCESS", "SET://BMC/USER[]/CHANNEL[]/PAYLOADACCESS", "$ACCESS"),
        Map("$ACCESS", "BIT_OR", "$USER_NUMBER", "$ACCESS"),
        sendOrThrow(packet, "$COMPLETION_CODE"),
    });
}

} // namespace steps

} // namespace Module::BMCConfig

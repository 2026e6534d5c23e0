#include "modules/bmc/catalogue/PefAreas.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// Alert strings (IPMI 2.0, 17.12; table 30-6, parameters 12 and 13). A string goes in blocks of 16 bytes, counted from
// 1, and ends with a zero.

namespace Module::BMCConfig {

using namespace steps;

namespace pefStrings {

constexpr unsigned blockBytes = 16, mostBlocks = 8;
constexpr char keySelector[] = "0C", stringSelector[] = "0D", ownCode[] = "$COMPLETION_CODE";

Steps selectString()
{
    return script({
        assertSubscript("ALERT_STRING", 0, 127),
        Copy(stringSelector, "$/PEF/SELECTOR"),
        Copy("$ALERT_STRING_NUMBER", "$/PEF/SET"),
    });
}

/// Adds the block's characters to $TEXT; $PART has them by themselves.
Steps addBlock()
{
    return script({
        Split("$BUFFER", ":SPACE", "$FIELD"),
        Read("$FIELD", "4-SIZE", "$FIELD"),
        Size("$FIELD", "$SIZE"),
        If("$SIZE == 0", {Throw("IPMI_RESPONSE_ERROR")}),
        Map("$FIELD", "HEX2STR", "$FIELD"),
        Flatten("$FIELD", "$PART"),
        FormatString("$TEXT", "$PART", "$TEXT"),
    });
}

Script readString()
{
    const std::string size = std::to_string(blockBytes);
    return script({
        selectString(),
        Copy(":NULL", "$TEXT"),
        For("BLOCK", "1", std::to_string(mostBlocks),
            {
                Copy("$BLOCK", "$/PEF/BLOCK"),
                send("GET://BMC/PEF/DATA"),
                If("$COMPLETION_CODE != 0 AND $BLOCK == 1", {Throw(ownCode)}),
                // behind the last block of a string that fills it, a BMC may have nothing to give
                If("$COMPLETION_CODE != 0", {Return("$TEXT")}),
                addBlock(),
                String_Length("$PART", "$LENGTH"),
                If("$LENGTH < " + size, {Return("$TEXT")}),
            }),
        Return("$TEXT"),
    });
}

Steps writeBlock(unsigned block)
{
    const std::string from = std::to_string(block * blockBytes), to = std::to_string((block + 1) * blockBytes);
    return script({
        Read("$RAW", from + "-" + to, "$PART"),
        Size("$PART", "$SIZE"),
        If("$SIZE > 0",
           {
               Join("$PART", ":SPACE", "$PART"),
               FormatString("$ALERT_STRING_NUMBER", " ", std::to_string(block + 1), " ", "$PART", "$RECORD"),
               Split("$RECORD", ":SPACE", "$RECORD"),
               send("SET://BMC/PEF/DATA"),
               If("$COMPLETION_CODE != 0", {Throw(ownCode)}),
           }),
    });
}

Script writeString()
{
    Steps blocks;
    for (unsigned block = 0; block < mostBlocks; ++block)
        blocks = script({blocks, writeBlock(block)});
    return script({
        selectString(),
        Assert("$RAW", "STR_SIZE_CHECK", std::to_string(blockBytes * mostBlocks - 1), "$ASSERT_VALUE"),
        Map("$RAW", "STR2HEX", "$RAW"),
        If("$RAW == ERROR", {refuse("$RAW")}),
        Append("0", "$RAW"),
        blocks,
        returnText("SUCCESS"),
    });
}

Steps selectKey()
{
    return script({
        assertSubscript("ALERT_STRING_KEY", 0, 127),
        assertSubscript("FILTER", 0, 127),
        Copy(keySelector, "$/PEF/SELECTOR"),
        Copy("$ALERT_STRING_KEY_NUMBER", "$/PEF/SET"),
    });
}

/// The key's string, if the key is for the filter that is asked about.
Script readKey()
{
    return script({
        selectKey(),
        send("GET://BMC/PEF/DATA"),
        If("$COMPLETION_CODE != 0", {Throw(ownCode)}),
        readField("GET://BMC/PEF/ALERT_STRING_KEY[]/FILTER", "$KIND", ownCode),
        readField("GET://BMC/PEF/ALERT_STRING_KEY[]/NUMBER", "$FIELD", ownCode),
        Map("$KIND", "MASK", "7F", "$KIND"),
        Map("$KIND", "HEX2DEC", "$KIND"),
        If("$KIND != $FILTER_NUMBER_IN_DEC", {returnText("NONE")}),
        decode({.name = "NUMBER", .codec = Codec::number, .mask = 0x7F}),
        Return("$RESULT"),
    });
}

Script writeKey()
{
    return script({
        selectKey(),
        encode("$ALERT_STRING_NUMBER", {.name = "NUMBER", .codec = Codec::number, .mask = 0x7F}),
        Copy(":NULL", "$RECORD"),
        Append("$ALERT_STRING_KEY_NUMBER", "$FILTER_NUMBER", "$ALERT_STRING_NUMBER", "$RECORD"),
        sendOrThrow("SET://BMC/PEF/DATA", ownCode),
    });
}

} // namespace pefStrings

void addPefStrings(Stores& stores)
{
    using namespace pefStrings;
    constexpr char key[] = "//BMC/PEF/ALERT_STRING_KEY[]/FILTER[]/ALERT_STRING_NUMBER";
    addFilter(stores, "GET://BMC/PEF/ALERT_STRING_KEY[]/FILTER", "3");
    addFilter(stores, "GET://BMC/PEF/ALERT_STRING_KEY[]/NUMBER", "4");
    addTemplate(stores, "GET://BMC/PEF/ALERT_STRING[]/RAW", readString());
    addTemplate(stores, "SET://BMC/PEF/ALERT_STRING[]/RAW", writeString());
    addTemplate(stores, std::string("GET:") + key, readKey());
    addTemplate(stores, std::string("SET:") + key, writeKey());
}

} // namespace Module::BMCConfig

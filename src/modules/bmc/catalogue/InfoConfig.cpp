#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/InfoAreas.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// What the BMC tells of itself by the commands of the standard: versions, state, self test, GUID (IPMI 2.0, chapters 20
// and 22). Fields are numbered in the reply's text, where 0 is the completion code.

namespace Module::BMCConfig {

using namespace steps;

namespace infoConfig {

constexpr PacketRow packets[] = {
    {"GET://BMC/INFO/ACPI_POWER_STATE", "GET_ACPI_POWER_STATE"},
    {"GET://BMC/INFO/DEVICE_ID", "GET_DEVICE_ID"},
    {"GET://BMC/INFO/MASTER_READ_WRITE", "MASTER_WRITE_READ", "$BUS_ID $SLAVE_ADDRESS $READ_COUNT $WRITE_DATA"},
    {"GET://BMC/INFO/SELF_TEST_RESULTS", "GET_SELF_TEST_RESULTS"},
    {"GET://BMC/INFO/SYSTEM_GUID", "GET_SYSTEM_GUID"},
};

/// Get Device ID counts: 3 and 4 firmware revision, 5 IPMI version, 12 to 15 auxiliary firmware revision.
constexpr TextRow filters[] = {
    {"GET://BMC/INFO/ACPI_SYS_POWER_STATE", "1"},
    {"GET://BMC/INFO/BOOT_MAJOR", "12"},
    {"GET://BMC/INFO/BOOT_MINOR", "13"},
    {"GET://BMC/INFO/IPMI_VERSION_RAW", "5"},
    {"GET://BMC/INFO/MODE_RAW", "3"},
    {"GET://BMC/INFO/OPCODE_MAJOR", "3"},
    {"GET://BMC/INFO/OPCODE_MINOR", "4"},
    {"GET://BMC/INFO/PIA_MAJOR", "14"},
    {"GET://BMC/INFO/PIA_MINOR", "15"},
    {"GET://BMC/INFO/SELF_TEST_FAULTS", "2"},
    {"GET://BMC/INFO/SELF_TEST_RESULTS", "1"},
    {"GET://BMC/INFO/SELF_TEST_RESULTS_RAW", "1 2"},
    {"GET://BMC/INFO/SYSTEM_GUID", "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16"},
    {"GET://BMC/INFO/UUID", "16 15 14 13 12 11 10 9 8 7 6 5 4 3 2 1"},
    {"GET://BMC/INFO/VERSION", "3"},
    {"GET://BMC/INFO/VERSION1", "4"},
    {"GET://BMC/INFO/VERSION2_LSB", "14"},
    {"GET://BMC/INFO/VERSION2_MSB", "15"},
};

void addInfoTables(Stores& stores)
{
    const TableRow tables[] = {
        {
            // IPMI 2.0, 20.7: 08h is asleep, whichever of S1 to S3; 0Ah is soft-off forced by override.
            .key = "GET://BMC/INFO/ACPI_SYS_POWER_STATE",
            .pairs = {{"0", "S0/G0"},
                      {"1", "S1"},
                      {"2", "S2"},
                      {"3", "S3"},
                      {"4", "S4"},
                      {"5", "S5/G2"},
                      {"6", "S4/S5"},
                      {"7", "G3"},
                      {"8", "SLEEPING"},
                      {"9", "G1"},
                      {"A", "S5 OVERRIDE"},
                      {"20", "LEGACY ON"},
                      {"21", "LEGACY OFF"},
                      {"2A", "UNKNOWN"}},
        },
        {.key = "GET://BMC/INFO/MODE", .pairs = {{"0", "OPERATIONAL"}, {"80", "UPDATE"}}},
        {
            // IPMI 2.0, 20.4; what is not listed is the device's own failure code.
            .key = "GET://BMC/INFO/SELF_TEST_RESULTS",
            .pairs = {{"55", "NO_ERROR"}, {"56", "NOT_IMPLEMENTED"}, {"57", "CORRUPTED"}, {"58", "FATAL_ERROR"}},
        },
        {
            .key = "GET://BMC/INFO/SELF_TEST_FAULTS",
            .pairs = {{"1", "OPERATIONAL_FIRMWARE"},
                      {"2", "BOOT_BLOCK"},
                      {"4", "FRU_INTERNAL_USE_AREA"},
                      {"8", "SDR_REPOSITORY_EMPTY"},
                      {"10", "IPMB_LINES"},
                      {"20", "FRU_ACCESS"},
                      {"40", "SDR_ACCESS"},
                      {"80", "SEL_ACCESS"}},
        },
    };
    addTables(stores, tables);
}

constexpr ReadRow reads[] = {
    {.key = "GET://BMC/INFO/ACPI_SYS_POWER_STATE",
     .packet = "GET://BMC/INFO/ACPI_POWER_STATE",
     .map = "MASK 7F",
     .table = "GET://BMC/INFO/ACPI_SYS_POWER_STATE",
     .absent = "NOT SUPPORTED"},
    {.key = "GET://BMC/INFO/BOOT_MAJOR", .packet = "GET://BMC/INFO/DEVICE_ID"},
    {.key = "GET://BMC/INFO/BOOT_MINOR", .packet = "GET://BMC/INFO/DEVICE_ID"},
    {.key = "GET://BMC/INFO/IPMI_VERSION_RAW", .packet = "GET://BMC/INFO/DEVICE_ID"},
    {.key = "GET://BMC/INFO/MODE",
     .packet = "GET://BMC/INFO/DEVICE_ID",
     .filter = "GET://BMC/INFO/MODE_RAW",
     .map = "MASK 80",
     .table = "GET://BMC/INFO/MODE"},
    {.key = "GET://BMC/INFO/MODE_RAW", .packet = "GET://BMC/INFO/DEVICE_ID", .map = "MASK 80"},
    {.key = "GET://BMC/INFO/OPCODE_MAJOR", .packet = "GET://BMC/INFO/DEVICE_ID", .map = "MASK 7F"},
    {.key = "GET://BMC/INFO/OPCODE_MINOR", .packet = "GET://BMC/INFO/DEVICE_ID"},
    {.key = "GET://BMC/INFO/PIA_MAJOR", .packet = "GET://BMC/INFO/DEVICE_ID"},
    {.key = "GET://BMC/INFO/PIA_MINOR", .packet = "GET://BMC/INFO/DEVICE_ID"},
    {.key = "GET://BMC/INFO/SELF_TEST_RESULTS_RAW",
     .packet = "GET://BMC/INFO/SELF_TEST_RESULTS",
     .separator = ":SPACE"},
};

/// Versions of the parts of the BMC's firmware. Boards whose auxiliary revision holds the boot block's and the platform
/// information area's versions keep them there; a BMC may leave the auxiliary revision out.
struct AreaRow {
    const char* key;
    const char* majorFilter;
    const char* minorFilter;
};
constexpr AreaRow areas[] = {
    {"GET://BMC/INFO/BOOT_AREA_VERSION", "GET://BMC/INFO/BOOT_MAJOR", "GET://BMC/INFO/BOOT_MINOR"},
    {"GET://BMC/INFO/OP_AREA_VERSION", "GET://BMC/INFO/OPCODE_MAJOR", "GET://BMC/INFO/OPCODE_MINOR"},
    {"GET://BMC/INFO/PIA_AREA_VERSION", "GET://BMC/INFO/PIA_MAJOR", "GET://BMC/INFO/PIA_MINOR"},
};

/// Formats `front` and `digits`, the latter with a "0" in front if it is but one digit, into `destination`.
Steps formatTwoDigits(std::vector<std::string> front, const std::string& digits, const std::string& destination)
{
    std::vector<std::string> padded = front;
    padded.insert(padded.end(), {"0", digits, destination});
    front.insert(front.end(), {digits, destination});
    return script({
        String_Length(digits, "$SIZE"),
        If("$SIZE == 1", {makeStep(Opcode::FormatString, padded)}),
        If("$SIZE > 1", {makeStep(Opcode::FormatString, front)}),
    });
}

/// Firmware revision and release number, the latter in the last two bytes of the auxiliary revision.
Script versionScript()
{
    return script({
        IPMI("GET://BMC/INFO/DEVICE_ID", "$BUF"),
        IPMIResponse("$BUF", "GET://BMC/INFO/VERSION", "$BUFFER"),
        IPMIResponse("$BUF", "GET://BMC/INFO/VERSION1", "$BUFFER1"),
        IPMIResponse("$BUF", "GET://BMC/INFO/VERSION2_MSB", "$BUFFER2"),
        IPMIResponse("$BUF", "GET://BMC/INFO/VERSION2_LSB", "$BUFFER3"),
        Map("$BUFFER", "MASK", "7F", "$BUFFER"),
        If("$BUFFER1 != IPMI_RESPONSE_ERROR",
           {
               formatTwoDigits({"$BUFFER", "."}, "$BUFFER1", "$TEMP_VERSION"),
               formatTwoDigits({"$BUFFER2"}, "$BUFFER3", "$TEMP"),
               Map("$TEMP", "HEX2DEC", "$RELEASE_NUMBER"),
               FormatString("$TEMP_VERSION", ".", "$RELEASE_NUMBER", "$RESULT"),
               Return("$RESULT"),
           }),
        returnText("0.0"),
    });
}

/// The version byte is BCD with its digits swapped: 51h is 1.5 (IPMI 2.0, 20.1).
Script ipmiVersionScript()
{
    return script({
        sendAndCheck("GET://BMC/INFO/DEVICE_ID"),
        readField("GET://BMC/INFO/IPMI_VERSION_RAW", "$VERSION", "$COMPLETION_CODE"),
        returnBcdVersion("$VERSION"),
    });
}

/// The result in a word, and for corrupted data which of it: "CORRUPTED: SDR_ACCESS,SEL_ACCESS".
Script selfTestScript()
{
    return script({
        send("GET://BMC/INFO/SELF_TEST_RESULTS"),
        answerIfAbsent("NOT SUPPORTED"),
        checkCode(),
        readField("GET://BMC/INFO/SELF_TEST_RESULTS", "$RESULT", "$COMPLETION_CODE"),
        LookupTable("$RESULT", "GET://BMC/INFO/SELF_TEST_RESULTS", "$RESULT"),
        If("$RESULT == ERROR", {returnText("DEVICE_SPECIFIC")}),
        If("$RESULT != CORRUPTED", {Return("$RESULT")}),
        readField("GET://BMC/INFO/SELF_TEST_FAULTS", "$FAULTS", "$COMPLETION_CODE"),
        Copy(":NULL", "$NAMES"),
        For("BIT", "0", "7",
            {
                Map("1", "LEFT_SHIFT", "$BIT", "$FAULT"),
                Map("$FAULTS", "MASK", "$FAULT", "$FAULT"),
                If("$FAULT != 0",
                   {
                       LookupTable("$FAULT", "GET://BMC/INFO/SELF_TEST_FAULTS", "$NAME"),
                       Append("$NAME", "$NAMES"),
                   }),
            }),
        Join("$NAMES", ":COMMA", "$NAMES"),
        FormatString("$RESULT", ": ", "$NAMES", "$RESULT"),
        Return("$RESULT"),
    });
}

/// Reads the GUID's bytes in the filter's order, two digits each, into $GUID.
Steps readGuid(const char* filter)
{
    return script({
        send("GET://BMC/INFO/SYSTEM_GUID"),
        answerIfAbsent("NOT SUPPORTED"),
        checkCode(),
        readField(filter, "$GUID", "$COMPLETION_CODE"),
        Prepend("$GUID", "0", "2", "$GUID"),
    });
}

Script systemGuidScript()
{
    return script({
        readGuid("GET://BMC/INFO/SYSTEM_GUID"),
        Flatten("$GUID", "$RESULT"),
        Return("$RESULT"),
    });
}

/// The usual text form. The BMC sends the node first and the low time last, each low byte first (IPMI 2.0, 20.8), so
/// the text is the bytes from the last to the first.
Script uuidScript()
{
    Script whole = readGuid("GET://BMC/INFO/UUID");
    constexpr std::pair<const char*, const char*> fields[] = {
        {"0-4", "$TIME_LOW"}, {"4-6", "$TIME_MID"}, {"6-8", "$TIME_HIGH"}, {"8-10", "$CLOCK"}, {"10-SIZE", "$NODE"}};
    for (const auto& [range, field] : fields)
        whole = script({whole, Read("$GUID", range, field), Flatten(field, field)});
    return script({
        whole,
        FormatString("$TIME_LOW", "-", "$TIME_MID", "-", "$TIME_HIGH", "-", "$CLOCK", "-", "$NODE", "$RESULT"),
        Return("$RESULT"),
    });
}

/// A transfer on one of the BMC's private buses (IPMI 2.0, 22.11), given by the parameters BUS_ID, SLAVE_ADDRESS,
/// READ_COUNT and WRITE_DATA in hexadecimal text.
Script masterReadWriteScript()
{
    return script({
        require("$BUS_ID"),
        require("$SLAVE_ADDRESS"),
        require("$READ_COUNT"),
        returnData("GET://BMC/INFO/MASTER_READ_WRITE"),
    });
}

} // namespace infoConfig

namespace steps {

Steps returnVersion(const std::string& majorFilter, const std::string& minorFilter, const std::string& error)
{
    using namespace infoConfig;
    return script({
        IPMIResponse("$BUFFER", majorFilter, "$MAJOR"),
        IPMIResponse("$BUFFER", minorFilter, "$MINOR"),
        If("$MAJOR == ERROR OR $MINOR == ERROR", {Throw(error)}),
        Map("$MAJOR", "MASK", "7F", "$MAJOR"),
        Prepend("$MINOR", "0", "2", "$MINOR"),
        FormatString("$MAJOR", ".", "$MINOR", "$RESULT"),
        Return("$RESULT"),
    });
}

} // namespace steps

InfoConfig::InfoConfig(Stores& stores)
{
    using namespace infoConfig;
    addPackets(stores, packets);
    addFilters(stores, filters);
    addInfoTables(stores);
    addReads(stores, reads);
    for (const AreaRow& area : areas)
        addTemplate(stores, area.key,
                    script({
                        sendAndCheck("GET://BMC/INFO/DEVICE_ID"),
                        returnVersion(area.majorFilter, area.minorFilter, "ERROR_AREA_NOT_PRESENT"),
                    }));

    // A child that fails ends the walk of its parent, so only those are named that every BMC can answer, if only by
    // "NOT SUPPORTED"; the rest are there for who asks by name.
    addTemplate(stores, "GET://BMC/INFO",
                branch({"VERSION", "OP_AREA_VERSION", "IPMIVERSION", "MODE", "PRODUCT", "PRODUCTID", "ID", "TYPE",
                        "MOTHERBOARD", "SELF_TEST_RESULTS", "ACPI_SYS_POWER_STATE", "SYSTEM_GUID", "UUID"}));
    addTemplate(stores, "GET://BMC/INFO/SUPPORT",
                branch({"DIAGNOSTIC_INTERRUPT", "OEM_ACTION", "POWER_CYCLE", "RESET", "POWER_DOWN", "ALERT"}));
    addTemplate(stores, "GET://BMC/INFO/VERSION", versionScript());
    addTemplate(stores, "GET://BMC/INFO/IPMIVERSION", ipmiVersionScript());
    addTemplate(stores, "GET://BMC/INFO/SELF_TEST_RESULTS", selfTestScript());
    addTemplate(stores, "GET://BMC/INFO/SYSTEM_GUID", systemGuidScript());
    addTemplate(stores, "GET://BMC/INFO/UUID", uuidScript());
    addTemplate(stores, "GET://BMC/INFO/MASTER_READ_WRITE", masterReadWriteScript());
    addTemplate(stores, "GET://BMC/INFO/SDRVERSION",
                script({Template("GET://BMC/SDR/INFO/VERSION"), Return("$RESULT")}));

    addProducts(stores);
    addOemInfo(stores);
}

} // namespace Module::BMCConfig

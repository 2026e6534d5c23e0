#include "common/Util.hpp"
#include "ipmi/Hex.hpp"
#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Fields.hpp"
#include "modules/bmc/catalogue/OemSteps.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// The manufacturer's own beside INFO and FIRMWARE: services of the BMC, cold redundancy of the power supplies, what
// happens at an overload, signals, and what a recovery image holds. No public document has the places of the services'
// bits nor the numbers of the cold redundancy's parameters; they are read under the names that they have, and are
// written with the caller's word (FORCE) only.

namespace Module::BMCConfig {

using namespace steps;

namespace oemConfig {

constexpr TextRow constants[] = {
    {"$/OEM/COMMAND", ""}, // given by the caller
    {"$/OEM/DATA", ""},
    {"$/OEM/SIGNAL_INSTANCE", "00"},
};

constexpr PacketRow packets[] = {
    {"GET://BMC/OEM/BMCSERVICE/STATUS", "GET_BMC_SERVICES"},
    {"GET://BMC/OEM/GET_CR_CONFIGURATION", "GET_COLD_REDUNDANCY", "$/OEM/CR_PARAMETER"},
    {"GET://BMC/OEM/PRODUCTID", "GET_DEVICE_ID"},
    {"GET://BMC/OEM/REVID", "GET_DEVICE_ID"},
    {"GET://BMC/OEM/SHUTDOWNPOLICY", "GET_SHUTDOWN_POLICY"},
    {"GET://BMC/OEM[]/SM_SIGNAL", "GET_MANAGEMENT_SIGNAL", "$OEM_NUMBER $/OEM/SIGNAL_INSTANCE 00"}, // 0: only read
    {"SET://BMC/OEM/BMCSERVICE/STATUS", "CONTROL_BMC_SERVICES", "$STATE $SERVICES 00"},
    {"SET://BMC/OEM/SET_CR_CONFIGURATION", "SET_COLD_REDUNDANCY", "$/OEM/CR_PARAMETER $/OEM/CR_DATA"},
    {"SET://BMC/OEM/SHUTDOWNPOLICY", "SET_SHUTDOWN_POLICY", "$SHUTDOWNPOLICY"},
    {"SET://BMC/OEM/TIMEOUT_FOR_ROTATION_PERIOD", "SET_COLD_REDUNDANCY", "04 $TIMEOUT_FOR_ROTATION_PERIOD"},
};

constexpr TextRow unnumbered[] = {
    {"GET://BMC/GET_VOLTAGE_SENSOR_NAME",
     "$/BMC/BASE_ADDRESS $/IPMI/ORVEL_PLATFORM_APP 00 $/OEM/COMMAND $/BMC/VOLTAGE_SENSOR_OFFSET $/OEM/DATA"},
    {"GET://BMC/OEM[]/PROC_TDC",
     "$/BMC/BASE_ADDRESS $/IPMI/ORVEL_PLATFORM_APP 00 $/OEM/COMMAND $OEM_NUMBER $/OEM/DATA"},
    {"GET://BMC/VLN_INFO/RECOVERY", unnumberedCommand},
};

constexpr BranchRow branches[] = {
    {"GET://BMC/OEM", "BMCSERVICE COLD_REDUNDANCY_STATUS CR_RANK_ORDER CR_ROTATION_STATUS PRODUCTID PRODUCTID_RAW "
                      "REVID SHUTDOWNPOLICY TIMEOUT_FOR_ROTATION_PERIOD"},
    {"GET://BMC/OEM/CR_RANK_ORDER", "RANK_ORDER RANK_TYPE"},
    {"GET://BMC/VLN_INFO/RECOVERY", "BKC_VERSION BMC_VERSION REGION SDR_VERSION VLN_SECURITY_VERSION"},
};

constexpr ReadRow reads[] = {
    {.key = "GET://BMC/OEM/PRODUCTID", .fields = "11 10", .isNumber = true},
    {.key = "GET://BMC/OEM/PRODUCTID_RAW",
     .packet = "GET://BMC/OEM/PRODUCTID",
     .fields = "10 11",
     .separator = ":SPACE"},
    {.key = "GET://BMC/OEM/REVID", .fields = "2", .map = "MASK F, HEX2DEC"},
};

constexpr Field services[] = {
    {"KVM", 0, 1, Codec::word, 0x08},
    {"RMCP", 0, 1, Codec::word, 0x01},
    {"SSH", 0, 1, Codec::word, 0x04},
    {"WEB", 0, 1, Codec::word, 0x02},
};

/// One parameter of the cold redundancy; the answer has the parameter's number in front.
struct Redundancy {
    const char* given;
    Field field;
};

constexpr Redundancy redundancies[] = {
    {"$/OEM/CR_PARAMETER 01", {"COLD_REDUNDANCY_STATUS", 0, 1, Codec::word}},
    {"$/OEM/CR_PARAMETER 02", {"CR_ROTATION_STATUS", 0, 1, Codec::word}},
    {"$/OEM/CR_PARAMETER 03", {"CR_RANK_ORDER/RANK_TYPE", 0, 1, Codec::word, 0xFF, "OEM/RANK_TYPE"}},
    {"$/OEM/CR_PARAMETER 04", {"TIMEOUT_FOR_ROTATION_PERIOD", 0, 4, Codec::number}}, // in seconds
};

/// Parts of what a recovery image holds, in the order of the answer.
constexpr TextRow recoveryParts[] = {
    {"GET://BMC/VLN_INFO/RECOVERY/BKC_VERSION", "6 7"},
    {"GET://BMC/VLN_INFO/RECOVERY/BMC_VERSION", "2 3"},
    {"GET://BMC/VLN_INFO/RECOVERY/REGION", "1"},
    {"GET://BMC/VLN_INFO/RECOVERY/SDR_VERSION", "4 5"},
    {"GET://BMC/VLN_INFO/RECOVERY/VLN_SECURITY_VERSION", "8"},
};

constexpr char setError[] = "ERROR_CR_CONFIGURATION_SET";

constexpr Record recordOf(const char* get, const char* given, unsigned first)
{
    return {.path = "OEM", .get = get, .first = first, .given = given, .absentCode = "128"};
}

/// One request for what is to be on, and one for what is to be off.
Steps sendServices(const char* mask, const char* state)
{
    return If(std::string(mask) + " != 0",
              {Copy(state, "$STATE"), Copy(mask, "$SERVICES"), sendAndCheck("SET://BMC/OEM/BMCSERVICE/STATUS")});
}

/// Any of the services by name, each ENABLE or DISABLE.
Script servicesScript()
{
    Steps sorted;
    for (const Field& service : services) {
        const std::string symbol = std::string("$") + service.name;
        const std::string bit = ipmi::hexByte(static_cast<std::uint8_t>(service.mask));
        sorted = script({
            sorted,
            String_Length(symbol, "$SIZE"),
            If("$SIZE > 0",
               {LookupTable(symbol, "SET://BMC/FLAG", "$FLAG"), If("$FLAG == 1", {Map("$ON", "BIT_OR", bit, "$ON")}),
                If("$FLAG == 0", {Map("$OFF", "BIT_OR", bit, "$OFF")})}),
        });
    }
    return script({
        requireForce(),
        FormatString("$KVM", "$RMCP", "$SSH", "$WEB", "$GIVEN"),
        require("$GIVEN"),
        Copy("0", "$ON"),
        Copy("0", "$OFF"),
        sorted,
        sendServices("$ON", "01"),
        sendServices("$OFF", "00"),
        returnText("SUCCESS"),
    });
}

/// For each supply its rank, hexadecimal.
Script rankOrderScript()
{
    return script({
        Copy("05", "$/OEM/CR_PARAMETER"),
        send("GET://BMC/OEM/GET_CR_CONFIGURATION"),
        answerIfAbsent("NOT_SUPPORTED"),
        checkCode(),
        returnBytes(2),
    });
}

void addRedundancy(Stores& stores)
{
    constexpr Field period{
        .name = "TIMEOUT_FOR_ROTATION_PERIOD", .count = 4, .codec = Codec::number, .high = 0xFFFFFFFF};
    for (const Redundancy& row : redundancies)
        addFields(stores, recordOf("OEM/GET_CR_CONFIGURATION", row.given, 2), {&row.field, 1});
    addTemplate(stores, "GET://BMC/OEM/CR_RANK_ORDER/RANK_ORDER", rankOrderScript());
    addTemplate(
        stores, "SET://BMC/OEM/CR_RANK_ORDER",
        script({requireForce(), encodeBytes("$CR_RANK_ORDER"), Copy("05", "$/OEM/CR_PARAMETER"),
                Copy("$CR_RANK_ORDER", "$/OEM/CR_DATA"), sendOrThrow("SET://BMC/OEM/SET_CR_CONFIGURATION", setError)}));
    addTemplate(stores, "SET://BMC/OEM/SET_CR_CONFIGURATION", // the parameter's number and its bytes
                script({requireForce(), encodeBytes("$SET_CR_CONFIGURATION"), Copy(":NULL", "$/OEM/CR_PARAMETER"),
                        Copy("$SET_CR_CONFIGURATION", "$/OEM/CR_DATA"),
                        sendOrThrow("SET://BMC/OEM/SET_CR_CONFIGURATION", setError)}));
    addTemplate(stores, "SET://BMC/OEM/TIMEOUT_FOR_ROTATION_PERIOD",
                script({requireForce(), encode("$TIMEOUT_FOR_ROTATION_PERIOD", period),
                        sendOrThrow("SET://BMC/OEM/TIMEOUT_FOR_ROTATION_PERIOD", setError)}));
}

/// What only a caller with the board's documentation can ask.
void addUnnumbered(Stores& stores)
{
    for (const TextRow& row : recoveryParts)
        addTemplate(stores, row.key,
                    script({takeCommand(), sendAndCheck("GET://BMC/VLN_INFO/RECOVERY"),
                            readField(row.key, "$FIELD", "$COMPLETION_CODE"), Join("$FIELD", ".", "$RESULT"),
                            Return("$RESULT")}));
    addFilters(stores, recoveryParts);
    addTemplate(stores, "GET://BMC/OEM[]/GET_PROC_TDC",
                script({assertSubscript("OEM", 0, 255), takeCommand(), returnData("GET://BMC/OEM[]/PROC_TDC")}));
    addTemplate(stores, "GET://BMC/GET_VOLTAGE_SENSOR_NAME",
                script({takeCommand(), require("$/BMC/VOLTAGE_SENSOR_OFFSET"),
                        sendAndCheck("GET://BMC/GET_VOLTAGE_SENSOR_NAME"), Split("$BUFFER", ":SPACE", "$FIELD"),
                        Exclude("$FIELD", "GET://BMC/COMPLETION_CODE", "$FIELD"), Map("$FIELD", "HEX2STR", "$FIELD"),
                        Flatten("$FIELD", "$RESULT"), Return("$RESULT")}));
}

} // namespace oemConfig

namespace steps {

Steps takeCommand()
{
    using namespace oemConfig;
    return script({
        takeRequired("$/OEM/COMMAND"),
        encode("$/OEM/COMMAND", {.name = "COMMAND"}),
        take("$/OEM/DATA"),
        String_Length("$/OEM/DATA", "$SIZE"),
        If("$SIZE > 0", {encodeBytes("$/OEM/DATA")}),
    });
}

} // namespace steps

OemConfig::OemConfig(Stores& stores)
{
    using namespace oemConfig;
    const TableRow tables[] = {{"GET://BMC/OEM/RANK_TYPE", {{"0", "BMC"}, {"1", "USER"}}}};
    constexpr Field shutdown[] = {{"SHUTDOWNPOLICY", 0, 1, Codec::word}};
    addConstants(stores, constants);
    addPackets(stores, packets);
    addPackets(stores, unnumbered);
    addTables(stores, tables);
    addBranches(stores, branches);
    addReads(stores, reads);
    Record service = recordOf("OEM/BMCSERVICE/STATUS", "", 1), policy = recordOf("OEM/SHUTDOWNPOLICY", "", 1);
    service.path = "OEM/BMCSERVICE";
    addFieldBranch(stores, service, services);
    policy.set = "OEM/SHUTDOWNPOLICY";
    addFields(stores, policy, shutdown);
    addRedundancy(stores);
    addUnnumbered(stores);
    addTemplate(stores, "SET://BMC/OEM/BMCSERVICE", servicesScript());
    addTemplate(stores, "GET://BMC/OEM[]/GET_SM_SIGNAL",
                script({assertSubscript("OEM", 0, 255), take("$/OEM/SIGNAL_INSTANCE"),
                        encode("$/OEM/SIGNAL_INSTANCE", {.name = "SIGNAL_INSTANCE"}),
                        returnData("GET://BMC/OEM[]/SM_SIGNAL")}));
}

} // namespace Module::BMCConfig

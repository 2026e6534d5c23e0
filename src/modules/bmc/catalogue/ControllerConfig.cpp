#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/InfoAreas.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// Any controller on the board, by its slave address. The transfer mode, in which a controller takes new firmware and
// does nothing else, is the manufacturer's: the caller must say that it means it (FORCE).

namespace Module::BMCConfig {

using namespace steps;

namespace controllerConfig {

constexpr char target[] = "$CONTROLLER_NUMBER", absent[] = "ERROR_CONTROLLER_NOT_PRESENT";

constexpr PacketRow packets[] = {
    {"GET://BMC/CONTROLLER/FIRMWARE_VERSION", "GET_DEVICE_ID", "", target},
    {"SET://BMC/CONTROLLER/ENTERFWXFERMODE", "ENTER_FIRMWARE_TRANSFER_MODE", "$/IPMI/FIRMWARE_SECRET_KEY", target},
    {"SET://BMC/CONTROLLER/EXITFWXFERMODE", "EXIT_FIRMWARE_TRANSFER_MODE", "", target},
};

/// A controller that is not there answers nothing, or not with success.
Steps identify()
{
    return script({
        requireAddress(target),
        sendWithoutThrow("GET://BMC/CONTROLLER/FIRMWARE_VERSION"),
        If("$COMPLETION_CODE != 0", {Throw(absent)}),
    });
}

/// The word that the firmware wants to hear.
Steps makeKey()
{
    return Map("ORVEL", "STR2HEX", "$/IPMI/FIRMWARE_SECRET_KEY");
}

Script writeMode()
{
    return script({
        requireForce(),
        requireAddress(target),
        LookupTable("$MODE", "SET://BMC/CONTROLLER[]/MODE", "$WANTED"),
        makeKey(),
        If("$WANTED == UPDATE", {sendAndCheck("SET://BMC/CONTROLLER/ENTERFWXFERMODE")}),
        If("$WANTED == OPERATIONAL", {sendAndCheck("SET://BMC/CONTROLLER/EXITFWXFERMODE")}),
        Map(target, "HEX2DEC", "$CONTROLLER_NUMBER_IN_DEC"),
        FormatString("GET://BMC/CONTROLLER[", "$CONTROLLER_NUMBER_IN_DEC", "]/MODE", "$QUERY"),
        // a controller that starts anew takes its time
        Poll("$QUERY", "$WANTED", "3", "20", "$RESPONSE"),
        If("$RESPONSE != TRUE", {returnText("FAILURE")}),
        returnText("SUCCESS"),
    });
}

} // namespace controllerConfig

ControllerConfig::ControllerConfig(Stores& stores)
{
    using namespace controllerConfig;
    addPackets(stores, packets);
    addTable(stores, "SET://BMC/CONTROLLER[]/MODE", {{"OPERATIONAL", "OPERATIONAL"}, {"UPDATE", "UPDATE"}});
    addTemplate(
        stores, "GET://BMC/CONTROLLER[]/FIRMWARE_VERSION",
        script({identify(), returnVersion("GET://BMC/INFO/OPCODE_MAJOR", "GET://BMC/INFO/OPCODE_MINOR", absent)}));
    addTemplate(stores, "GET://BMC/CONTROLLER[]/MODE",
                script({
                    identify(),
                    readField("GET://BMC/INFO/MODE_RAW", "$FIELD", absent),
                    Map("$FIELD", "MASK", "80", "$FIELD"),
                    LookupTable("$FIELD", "GET://BMC/INFO/MODE", "$RESULT"),
                    Return("$RESULT"),
                }));
    addTemplate(stores, "SET://BMC/CONTROLLER[]/MODE", writeMode());
    // The repository is the BMC's; no other controller keeps one.
    addTemplate(stores, "SET://BMC/CONTROLLER[]/SDR/CLEAR",
                script({
                    Map(target, "HEX2DEC", "$CONTROLLER_NUMBER_IN_DEC"),
                    If("$CONTROLLER_NUMBER_IN_DEC != 32", {Throw(absent)}),
                    Template("SET://BMC/SDR/CLEAR"),
                    Return("$RESULT"),
                }));
}

} // namespace Module::BMCConfig

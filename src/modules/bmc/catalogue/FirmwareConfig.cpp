#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Fields.hpp"
#include "modules/bmc/catalogue/OemSteps.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// Firmware: its transfer, resets, and the logs that a BMC keeps for debugging. The commands of the network function 08h
// and of the chipset engine's areas are the manufacturer's: what they do to a board is not public, so that each write
// needs the caller's word (FORCE). Resets and the initialization agent are the standard's
// (IPMI 2.0, 20.2, 20.3, 33.21).

namespace Module::BMCConfig {

using namespace steps;

namespace firmwareConfig {

constexpr char engine[] = "$/BMC/CHIPSET_ENGINE_ADDRESS", hotSwap[] = "$/BMC/HOT_SWAP_ADDRESS";

constexpr PacketRow packets[] = {
    {"GET://BMC/FIRMWARE/RANGE_CHECKSUM", "GET_FIRMWARE_RANGE_CHECKSUM", "$RANGE"},
    {"GET://BMC/FIRMWARE/READ", "READ_FIRMWARE", "$OFFSET $LENGTH"},
    {"GET://BMC/FIRMWARE/RUN_INIT_AGENT", "RUN_INITIALIZATION_AGENT", "00"},
    {"GET://BMC/FIRMWARE/SDR/REPOSITORY_ALLOCATION_INFO", "$/SDR/REPOSITORY_ALLOCATION_INFO"},
    {"GET://BMC/FIRMWARE/SDR/REPOSITORY_INFO", "$/SDR/ALLOCATION_INFO"},
    {"SET://BMC/FIRMWARE/CLOSE_AREA", "CLOSE_AREA", "$CLOSE_AREA", engine},
    {"SET://BMC/FIRMWARE/COLDRESETME", "COLD_RESET", "", engine},
    {"SET://BMC/FIRMWARE/ENTERFWXFERMODE", "ENTER_FIRMWARE_TRANSFER_MODE", "$/IPMI/FIRMWARE_SECRET_KEY"},
    {"SET://BMC/FIRMWARE/EXITFWXFERMODE", "EXIT_FIRMWARE_TRANSFER_MODE"},
    {"SET://BMC/FIRMWARE/FORCE_PX_RECOVERY", "FORCE_ENGINE_RECOVERY", "57 01 00 01", engine},
    {"SET://BMC/FIRMWARE/OPEN_AREA", "OPEN_AREA", "$OPEN_AREA", engine},
    {"SET://BMC/FIRMWARE/PROGRAM", "PROGRAM_FIRMWARE_DATA", "$PROGRAM"},
    {"SET://BMC/FIRMWARE/PROGRAM_SEGMENT", "PROGRAM_FIRMWARE_SEGMENT", "$PROGRAM_SEGMENT"},
    {"SET://BMC/FIRMWARE/REGISTER_AREA", "REGISTER_AREA", "$REGISTER_AREA", engine},
    {"SET://BMC/FIRMWARE/RESET", "COLD_RESET"},
    {"SET://BMC/FIRMWARE/RESETME", "WARM_RESET", "", engine},
    {"SET://BMC/FIRMWARE/RESTORE_CONFIGURATION", "RESTORE_CONFIGURATION", "43 4C 52 AA"}, // "CLR", begin
    {"SET://BMC/FIRMWARE/RESTORE_PX_CONFIGURATION", "FORCE_ENGINE_RECOVERY", "57 01 00 02", engine},
    {"SET://BMC/FIRMWARE/RUN_INIT_AGENT", "RUN_INITIALIZATION_AGENT", "01"},
    {"SET://BMC/FIRMWARE/SECURE_MODE_OPTIONS", "SET_SECURITY_MODE", "$SECURE_MODE_OPTIONS"},
    {"SET://BMC/FIRMWARE/WRITE_AREA", "WRITE_AREA", "$WRITE_AREA", engine},
    {"SET://BMC/PREPARE_AREA", "PREPARE_AREA", "$PREPARE_AREA", engine},
    {"SET://HSC/FIRMWARE/EXITFWXFERMODE", "EXIT_FIRMWARE_TRANSFER_MODE", "", hotSwap},
};

constexpr TextRow unnumbered[] = {
    {"GET://BMC/FIRMWARE/CONTROL_SOL_LOG", unnumberedCommand},
    {"GET://BMC/FIRMWARE/PLDB_READ", unnumberedCommand},
    {"GET://BMC/FIRMWARE/READ_SOL_LOG", unnumberedCommand},
    {"GET://BMC/FIRMWARE/SOL_LOG_STATUS", unnumberedCommand},
    {"GET://BMC/FIRMWARE/STATUS_PLATFORM_DEBUG_LOG", unnumberedCommand},
    {"SET://BMC/FIRMWARE/CONTROL_SOL_LOG", unnumberedCommand},
    {"SET://BMC/FIRMWARE/ENTER_SOL_LOG_TRANSFER_MODE", unnumberedCommand},
    {"SET://BMC/FIRMWARE/EXIT_SOL_LOG_TRANSFER_MODE", unnumberedCommand},
    {"SET://BMC/FIRMWARE/PLDB_ENTER_TRANSFER_MODE", unnumberedCommand},
    {"SET://BMC/FIRMWARE/PLDB_EXIT_TRANSFER_MODE", unnumberedCommand},
};

constexpr BranchRow branches[] = {
    {"GET://BMC/FIRMWARE/PLDB_STATUS", "LOG_FILE_SIZE TRANSFER_STATUS"},
    {"GET://BMC/FIRMWARE/SOL_LOG_STATUS", "FILE_SIZE STATUS"},
};

constexpr ReadRow reads[] = {
    {.key = "GET://BMC/FIRMWARE/PX_IMAGE_TYPE",
     .error = "ERROR_PX_NOT_PRESENT",
     .packet = "GET://BMC/INFO/MEVERSION",
     .fields = "15", // the last byte of the auxiliary revision
     .map = "MASK 3",
     .table = "GET://BMC/FIRMWARE/PX_IMAGE_TYPE"},
    {.key = "GET://BMC/FIRMWARE/RUN_INIT_AGENT",
     .fields = "1",
     .map = "MASK 1",
     .table = "GET://BMC/FIRMWARE/RUN_INIT_AGENT"},
};

/// Part of a log's status, as boards that have such logs answer: a byte of state, and the size, low byte first.
struct StatusPart {
    const char* key;
    const char* packet;
    const char* fields;
};

constexpr StatusPart statusParts[] = {
    {"GET://BMC/FIRMWARE/PLDB_STATUS/LOG_FILE_SIZE", "GET://BMC/FIRMWARE/STATUS_PLATFORM_DEBUG_LOG", "5 4 3 2"},
    {"GET://BMC/FIRMWARE/PLDB_STATUS/TRANSFER_STATUS", "GET://BMC/FIRMWARE/STATUS_PLATFORM_DEBUG_LOG", "1"},
    {"GET://BMC/FIRMWARE/SOL_LOG_STATUS/FILE_SIZE", "GET://BMC/FIRMWARE/SOL_LOG_STATUS", "5 4 3 2"},
    {"GET://BMC/FIRMWARE/SOL_LOG_STATUS/STATUS", "GET://BMC/FIRMWARE/SOL_LOG_STATUS", "1"},
};

/// What completion codes mean to the debug log's commands.
struct LogError {
    const char* code; ///< decimal
    const char* error;
};

constexpr LogError logErrors[] = {
    {"193", "ERROR_PLDB_INVALID_COMMAND"},
    {"201", "ERROR_PLDB_OFFSET_AND_LENGTH_OUTOFRANGE"},
    {"203", "ERROR_PLDB_FILE_SELECTOR_OUT_OF_RANGE"},
    {"204", "ERROR_PLDB_INVALID_DATA_FIELD"},
    {"213", "ERROR_ALREADY_IN_TRANSFER_MODE"}, // not in the present state
};

Steps throwLogError(const char* otherwise)
{
    Steps all;
    for (const LogError& row : logErrors)
        all = script({all, If(std::string("$BMC_COMPLETION_CODE == ") + row.code, {Throw(row.error)})});
    return script({all, Throw(otherwise)});
}

void addWords(Stores& stores)
{
    const TableRow tables[] = {
        {"GET://BMC/FIRMWARE/PX_IMAGE_TYPE",
         {{"0", "RECOVERY"}, {"1", "OPERATIONAL_1"}, {"2", "OPERATIONAL_2"}, {"3", "FLASH_ERROR"}}},
        {"GET://BMC/FIRMWARE/RUN_INIT_AGENT", {{"0", "IN_PROGRESS"}, {"1", "COMPLETE"}}},
        {"SET://BMC/FIRMWARE/XFERMODE", {{"OPERATIONAL", "OPERATIONAL"}, {"UPDATE", "UPDATE"}}},
        {"SET://HSC/FIRMWARE/XFERMODE", {{"OPERATIONAL", "OPERATIONAL"}}}, // there is no way in
    };
    addTables(stores, tables);
}

/// A controller that is reset may be gone before it has answered.
Script resetScript(const std::string& packet)
{
    return script({
        sendWithoutThrow(packet),
        If("$COMPLETION_CODE == 0", {returnText("SUCCESS")}),
        If("$BUFFER == CC", {returnText("SUCCESS")}),
        Throw("$COMPLETION_CODE"),
    });
}

/// Resets the BMC and sees that it comes back.
Script refreshScript()
{
    return script({
        IPMI_Without_Throw("SET://BMC/FIRMWARE/RESET", "$BUFFER"),
        Poll("GET://BMC/INFO/MODE", "OPERATIONAL", "3", "20", "$RESPONSE"),
        If("$RESPONSE != TRUE", {Throw("IPMI_RESPONSE_ERROR")}),
        returnText("SUCCESS"),
    });
}

/// In the transfer mode the BMC takes new firmware and does nothing else; it starts anew when it leaves it.
Script transferModeScript()
{
    const auto change = [](const char* packet) {
        return script({
            sendWithoutThrow(packet),
            If("$COMPLETION_CODE != 0 AND $BUFFER != CC", {Throw("$COMPLETION_CODE")}),
        });
    };
    return script({
        requireForce(),
        LookupTable("$XFERMODE", "SET://BMC/FIRMWARE/XFERMODE", "$WANTED"),
        Map("ORVEL", "STR2HEX", "$/IPMI/FIRMWARE_SECRET_KEY"),
        If("$WANTED == UPDATE", {change("SET://BMC/FIRMWARE/ENTERFWXFERMODE")}),
        If("$WANTED == OPERATIONAL", {change("SET://BMC/FIRMWARE/EXITFWXFERMODE")}),
        Poll("GET://BMC/INFO/MODE", "$WANTED", "3", "20", "$RESPONSE"),
        If("$RESPONSE != TRUE", {Throw("IPMI_RESPONSE_ERROR")}),
        returnText("SUCCESS"),
    });
}

/// The same for the front panel's controller.
Script panelModeScript()
{
    return script({
        LookupTable("$XFERMODE", "SET://BMC/FIRMWARE/XFERMODE", "$MODE"),
        Copy("$/BMC/FRONT_PANEL_ADDRESS", "$CONTROLLER_NUMBER"),
        Template("SET://BMC/CONTROLLER[]/MODE"),
        Return("$RESULT"),
    });
}

/// Bytes of the caller's, and no byte fewer than `fewest`, for a command of unknown effect.
Script forcedWrite(const std::string& name, const char* fewest)
{
    const std::string symbol = "$" + name.substr(name.rfind('/') + 1);
    return script({
        requireForce(),
        encodeBytes(symbol),
        Size(symbol, "$SIZE"),
        If(std::string("$SIZE < ") + fewest, {refuse(symbol)}),
        sendOrThrow("SET://BMC/" + name, "$COMPLETION_CODE"),
    });
}

Script forcedCommand(const std::string& key)
{
    return script({requireForce(), sendOrThrow(key, "$COMPLETION_CODE")});
}

/// What stands in the flash at an offset of the segment, or the sum over a range of it.
void addFlash(Stores& stores)
{
    constexpr Field offset{.name = "OFFSET", .count = 2, .codec = Codec::number, .high = 65535};
    constexpr Field length{.name = "LENGTH", .codec = Codec::number, .low = 1};
    constexpr Field segment{.name = "PROGRAM_SEGMENT", .count = 2, .codec = Codec::number, .high = 65535};
    addTemplate(stores, "GET://BMC/FIRMWARE/RANGE_CHECKSUM",
                script({encodeBytes("$RANGE"), returnData("GET://BMC/FIRMWARE/RANGE_CHECKSUM")}));
    addTemplate(stores, "GET://BMC/FIRMWARE/READ",
                script({encode("$OFFSET", offset), encode("$LENGTH", length), returnData("GET://BMC/FIRMWARE/READ")}));
    addTemplate(stores, "SET://BMC/FIRMWARE/PROGRAM_SEGMENT",
                script({requireForce(), encode("$PROGRAM_SEGMENT", segment),
                        sendOrThrow("SET://BMC/FIRMWARE/PROGRAM_SEGMENT", "$COMPLETION_CODE")}));
    addTemplate(stores, "SET://BMC/FIRMWARE/PROGRAM", forcedWrite("FIRMWARE/PROGRAM", "3")); // behind the offset
    addTemplate(stores, "SET://BMC/FIRMWARE/WRITE_AREA", forcedWrite("FIRMWARE/WRITE_AREA", "2"));
    for (const char* name : {"FIRMWARE/CLOSE_AREA", "FIRMWARE/OPEN_AREA", "FIRMWARE/REGISTER_AREA",
                             "FIRMWARE/SECURE_MODE_OPTIONS", "PREPARE_AREA"})
        addTemplate(stores, std::string("SET://BMC/") + name, forcedWrite(name, "1"));
}

/// The SOL log and the platform debug log.
void addLogs(Stores& stores)
{
    for (const StatusPart& row : statusParts) {
        addFilter(stores, row.key, row.fields);
        addTemplate(stores, row.key,
                    script({takeCommand(), sendAndCheck(row.packet), readField(row.key, "$FIELD", "$COMPLETION_CODE"),
                            returnNumber("$FIELD")}));
    }
    for (const char* key : {"GET://BMC/FIRMWARE/CONTROL_SOL_LOG", "GET://BMC/FIRMWARE/READ_SOL_LOG",
                            "GET://BMC/FIRMWARE/STATUS_PLATFORM_DEBUG_LOG"})
        addTemplate(stores, key, script({takeCommand(), returnData(key)}));
    for (const char* name : {"CONTROL_SOL_LOG", "ENTER_SOL_LOG_TRANSFER_MODE", "EXIT_SOL_LOG_TRANSFER_MODE"}) {
        const std::string key = std::string("SET://BMC/FIRMWARE/") + name;
        addTemplate(stores, key, script({requireForce(), takeCommand(), sendOrThrow(key, "$COMPLETION_CODE")}));
    }
    addTemplate(stores, "GET://BMC/FIRMWARE/PLDB_READ",
                script({takeCommand(), send("GET://BMC/FIRMWARE/PLDB_READ"),
                        If("$COMPLETION_CODE == 0", {joinData("$RESULT"), Return("$RESULT")}),
                        throwLogError("ERROR_PLDB_FILE_READ_FAILED")}));
    for (const char* name : {"PLDB_ENTER_TRANSFER_MODE", "PLDB_EXIT_TRANSFER_MODE"}) {
        const std::string key = std::string("SET://BMC/FIRMWARE/") + name;
        addTemplate(stores, key,
                    script({requireForce(), takeCommand(), send(key),
                            If("$COMPLETION_CODE == 0", {returnText("SUCCESS")}), throwLogError("$COMPLETION_CODE")}));
    }
}

} // namespace firmwareConfig

FirmwareConfig::FirmwareConfig(Stores& stores)
{
    using namespace firmwareConfig;
    addPackets(stores, packets);
    addPackets(stores, unnumbered);
    addWords(stores);
    addBranches(stores, branches);
    addReads(stores, reads);
    addFlash(stores);
    addLogs(stores);
    for (const char* key : {"SET://BMC/FIRMWARE/COLDRESETME", "SET://BMC/FIRMWARE/RESET", "SET://BMC/FIRMWARE/RESETME"})
        addTemplate(stores, key, resetScript(key));
    for (const char* key : {"SET://BMC/FIRMWARE/FORCE_PX_RECOVERY", "SET://BMC/FIRMWARE/RESTORE_CONFIGURATION",
                            "SET://BMC/FIRMWARE/RESTORE_PX_CONFIGURATION"})
        addTemplate(stores, key, forcedCommand(key));
    for (const char* key :
         {"GET://BMC/FIRMWARE/SDR/REPOSITORY_ALLOCATION_INFO", "GET://BMC/FIRMWARE/SDR/REPOSITORY_INFO"})
        addTemplate(stores, key, returnData(key));
    addTemplate(stores, "GET://BMC/FIRMWARE/EXITFWXFERMODE", // leaves the mode, and is harmless outside it
                sendOrThrow("SET://BMC/FIRMWARE/EXITFWXFERMODE", "$COMPLETION_CODE"));
    addTemplate(stores, "SET://BMC/FIRMWARE/REFRESH", refreshScript());
    addTemplate(stores, "SET://BMC/FIRMWARE/RUN_INIT_AGENT",
                sendOrThrow("SET://BMC/FIRMWARE/RUN_INIT_AGENT", "$COMPLETION_CODE"));
    addTemplate(stores, "SET://BMC/FIRMWARE/XFERMODE", transferModeScript());
    addTemplate(stores, "SET://HSC/FIRMWARE/XFERMODE",
                script({requireForce(), LookupTable("$XFERMODE", "SET://HSC/FIRMWARE/XFERMODE", "$WANTED"),
                        sendOrThrow("SET://HSC/FIRMWARE/EXITFWXFERMODE", "$COMPLETION_CODE")}));
    addTemplate(stores, "SET://LCP_BOOTCODE/FIRMWARE/XFERMODE", panelModeScript());
}

} // namespace Module::BMCConfig

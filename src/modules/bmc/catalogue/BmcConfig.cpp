#include "ipmi/Codes.hpp"
#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

// The root of the tree, and what every area shares: the addresses on the board and the filter for the completion code.

namespace Module::BMCConfig {

using namespace steps;

namespace bmcConfig {

/// Slave addresses in the 8-bit form.
constexpr CodeConstant constants[] = {
    {"$/BMC/BASE_ADDRESS", ipmi::address::bmc},
    {"$/BMC/CHIPSET_ENGINE_ADDRESS", ipmi::address::chipsetEngine},
    {"$/BMC/FRONT_PANEL_ADDRESS", ipmi::address::frontPanel},
    {"$/BMC/HOT_SWAP_ADDRESS", ipmi::address::hotSwap},
    {"$/BMC/SECOND_HOT_SWAP_ADDRESS", ipmi::address::secondHotSwap},
};

constexpr PacketRow packets[] = {
    {"GET://BMC/DEVICE_ID", "GET_DEVICE_ID", "", "$DEVICE_ID_NUMBER"},
    {"GET://BMC/UPDATE_STATUS", "GET_FIRMWARE_UPDATE_STATUS"},
};

constexpr TextRow filters[] = {
    {"GET://BMC/COMPLETION_CODE", "0"},
    {"GET://BMC/UPDATE_STATUS", "1"},
};

constexpr ReadRow reads[] = {
    {.key = "GET://BMC/UPDATE_STATUS", .table = "GET://BMC/UPDATE_STATUS"},
};

} // namespace bmcConfig

BmcConfig::BmcConfig(Stores& stores)
{
    using namespace bmcConfig;
    addConstants(stores, constants);
    addPackets(stores, packets);
    addFilters(stores, filters);

    // The firmware interface has no public standard; these are its status byte's values.
    const TableRow tables[] = {{
        .key = "GET://BMC/UPDATE_STATUS",
        .pairs = {{"0", "IDLE"}, {"1", "IN_PROGRESS"}, {"2", "SUCCESS"}, {"3", "FAILED"}, {"FF", "NOT_SUPPORTED"}},
    }};
    addTables(stores, tables);
    const TablePair words[] = {
        {"GET://BMC/FLAG", "SET://BMC/FLAG", {{"0", "DISABLE"}, {"1", "ENABLE"}}},
        {"GET://BMC/FLAG_OFF", "SET://BMC/FLAG_OFF", {{"0", "ENABLE"}, {"1", "DISABLE"}}}, // bits that switch off
    };
    addTables(stores, words);
    addReads(stores, reads);

    // What every controller answers. The other areas are optional, and one that is refused would end the walk.
    addTemplate(stores, "GET://BMC", branch({"INFO", "SDR", "CHASSIS", "FRU", "SEL"}));

    // The subscript is the controller's slave address. One that is not there answers nothing or not with success.
    addTemplate(stores, "GET://BMC/DEVICE_ID[]",
                script({
                    requireAddress("$DEVICE_ID_NUMBER"),
                    sendWithoutThrow("GET://BMC/DEVICE_ID"),
                    If("$COMPLETION_CODE != 0", {Throw("ERROR_CONTROLLER_NOT_PRESENT")}),
                    joinData("$RESULT"),
                    Return("$RESULT"),
                }));
}

} // namespace Module::BMCConfig

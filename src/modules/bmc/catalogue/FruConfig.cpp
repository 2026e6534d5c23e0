#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

// Inventory devices: their bytes, piece by piece. What the bytes mean is the handler's affair.

namespace Module::BMCConfig {

using namespace steps;

namespace fruConfig {

constexpr PacketRow packets[] = {
    {"GET://BMC/FRU/DEVICEID", "GET_DEVICEID_COMMAND"},
    {"GET://BMC/FRU/READ", "READ_FRU_DATA",
     "$/FRU/DEVICE_ID $/FRU/INVENTORY/OFFSET_LS $/FRU/INVENTORY/OFFSET_MS $/FRU/READ_COUNT"},
    {"SET://BMC/FRU/WRITE", "WRITE_FRU_DATA",
     "$/FRU/DEVICE_ID $/FRU/INVENTORY/WRITE_OFFSET_LS $/FRU/INVENTORY/WRITE_OFFSET_MS $/FRU/MODIFIED_DATA"},
};

/// The product id, low byte first, as the controller sends it.
constexpr TextRow filters[] = {
    {"GET://BMC/FRU/DEVICEID", "10 11"},
};

constexpr ReadRow reads[] = {
    {.key = "GET://BMC/FRU/DEVICEID", .error = "ERROR_FRU_DEVICE_ID_NOT_PRESENT", .separator = ":SPACE"},
};

/// The whole answer, completion code first: whether to ask for less is the handler's affair.
Script readPiece()
{
    return script({
        require("$/FRU/DEVICE_ID"),
        require("$/FRU/INVENTORY/OFFSET_LS"),
        require("$/FRU/INVENTORY/OFFSET_MS"),
        require("$/FRU/READ_COUNT"),
        IPMI("GET://BMC/FRU/READ", "$RESULT"),
        Return("$RESULT"),
    });
}

Script writePiece()
{
    return script({
        require("$/FRU/DEVICE_ID"),
        require("$/FRU/INVENTORY/WRITE_OFFSET_LS"),
        require("$/FRU/INVENTORY/WRITE_OFFSET_MS"),
        require("$/FRU/MODIFIED_DATA"),
        sendOrThrow("SET://BMC/FRU/WRITE", "$COMPLETION_CODE"),
    });
}

} // namespace fruConfig

FruConfig::FruConfig(Stores& stores)
{
    using namespace fruConfig;
    addPackets(stores, packets);
    addFilters(stores, filters);
    addReads(stores, reads);
    addTemplate(stores, "GET://BMC/FRU/READ", readPiece());
    addTemplate(stores, "SET://BMC/FRU/WRITE", writePiece());
}

} // namespace Module::BMCConfig

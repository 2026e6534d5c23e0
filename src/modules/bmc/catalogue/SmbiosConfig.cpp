#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

// The controller's copy of the firmware's tables: managed data regions, a command family of the manufacturer's own.

namespace Module::BMCConfig {

using namespace steps;

namespace smbiosConfig {

/// Region 1 holds the tables; a reading starts at its begin unless told otherwise.
constexpr TextRow constants[] = {
    {"$/SMBIOS/DATA_REGION", "01"},
    {"$/SMBIOS/OFFSET_LS", "00"},
    {"$/SMBIOS/OFFSET_MS", "00"},
    {"$/SMBIOS/READ_COUNT", "20"},
};

constexpr PacketRow packets[] = {
    {"GET://BMC/SMBIOS/READ", "READ_SMBIOS_REGION",
     "$/SMBIOS/DATA_REGION $/SMBIOS/READ_COUNT $/SMBIOS/OFFSET_LS $/SMBIOS/OFFSET_MS"},
    {"GET://BMC/SMBIOS/REGION_STATUS", "SMBIOS_REGION_STATUS", "$/SMBIOS/DATA_REGION"},
};

constexpr char status[] = "GET://BMC/SMBIOS/REGION_STATUS", lockTable[] = "GET://BMC/SMBIOS/REGIONSTATUS/LOCK_STATUS",
               validTable[] = "GET://BMC/SMBIOS/REGIONSTATUS/VALID_DATA";

/// Numbers have the high byte first, as a reader writes them; lengths are in bytes.
constexpr ReadRow reads[] = {
    {.key = "GET://BMC/SMBIOS/REGIONSTATUS/CHECKSUM", .packet = status, .fields = "10"},
    {.key = "GET://BMC/SMBIOS/REGIONSTATUS/DATA_REGION", .packet = status, .fields = "2", .isNumber = true},
    {.key = lockTable, .packet = status, .fields = "5", .table = lockTable},
    {.key = "GET://BMC/SMBIOS/REGIONSTATUS/MAX_REGION_LENGTH", .packet = status, .fields = "7 6", .isNumber = true},
    {.key = "GET://BMC/SMBIOS/REGIONSTATUS/MDR_VERSION", .packet = status, .fields = "1"},
    {.key = "GET://BMC/SMBIOS/REGIONSTATUS/REGION_USED", .packet = status, .fields = "9 8", .isNumber = true},
    {.key = "GET://BMC/SMBIOS/REGIONSTATUS/UPDATE_COUNT", .packet = status, .fields = "4", .isNumber = true},
    {.key = validTable, .packet = status, .fields = "3", .table = validTable},
};

} // namespace smbiosConfig

SmbiosConfig::SmbiosConfig(Stores& stores)
{
    using namespace smbiosConfig;
    addConstants(stores, constants);
    addPackets(stores, packets);
    const TableRow tables[] = {
        {.key = lockTable, .pairs = {{"0", "UNLOCKED"}, {"1", "STRICT_LOCK"}, {"2", "PREEMPTABLE_LOCK"}}},
        {.key = validTable, .pairs = {{"0", "INVALID"}, {"1", "VALID"}}},
    };
    addTables(stores, tables);
    addReads(stores, reads);
    addTemplate(stores, "GET://BMC/SMBIOS/REGIONSTATUS",
                branch({"MDR_VERSION", "DATA_REGION", "VALID_DATA", "UPDATE_COUNT", "LOCK_STATUS", "MAX_REGION_LENGTH",
                        "REGION_USED", "CHECKSUM"}));
    addTemplate(stores, "GET://BMC/SMBIOS/REGION_STATUS",
                script({take("$/SMBIOS/DATA_REGION"), returnData("GET://BMC/SMBIOS/REGION_STATUS")}));
    addTemplate(stores, "GET://BMC/SMBIOS/READ",
                script({take("$/SMBIOS/DATA_REGION"), take("$/SMBIOS/READ_COUNT"), take("$/SMBIOS/OFFSET_LS"),
                        take("$/SMBIOS/OFFSET_MS"), returnData("GET://BMC/SMBIOS/READ")}));
}

} // namespace Module::BMCConfig

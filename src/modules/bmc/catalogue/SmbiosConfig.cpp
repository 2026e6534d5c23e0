#include "ipmi/Codes.hpp"
#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/SensorSteps.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

// The controller's copy of the firmware's tables: managed data regions, a command family of the manufacturer's own.

namespace Module::BMCConfig {

using namespace steps;

namespace {

/// Region 1 holds the tables; a reading starts at its begin unless told otherwise.
constexpr TextRow constants[] = {
    {"$/SMBIOS/DATA_REGION", "01"},
    {"$/SMBIOS/OFFSET_LS", "00"},
    {"$/SMBIOS/OFFSET_MS", "00"},
    {"$/SMBIOS/READ_COUNT", "20"},
};

constexpr CodeConstant codes[] = {
    {"$/SMBIOS/READ_CMD", ipmi::cmd::readSmbiosRegion},
    {"$/SMBIOS/REGION_STATUS_CMD", ipmi::cmd::smbiosRegionStatus},
};

constexpr TextRow packets[] = {
    {"GET://BMC/SMBIOS/READ", "$/BMC/BASE_ADDRESS $/IPMI/ORVEL_GENERAL_APP 00 $/SMBIOS/READ_CMD $/SMBIOS/DATA_REGION "
                              "$/SMBIOS/READ_COUNT $/SMBIOS/OFFSET_LS $/SMBIOS/OFFSET_MS"},
    {"GET://BMC/SMBIOS/REGION_STATUS",
     "$/BMC/BASE_ADDRESS $/IPMI/ORVEL_GENERAL_APP 00 $/SMBIOS/REGION_STATUS_CMD $/SMBIOS/DATA_REGION"},
};

/// The high byte first, as a reader writes numbers.
constexpr TextRow filters[] = {
    {"GET://BMC/SMBIOS/REGIONSTATUS/CHECKSUM", "10"},    {"GET://BMC/SMBIOS/REGIONSTATUS/DATA_REGION", "2"},
    {"GET://BMC/SMBIOS/REGIONSTATUS/LOCK_STATUS", "5"},  {"GET://BMC/SMBIOS/REGIONSTATUS/MAX_REGION_LENGTH", "7 6"},
    {"GET://BMC/SMBIOS/REGIONSTATUS/MDR_VERSION", "1"},  {"GET://BMC/SMBIOS/REGIONSTATUS/REGION_USED", "9 8"},
    {"GET://BMC/SMBIOS/REGIONSTATUS/UPDATE_COUNT", "4"}, {"GET://BMC/SMBIOS/REGIONSTATUS/VALID_DATA", "3"},
};

constexpr const char* status = "GET://BMC/SMBIOS/REGION_STATUS";
constexpr const char* failure = "$COMPLETION_CODE";

constexpr ReadRow reads[] = {
    {.key = "GET://BMC/SMBIOS/REGIONSTATUS/CHECKSUM", .error = failure, .packet = status},
    {.key = "GET://BMC/SMBIOS/REGIONSTATUS/DATA_REGION", .error = failure, .packet = status, .map = "HEX2DEC"},
    {.key = "GET://BMC/SMBIOS/REGIONSTATUS/LOCK_STATUS",
     .error = failure,
     .packet = status,
     .table = "GET://BMC/SMBIOS/REGIONSTATUS/LOCK_STATUS"},
    {.key = "GET://BMC/SMBIOS/REGIONSTATUS/MDR_VERSION", .error = failure, .packet = status},
    {.key = "GET://BMC/SMBIOS/REGIONSTATUS/UPDATE_COUNT", .error = failure, .packet = status, .map = "HEX2DEC"},
    {.key = "GET://BMC/SMBIOS/REGIONSTATUS/VALID_DATA",
     .error = failure,
     .packet = status,
     .table = "GET://BMC/SMBIOS/REGIONSTATUS/VALID_DATA"},
};

/// A length in bytes, in decimal.
Script readLength(const char* key)
{
    return script({
        send(status),
        If("$COMPLETION_CODE != 0", {Throw("$COMPLETION_CODE")}),
        readField(key, "$NUMBER", "$COMPLETION_CODE"),
        Prepend("$NUMBER", "0", "2", "$NUMBER"),
        Flatten("$NUMBER", "$NUMBER"),
        Map("$NUMBER", "HEX2DEC", "$RESULT"),
        Return("$RESULT"),
    });
}

Steps take(const std::string& name)
{
    return takeGiven(name, "$/SMBIOS/" + name);
}

/// All data of the answer as one text; of a reading, its length and the region's update count come first.
Steps answerData(const char* packet)
{
    return script({
        send(packet),
        If("$COMPLETION_CODE != 0", {Throw("$COMPLETION_CODE")}),
        joinData("$RESULT"),
        Return("$RESULT"),
    });
}

} // namespace

SmbiosConfig::SmbiosConfig(Stores& stores)
{
    addConstants(stores, constants);
    addConstants(stores, codes);
    addPackets(stores, packets);
    addFilters(stores, filters);
    const TableRow tables[] = {
        {.key = "GET://BMC/SMBIOS/REGIONSTATUS/LOCK_STATUS",
         .pairs = {{"0", "UNLOCKED"}, {"1", "STRICT_LOCK"}, {"2", "PREEMPTABLE_LOCK"}}},
        {.key = "GET://BMC/SMBIOS/REGIONSTATUS/VALID_DATA", .pairs = {{"0", "INVALID"}, {"1", "VALID"}}},
    };
    addTables(stores, tables);
    addReads(stores, reads);
    for (const char* key :
         {"GET://BMC/SMBIOS/REGIONSTATUS/MAX_REGION_LENGTH", "GET://BMC/SMBIOS/REGIONSTATUS/REGION_USED"})
        addTemplate(stores, key, readLength(key));
    addTemplate(stores, "GET://BMC/SMBIOS/REGIONSTATUS",
                branch({"MDR_VERSION", "DATA_REGION", "VALID_DATA", "UPDATE_COUNT", "LOCK_STATUS", "MAX_REGION_LENGTH",
                        "REGION_USED", "CHECKSUM"}));
    addTemplate(stores, "GET://BMC/SMBIOS/REGION_STATUS",
                script({take("DATA_REGION"), answerData("GET://BMC/SMBIOS/REGION_STATUS")}));
    addTemplate(stores, "GET://BMC/SMBIOS/READ",
                script({take("DATA_REGION"), take("READ_COUNT"), take("OFFSET_LS"), take("OFFSET_MS"),
                        answerData("GET://BMC/SMBIOS/READ")}));
}

} // namespace Module::BMCConfig

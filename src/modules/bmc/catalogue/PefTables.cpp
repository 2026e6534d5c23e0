#include "modules/bmc/catalogue/PefAreas.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// Event filters and alert policies (IPMI 2.0, 17.7 and 17.11; table 30-6, parameters 6 and 9). Byte 0 of a record is
// its number.

namespace Module::BMCConfig {

using namespace steps;

namespace pefTables {

constexpr char filterError[] = "ERROR_PEF_FILTER_GET", policyError[] = "ERROR_PEF_POLICY_GET",
               ownCode[] = "$COMPLETION_CODE";

constexpr Record filter = {.path = "PEF/FILTER[]",
                           .get = "PEF/FILTER_EVENT_ENTRY",
                           .size = 21,
                           .set = "PEF/FILTER_EVENT_ENTRY",
                           .first = 2,
                           .subscripts = "FILTER 1 127"};

constexpr Field byteOf(const char* name, unsigned byte, unsigned count = 1)
{
    return {.name = name, .byte = byte, .count = count, .access = Access::read, .getError = filterError};
}

constexpr Field bitsOf(const char* name, unsigned byte, unsigned mask, const char* table, const char* error)
{
    return {.name = name,
            .byte = byte,
            .codec = Codec::word,
            .mask = mask,
            .table = table,
            .access = Access::read,
            .getError = error};
}

constexpr Field numberOf(const char* name, unsigned byte, unsigned mask, const char* error)
{
    return {
        .name = name, .byte = byte, .codec = Codec::number, .mask = mask, .access = Access::read, .getError = error};
}

/// What a caller may write; bytes are hexadecimal, FFh in most of them stands for any.
constexpr Field filterSettings[] = {
    bitsOf("STATUS", 1, 0x80, "FLAG", filterError),
    byteOf("ACTION", 2), // bits as in GLOBAL_ACTION
    numberOf("POLICY_NUMBER", 3, 0x0F, filterError),
    bitsOf("EVENT_SEVERITY", 4, 0xFF, "PEF/FILTER[]/EVENT_SEVERITY", filterError),
    byteOf("GENID1", 5), // slave address or software id
    byteOf("GENID2", 6), // channel and LUN
    byteOf("SENSOR_TYPE", 7),
    byteOf("SENSOR_NUMBER", 8),
    byteOf("TRIGGER", 9),      // event/reading type
    byteOf("EVENT_MASK0", 10), // offsets 7 to 0
    byteOf("EVENT_MASK1", 11), // offsets 14 to 8
    byteOf("EVENT_ANDMASK", 12),
    byteOf("MISC", 13, 8), // how the three event data bytes are compared
};

constexpr Field filterReadings[] = {
    byteOf("EVENT", 9, 3), // trigger and offsets together
    bitsOf("TYPE", 1, 0x60, "PEF/FILTER[]/TYPE", filterError),
};

constexpr Record policy = {.path = "PEF/POLICY[]",
                           .get = "PEF/ALERT_POLICY_ENTRY",
                           .size = 4,
                           .set = "PEF/ALERT_POLICY_ENTRY",
                           .first = 2,
                           .subscripts = "POLICY 1 127"};

/// The subscript has the name POLICY_NUMBER to itself, so a caller writes the policy's number as NUMBER.
constexpr Field policySettings[] = {
    {.name = "POLICY_NUMBER",
     .byte = 1,
     .codec = Codec::number,
     .mask = 0xF0,
     .access = Access::read,
     .getError = policyError,
     .parameter = "NUMBER"},
    bitsOf("STATUS", 1, 0x08, "FLAG", policyError),
    bitsOf("POLICY_TYPE", 1, 0x07, "PEF/POLICY[]/POLICY_TYPE", policyError),
    numberOf("CHANNEL_NUMBER", 2, 0xF0, policyError),
    numberOf("DESTINATION_NUMBER", 2, 0x0F, policyError),
    bitsOf("ALERT", 3, 0x80, "FLAG", policyError), // a text of the event's own
    numberOf("ALERT_STRING_KEY", 3, 0x7F, policyError),
};

/// The record as bytes, its number left out: that is the query's.
void addRaw(Stores& stores, const Record& record, const char* set, const char* error)
{
    Record bytes = record;
    bytes.set = set;
    bytes.size -= 1;
    bytes.first += 1;
    const Field raw{.name = "RAW", .count = bytes.size, .getError = error};
    addFields(stores, bytes, {&raw, 1});
}

/// As many as the BMC has room for, which parameter `selector` tells.
Script readMembers(const char* name, const char* selector)
{
    return script({
        Copy(selector, "$/PEF/SELECTOR"),
        sendAndCheck("GET://BMC/PEF/DATA"),
        readCount("GET://BMC/PEF/COUNT", "7F"),
        returnMembers(name, "1", "$COUNT"),
    });
}

void addWords(Stores& stores)
{
    const TablePair words[] = {
        // IPMI 2.0, table 17-2
        {"GET://BMC/PEF/FILTER[]/EVENT_SEVERITY",
         "SET://BMC/PEF/FILTER[]/EVENT_SEVERITY",
         {{"0", "UNSPECIFIED"},
          {"1", "MONITOR"},
          {"2", "INFORMATION"},
          {"4", "OK"},
          {"8", "NON_CRITICAL"},
          {"10", "CRITICAL"},
          {"20", "NON_RECOVERABLE"}}},
        // what to do when the entry before was reached: 17.11
        {"GET://BMC/PEF/POLICY[]/POLICY_TYPE",
         "SET://BMC/PEF/POLICY[]/POLICY_TYPE",
         {{"0", "ALWAYS"},
          {"1", "NEXT_ENTRY"},
          {"2", "STOP"},
          {"3", "NEXT_OTHER_CHANNEL"},
          {"4", "NEXT_OTHER_DESTINATION_TYPE"}}},
    };
    addTables(stores, words);
    addTable(stores, "GET://BMC/PEF/FILTER[]/TYPE", {{"0", "CONFIGURABLE"}, {"2", "PRECONFIGURED"}});
}

} // namespace pefTables

void addPefTables(Stores& stores)
{
    using namespace pefTables;
    addWords(stores);
    addFilter(stores, "GET://BMC/PEF/COUNT", "2");
    constexpr BranchRow branches[] = {
        {"GET://BMC/PEF/FILTER[]",
         "STATUS TYPE ACTION POLICY_NUMBER EVENT_SEVERITY GENID1 GENID2 SENSOR_TYPE SENSOR_NUMBER TRIGGER EVENT "
         "EVENT_MASK0 EVENT_MASK1 EVENT_ANDMASK MISC"},
    };
    addBranches(stores, branches);
    addFields(stores, filter, filterSettings);
    addFields(stores, filter, filterReadings);
    addUpdate(stores, filter, filterSettings, ownCode);
    addRaw(stores, filter, "PEF/FILTER_EVENT_ENTRY_RAW", filterError);
    addTemplate(stores, "GET://BMC/PEF/FILTER", readMembers("FILTER", "05"));

    addFieldBranch(stores, policy, policySettings);
    addUpdate(stores, policy, policySettings, ownCode);
    addRaw(stores, policy, "PEF/ALERT_POLICY_ENTRY_RAW", policyError);
    addTemplate(stores, "GET://BMC/PEF/POLICY", readMembers("POLICY", "08"));
}

} // namespace Module::BMCConfig

#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/SensorSteps.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

// Sensors: readings, thresholds and events. A sensor's query comes in two forms: by number alone, which means the BMC's
// own sensor, and by number, owner and LUN.

namespace Module::BMCConfig {

using namespace steps;

namespace sensorConfig {

constexpr PacketRow packets[] = {
    {"GET://BMC/SENSOR/EVENT_ENABLE", "GET_SENSOR_EVENT_ENABLE", "$/BMC/SENSOR/NUMBER"},
    {"GET://BMC/SENSOR/THRESHOLD", "GET_SENSOR_THRESHOLDS", "$/BMC/SENSOR/NUMBER", "$/BMC/SENSOR_OWNER"},
    {"GET://BMC/SENSOR/THRESHOLD_LUN", "GET_SENSOR_THRESHOLDS", "$/BMC/SENSOR/NUMBER", "$/BMC/SENSOR_OWNER",
     "$/BMC/SENSOR_LUN"},
    {"GET://BMC/SENSOR/VALUE", "GET_SENSOR_READING", "$/BMC/SENSOR/NUMBER", "$/BMC/SENSOR_OWNER", "$/BMC/SENSOR_LUN"},
    {"GET://BMC/SENSOR[]/PROCEVENT", "GET_SENSOR_EVENT_ENABLE", "$/BMC/SENSOR/NUMBER"},
    {"SET://BMC/SENSOR/EVENT_ENABLE", "SET_SENSOR_EVENT_ENABLE",
     "$/BMC/SENSOR/NUMBER $/SENSOR/STATUS $/SENSOR/LOWER_ASSERTION_STATUS $/SENSOR/UPPER_ASSERTION_STATUS "
     "$/SENSOR/LOWER_DEASSERTION_STATUS $/SENSOR/UPPER_DEASSERTION_STATUS"},
    {"SET://BMC/SENSOR/REARM_EVENTS", "REARM_SENSOR_EVENTS",
     "$/BMC/SENSOR/NUMBER $/BMC/EVENT_STATUS $/BMC/LOWER_ASSERTION_EVENT_STATUS $/BMC/UPPER_ASSERTION_EVENT_STATUS "
     "$/BMC/LOWER_DEASSERTION_STATUS $/BMC/UPPER_DEASSERTION_STATUS"},
    {"SET://BMC/SENSOR/THRESHOLD", "$/SENSOR/SET_THRESHOLD",
     "$/BMC/SENSOR/NUMBER $BYTE0 $BYTE1 $BYTE2 $BYTE3 $BYTE4 $BYTE5 $BYTE6", "$/BMC/SENSOR_OWNER"},
};

constexpr TextRow filters[] = {
    {"GET://BMC/SENSOR[]/EVENT/LOWER_ASSERTION", "2"},
    {"GET://BMC/SENSOR[]/EVENT/LOWER_DEASSERTION", "4"},
    {"GET://BMC/SENSOR[]/EVENT/STATUS", "1"},
    {"GET://BMC/SENSOR[]/EVENT/UPPER_ASSERTION", "3"},
    {"GET://BMC/SENSOR[]/EVENT/UPPER_DEASSERTION", "5"},
};

const TableRow tables[] = {
    // Which products follow the one whose satellite owners hold no readings that a caller could use.
    {"GET://BMC/SENSOR/PLATFORM",
     {{"CEDAR", "Fir"},
      {"DOGWOOD", "Fir"},
      {"FIR", "Fir"},
      {"JUNIPER", "Fir"},
      {"LILAC", "Fir"},
      {"LINDEN", "Fir"},
      {"MAPLE", "Fir"},
      {"NUTMEG", "Fir"},
      {"ROWAN", "Fir"}}},
    {"GET://BMC/SENSOR[]/INTERPRET_DISCRETE_SENSOR/POWERSUPPLY",
     {{"0", "PRESENCE_DETECTED"},
      {"1", "POWER_SUPPLY_FAILURE_DETECTED"},
      {"2", "PREDICTIVE_FAILURE"},
      {"3", "POWER_SUPPLY_INPUT_LOST"},
      {"4", "POWER_SUPPLY_INPUT_LOST_OUT_OF_RANGE"},
      {"5", "POWER_SUPPLY_INPUT_OUT_OF_RANGE_BUT_PRESENT"},
      {"6", "CONFIGURATION_ERROR"},
      {"7", "POWER_SUPPLY_INACTIVE"}}},
    {"GET://BMC/SENSOR[]/INTERPRET_DISCRETE_SENSOR/REDUNDANCY",
     {{"0", "FULLY_REDUNDANT"},
      {"1", "REDUNDANCY_LOST"},
      {"2", "REDUNDANT_DEGRADED"},
      {"3", "NON_REDUNDANT_SUFFICIENT_RESOURCES"},
      {"4", "NON_REDUNDANT_INSUFFICIENT_TO_SUFFICIENT_RESOURCES"},
      {"5", "NON_REDUNDANT_INSUFFICENT_RESOURCES"},
      {"6", "REDUNDANCY_DEGRADED_FROM_FULLY_REDUNDANT_UNIT"},
      {"7", "REDUNDANCY_DEGRADED_FROM_NON_REDUNDANT_UNIT"}}},
    {"GET://BMC/SENSOR[]/SCANNING", {{"0", "DISABLE"}, {"40", "ENABLE"}}},
};

struct Threshold {
    const char* name;
    const char* symbol;
    const char* readableBit;
    const char* place;   ///< in the answer behind the completion code, the readable mask at 0
    const char* swapped; ///< the same for a sensor whose lower and upper thresholds change places
};

constexpr Threshold thresholds[] = {
    {"LOWER_NONCRITICAL", "$/SENSOR/LOWER_NONCRITICAL", "01", "1", "4"},
    {"LOWER_CRITICAL", "$/SENSOR/LOWER_CRITICAL", "02", "2", "5"},
    {"LOWER_NONRECOVERABLE", "$/SENSOR/LOWER_NONRECOVERABLE", "04", "3", "6"},
    {"UPPER_NONCRITICAL", "$/SENSOR/UPPER_NONCRITICAL", "08", "4", "1"},
    {"UPPER_CRITICAL", "$/SENSOR/UPPER_CRITICAL", "10", "5", "2"},
    {"UPPER_NONRECOVERABLE", "$/SENSOR/UPPER_NONRECOVERABLE", "20", "6", "3"},
};

Script readValue(const Form& form)
{
    return script({
        addressSensor(form),
        refuseOnFir(form, returnNothing()),
        send("GET://BMC/SENSOR/VALUE"),
        If("$COMPLETION_CODE != 0", {returnNothing()}),
        Split("$BUFFER", ":SPACE", "$BUFFER"),
        Exclude("$BUFFER", "GET://BMC/COMPLETION_CODE", "$BUFFER"),
        Pad("$BUFFER", "0", "4", "$BUFFER"),
        Join("$BUFFER", ":SPACE", "$RESULT"),
        Return("$RESULT"),
    });
}

// ---- thresholds

Steps keepThresholds(const char* Threshold::*place)
{
    Steps steps;
    for (const Threshold& threshold : thresholds)
        steps = script({
            steps,
            Read("$THRESHOLDS", threshold.*place, threshold.symbol),
            Map(threshold.symbol, "HEX2DEC", threshold.symbol),
        });
    return steps;
}

Steps markUnreadable()
{
    Steps steps;
    for (const Threshold& threshold : thresholds)
        steps = script({
            steps,
            Map("$READABLE", "MASK", threshold.readableBit, "$BIT"),
            If("$BIT == 0", {Copy("NOT SUPPORTED", threshold.symbol)}),
        });
    return steps;
}

/// "0", with the six values in their symbols; "1" for a sensor whose thresholds cannot be read.
Script readThresholds(const Form& form)
{
    return script({
        addressSensor(form),
        refuseOnFir(form, returnText("1")),
        send(form.hasOwner ? "GET://BMC/SENSOR/THRESHOLD_LUN" : "GET://BMC/SENSOR/THRESHOLD"),
        If("$COMPLETION_CODE != 0", {returnText("1")}),
        Split("$BUFFER", ":SPACE", "$THRESHOLDS"),
        findRecord(form, returnText("1")),
        Filter("$RECORD", "GET://BMC/SENSOR_TYPE_INDEX", "$TYPE"),
        Filter("$RECORD", "GET://BMC/SENSOR_LINEAR_INDEX", "$LINEAR"),
        Map("$TYPE", "MASK", "$LINEAR", "$/SENSOR/THRESHOLD"),
        Exclude("$THRESHOLDS", "GET://BMC/COMPLETION_CODE", "$THRESHOLDS"),
        Size("$THRESHOLDS", "$SIZE"),
        If("$SIZE != 7", {returnText("1")}),
        Read("$THRESHOLDS", "0", "$READABLE"),
        If("$/SENSOR/THRESHOLD == 1", {keepThresholds(&Threshold::swapped)}),
        If("$/SENSOR/THRESHOLD != 1", {keepThresholds(&Threshold::place)}),
        markUnreadable(),
        returnText("0"),
    });
}

Script readThreshold(const Form& form, const Threshold& threshold)
{
    return script({
        Template(std::string(form.key) + "/THRESHOLD_STATUS"),
        Copy("$RESULT", "$STATUS"),
        If("$STATUS == 0", {Copy(threshold.symbol, "$RESULT"), Return("$RESULT")}),
        returnNothing(),
    });
}

/// The bytes in the order of the command; `place` says which value stands where.
Steps fillBytes(const char* Threshold::*place)
{
    Steps steps;
    for (const Threshold& threshold : thresholds)
        steps = script({steps, Copy(threshold.symbol, std::string("$BYTE") + threshold.*place)});
    return steps;
}

/// The test before the bytes speaks of a text and not of the symbol, so that the thresholds never change places, and
/// the mask leaves the upper critical one out. Callers have come to rely on both.
Script writeThresholds(const Form& form)
{
    Steps given;
    for (const Threshold& threshold : thresholds)
        given = script({given, takeRequired(threshold.symbol)});
    return script({
        given,
        addressSensor(form),
        findRecord(form, returnText("FAILURE")),
        Filter("$RECORD", "GET://BMC/SENSOR_NUMBER_INDEX", "$NUMBER"),
        Filter("$RECORD", "GET://BMC/SENSOR_LINEAR_INDEX", "$LINEAR"),
        Map("$NUMBER", "MASK", "$LINEAR", "$/SENSOR/THRESHOLD"),
        Copy("2F", "$/SENSOR/EVENT"),
        Copy("$/SENSOR/EVENT", "$BYTE0"),
        If("/SENSOR/THRESHOLD == 1", {fillBytes(&Threshold::swapped)}),
        If("/SENSOR/THRESHOLD != 1", {fillBytes(&Threshold::place)}),
        sendForWord("SET://BMC/SENSOR/THRESHOLD"),
    });
}

void addForm(Stores& stores, const Form& form)
{
    const std::string key = form.key;
    addTemplate(stores, key + "/NAME", readName(form));
    addTemplate(stores, key + "/VALUE", readValue(form));
    addTemplate(stores, key + "/THRESHOLD_STATUS", readThresholds(form));
    addTemplate(stores, key + "/THRESHOLD",
                branch({"LOWER_NONCRITICAL", "LOWER_CRITICAL", "LOWER_NONRECOVERABLE", "UPPER_NONCRITICAL",
                        "UPPER_CRITICAL", "UPPER_NONRECOVERABLE"}));
    for (const Threshold& threshold : thresholds)
        addTemplate(stores, key + "/THRESHOLD/" + threshold.name, readThreshold(form, threshold));
}

} // namespace sensorConfig

SensorConfig::SensorConfig(Stores& stores)
{
    using namespace sensorConfig;
    addPackets(stores, packets);
    addFilters(stores, filters);
    addTables(stores, tables);
    addNames(stores);

    addForm(stores, byNumber);
    addForm(stores, byOwner);
    addTemplate(stores, "SET://BMC/SENSOR[]/THRESHOLD", writeThresholds(byNumber));
    addEvents(stores);
}

} // namespace Module::BMCConfig

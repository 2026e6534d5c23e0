#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/SensorSteps.hpp"

#include <span>

// What a sensor's events are, and the states of the discrete sensors that scripts know.

namespace Module::BMCConfig::steps {

namespace sensorEvents {

struct Named {
    const char* name;   ///< as the query's last word
    const char* symbol; ///< where the status script leaves it
};

constexpr Named rearmed[] = {
    {"EVENT_STATUS", "$/BMC/EVENT_STATUS"},
    {"LOWER_ASSERTION_EVENT_STATUS", "$/BMC/LOWER_ASSERTION_EVENT_STATUS"},
    {"UPPER_ASSERTION_EVENT_STATUS", "$/BMC/UPPER_ASSERTION_EVENT_STATUS"},
    {"LOWER_DEASSERTION_STATUS", "$/BMC/LOWER_DEASSERTION_STATUS"},
    {"UPPER_DEASSERTION_STATUS", "$/BMC/UPPER_DEASSERTION_STATUS"},
};

constexpr Named events[] = {
    {"STATUS", "$/SENSOR/STATUS"},
    {"LOWER_ASSERTION", "$/SENSOR/LOWER_ASSERTION_STATUS"},
    {"UPPER_ASSERTION", "$/SENSOR/UPPER_ASSERTION_STATUS"},
    {"LOWER_DEASSERTION", "$/SENSOR/LOWER_DEASSERTION_STATUS"},
    {"UPPER_DEASSERTION", "$/SENSOR/UPPER_DEASSERTION_STATUS"},
};

// ---- events

/// "0", with the five bytes in their symbols; bytes that the answer leaves out are 0.
Script readEvents(const Form& form)
{
    Steps fields;
    for (const Named& event : events)
        fields = script({
            fields,
            Filter("$BUFFER", std::string("GET://BMC/SENSOR[]/EVENT/") + event.name, event.symbol),
        });
    return script({
        addressSensor(form),
        sendAndCheck("GET://BMC/SENSOR/EVENT_ENABLE"),
        Split("$BUFFER", ":SPACE", "$BUFFER"),
        Pad("$BUFFER", "0", "6", "$BUFFER"),
        Join("$BUFFER", ":SPACE", "$BUFFER"),
        fields,
        returnText("0"),
    });
}

Script readEvent(const Named& event)
{
    return script({
        Template("GET://BMC/SENSOR[]/EVENT_STATUS"),
        Copy(event.symbol, "$RESULT"),
        Return("$RESULT"),
    });
}

/// All of them, or nothing is sent.
Steps takeAllGiven(std::span<const Named> names)
{
    Steps steps;
    for (const Named& named : names)
        steps = script({steps, take(named.name, named.symbol), require(named.symbol)});
    return steps;
}

/// Sets which events the sensor raises, or, for a caller that gives an event status, arms events again.
Script writeEvents(const Form& form)
{
    return script({
        addressSensor(form),
        Size("$EVENT_STATUS", "$SIZE"),
        If("$SIZE != 0", {takeAllGiven(rearmed), sendForWord("SET://BMC/SENSOR/REARM_EVENTS")}),
        takeAllGiven(events),
        sendForWord("SET://BMC/SENSOR/EVENT_ENABLE"),
    });
}

Script readScanning()
{
    return script({
        Template("GET://BMC/SENSOR[]/EVENT_STATUS"),
        Map("$/SENSOR/STATUS", "MASK", "40", "$SCANNING"),
        LookupTable("$SCANNING", "GET://BMC/SENSOR[]/SCANNING", "$RESULT"),
        Return("$RESULT"),
    });
}

Script readProcessorEvents(const Form& form)
{
    return script({
        addressSensor(form),
        sendAndCheck("GET://BMC/SENSOR[]/PROCEVENT"),
        Split("$BUFFER", ":SPACE", "$BUFFER"),
        Exclude("$BUFFER", "GET://BMC/COMPLETION_CODE", "$BUFFER"),
        Join("$BUFFER", ":SPACE", "$RESULT"),
        Return("$RESULT"),
    });
}

// ---- states of the two kinds of discrete sensors that scripts name

/// The names of the set bits of the masked first state byte, from the script's own table.
Script nameStates(const char* key)
{
    return script({
        Template("GET://BMC/SENSOR[]/VALUE"),
        Copy("$RESULT", "$VALUE"),
        String_Length("$VALUE", "$SIZE"),
        If("$SIZE == 0", {returnNothing()}),
        Split("$VALUE", ":SPACE", "$VALUE"),
        Read("$VALUE", "2", "$STATES"),
        addressSensor(byNumber),
        findRecord(byNumber, returnNothing()),
        Filter("$RECORD", "GET://BMC/SENSOR_DISCRETE_MASK_INDEX", "$POSSIBLE"),
        If("$POSSIBLE == ERROR", {returnNothing()}),
        Map("$STATES", "MASK", "$POSSIBLE", "$STATES"),
        Copy(":NULL", "$NAMES"),
        For("BIT", "0", "7",
            {
                Map("$STATES", "RIGHT_SHIFT", "$BIT", "$STATE"),
                Map("$STATE", "MASK", "1", "$STATE"),
                If("$STATE == 1", {LookupTable("$BIT", key, "$NAME"), Append("$NAME", "$NAMES")}),
            }),
        Size("$NAMES", "$SIZE"),
        If("$SIZE == 0", {returnText("UNKNOWN")}),
        Join("$NAMES", ", ", "$RESULT"),
        Return("$RESULT"),
    });
}

/// Passes a discrete sensor on to the script that knows its states, by its reading type or its sensor type.
Script nameDiscrete()
{
    return script({
        addressSensor(byNumber),
        findRecord(byNumber, returnNothing()),
        Filter("$RECORD", "GET://BMC/SENSOR_READING_TYPE_INDEX", "$READING_TYPE"),
        Filter("$RECORD", "GET://BMC/SENSOR_TYPE_INDEX", "$TYPE"),
        If("$READING_TYPE == 0B",
           {
               Template("GET://BMC/SENSOR[]/INTERPRET_DISCRETE_SENSOR/REDUNDANCY"),
               Return("$RESULT"),
           }),
        If("$READING_TYPE == 6F AND $TYPE == 08",
           {
               Template("GET://BMC/SENSOR[]/INTERPRET_DISCRETE_SENSOR/POWERSUPPLY"),
               Return("$RESULT"),
           }),
        returnText("UNKNOWN"),
    });
}

/// The same for any sensor: one with thresholds has no states.
Script invokeDiscrete()
{
    return script({
        addressSensor(byNumber),
        findRecord(byNumber, returnNothing()),
        Filter("$RECORD", "GET://BMC/SENSOR_READING_TYPE_INDEX", "$READING_TYPE"),
        If("$READING_TYPE == 01", {returnText("NOT SUPPORTED")}),
        Template("GET://BMC/SENSOR[]/INTERPRET_DISCRETE_SENSOR"),
        Return("$RESULT"),
    });
}

} // namespace sensorEvents

void addEvents(Stores& stores)
{
    using namespace sensorEvents;
    addTemplate(stores, "GET://BMC/SENSOR[]/EVENT",
                branch({"STATUS", "LOWER_ASSERTION", "UPPER_ASSERTION", "LOWER_DEASSERTION", "UPPER_DEASSERTION"}));
    for (const Named& event : events)
        addTemplate(stores, std::string("GET://BMC/SENSOR[]/EVENT/") + event.name, readEvent(event));
    addTemplate(stores, "GET://BMC/SENSOR[]/EVENT_STATUS", readEvents(byNumber));
    addTemplate(stores, "GET://BMC/SENSOR[]/PROCEVENT", readProcessorEvents(byNumber));
    addTemplate(stores, "GET://BMC/SENSOR[]/SCANNING", readScanning());
    addTemplate(stores, "SET://BMC/SENSOR[]/EVENT", writeEvents(byNumber));

    for (const char* key : {"GET://BMC/SENSOR[]/INTERPRET_DISCRETE_SENSOR/POWERSUPPLY",
                            "GET://BMC/SENSOR[]/INTERPRET_DISCRETE_SENSOR/REDUNDANCY"})
        addTemplate(stores, key, nameStates(key));
    addTemplate(stores, "GET://BMC/SENSOR[]/INTERPRET_DISCRETE_SENSOR", nameDiscrete());
    addTemplate(stores, "GET://BMC/SENSOR[]/INVOKE_INTERPRET_DISCRETE_SENSOR", invokeDiscrete());
}

} // namespace Module::BMCConfig::steps

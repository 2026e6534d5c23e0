#include "modules/bmc/HandlerTable.hpp"

#include <string>

namespace Module::BMCConfig {

namespace {

template<const char* Part>
bool contains(const std::string& query, const std::string&)
{
    return query.find(Part) != std::string::npos;
}

constexpr char sdr[] = "/BMC/SDR";
constexpr char bootOrder[] = "/BMC/BOOTORDER";
constexpr char sel[] = "/BMC/SEL";
constexpr char fru[] = "/BMC/FRU";
constexpr char sensorDisplay[] = "/BMC/SENSOR/DISPLAY";

/// The sensor engine answers by word, wherever in the tree the word stands.
bool asksSensorEngine(const std::string& query, const std::string&)
{
    for (const char* word : {"INTERPRET_SENSOR", "TOLERANCE", "RESOLUTION", "ACCURACY"})
        if (query.find(word) != std::string::npos)
            return true;
    return false;
}

} // namespace

const HandlerRules& handlerRules()
{
    // the rules without a maker keep their subtrees from the words of the sensor engine's rule
    static const HandlerRules rules = {
        {contains<sdr>, nullptr}, {contains<bootOrder>, nullptr}, {contains<sel>, nullptr},
        {contains<fru>, nullptr}, {asksSensorEngine, nullptr},    {contains<sensorDisplay>, nullptr},
    };
    return rules;
}

} // namespace Module::BMCConfig

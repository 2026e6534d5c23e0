#include "modules/bmc/HandlerTable.hpp"

#include "modules/bmc/subjects/Fru.hpp"
#include "modules/bmc/subjects/Sdr.hpp"
#include "modules/bmc/subjects/Sel.hpp"
#include "modules/bmc/subjects/Sensor.hpp"

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

template<class Subject>
std::unique_ptr<Handler> make(Interpreter* interpreter, _BMC_EXEC exec)
{
    return std::make_unique<Subject>(interpreter, exec);
}

} // namespace

const HandlerRules& handlerRules()
{
    // the rules without a maker keep their subtrees from the words of the sensor engine's rule
    static const HandlerRules rules = {
        {contains<sdr>, make<Sdr>}, {contains<bootOrder>, nullptr},   {contains<sel>, make<Sel>},
        {contains<fru>, make<Fru>}, {asksSensorEngine, make<Sensor>}, {contains<sensorDisplay>, make<Sensor>},
    };
    return rules;
}

} // namespace Module::BMCConfig

#include "modules/bmc/subjects/Sensor.hpp"

#include "common/Logger.hpp"
#include "common/ResultStatus.hpp"
#include "modules/bmc/subjects/Sdr.hpp"

#include <set>

// The listing of all sensors.

namespace Module::BMCConfig {

/// An entry of the listing that a query of its own answers.
struct Sensor::Shown {
    const char* name;    ///< below the sensor's path
    const char* query;   ///< below the sensor's address
    const char* failure; ///< what the log says when the query gives nothing
};

namespace {

constexpr const char* thresholdNames[] = {"LOWER_NONCRITICAL", "LOWER_CRITICAL", "LOWER_NONRECOVERABLE",
                                          "UPPER_NONCRITICAL", "UPPER_CRITICAL", "UPPER_NONRECOVERABLE"};

Symbol listOf(std::vector<std::string> names)
{
    return {NODE_NONLEAF, std::move(names)};
}

std::vector<std::string> below(const std::string& path, std::initializer_list<const char*> names)
{
    std::vector<std::string> paths;
    for (const char* name : names)
        paths.push_back(path + "/" + name);
    return paths;
}

} // namespace

void Sensor::display(const std::string& query, SymbolMap& result)
{
    SymbolMap local;
    Sdr records(interpreter, exec);
    records.router(sdrListKey, local);
    std::vector<std::string> paths;
    std::set<std::string> taken;
    const auto repository = SdrRepository::current(exec);
    for (std::size_t number = 1; repository && repository->record(number); ++number) {
        const ipmi::SdrView record = repository->record(number)->view();
        if (!record.has(ipmi::sdr::number) || !record.isReadable())
            continue;
        const Address sensor{std::to_string(record.number()), std::to_string(record.owner()),
                             std::to_string(record.lunByte())};
        // Two controllers may use one number; the second sensor goes by its whole address.
        const std::string plain = "/BMC/SENSOR[" + sensor.number + "]";
        const std::string path = taken.insert(plain).second ? plain : sensor.path();
        if (path != plain && !taken.insert(path).second)
            continue;
        show(sensor, path, result);
        paths.push_back(path);
    }
    result[query] = listOf(std::move(paths));
}

void Sensor::show(const Address& sensor, const std::string& path, SymbolMap& result)
{
    static constexpr Shown entries[] = {
        {"NAME", "/NAME", "Could not decode sensor name"},
        {"VALUE", "/INTERPRET_SENSOR_VALUE", "Interprete Sensor Value failed"},
        {"UNITS", "/INTERPRET_SENSOR_UNITS", nullptr},
    };
    const std::string key = "GET:/" + path;
    result[key] = listOf(below(path, {"NAME", "NUMBER", "OWNER", "LUN", "VALUE", "UNITS", "THRESHOLD"}));
    result[key + "/NUMBER"] = sensor.number;
    result[key + "/OWNER"] = sensor.owner;
    result[key + "/LUN"] = sensor.lun;
    for (const Shown& entry : entries)
        showEntry(entry, sensor, path, result);

    std::vector<std::string> names;
    for (const char* threshold : thresholdNames) {
        const std::string name = std::string("THRESHOLD/") + threshold, below = "/" + name;
        showEntry({name.c_str(), below.c_str(), "Error in getting Threshold values"}, sensor, path, result);
        names.push_back(path + below);
    }
    result[key + "/THRESHOLD"] = listOf(std::move(names));
}

void Sensor::showEntry(const Shown& entry, const Address& sensor, const std::string& path, SymbolMap& result)
{
    const std::string query = "GET:/" + sensor.path() + entry.query;
    Symbol& shown = result["GET:/" + path + "/" + entry.name];
    try {
        SymbolMap local;
        Sensor(interpreter, exec).router(query, local);
        shown = local[query];
    } catch (const ResultStatus&) {
        shown = Symbol();
    }
    if (shown.text().empty() && entry.failure)
        HW_LOG(LOGGER::Category::First, "%s", entry.failure);
}

} // namespace Module::BMCConfig

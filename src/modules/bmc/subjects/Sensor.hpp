#pragma once

#include "ipmi/SensorReading.hpp"
#include "modules/bmc/engine/Interpreter.hpp"
#include "modules/bmc/subjects/SdrRepository.hpp"

#include <map>
#include <string>
#include <vector>

namespace Module::BMCConfig {

/// Answers the sensor queries that take more than a script: a reading as a number or as the names of states, its unit,
/// tolerance, resolution and accuracy, and the listing of all sensors. What cannot be said is an empty result, never an
/// error; errors of the message layer pass through as ResultStatus. Serves one query at a time.
class Sensor : public Handler {
public:
    Sensor(Interpreter* interpreter, _BMC_EXEC exec);

    void process(const std::string& query, SymbolMap& result) override;
    /// The entry for other handlers, with the query's subscripts filled in.
    void router(const std::string& query, SymbolMap& result);
    void handle(const std::string& query, SymbolMap& result);
    /// Runs the template of `query`, with `parameters` as plain symbols.
    void run(const std::string& query, SymbolMap& result, const std::map<std::string, std::string>& parameters = {});
    /// Runs the template of `query` and cuts its result at blanks.
    void ipmi(const std::string& query, std::vector<std::string>& items);

    /// All sensors that can be read: under the query their paths, under each path its entries, and each entry.
    void display(const std::string& query, SymbolMap& result);

    // Each leaves its answer in result[query]; the record, and for a value the reading, are loaded before.
    void interpret_sensor_value(const std::string& query, SymbolMap& result);
    void interpret_sensor_units(const std::string& query, SymbolMap& result);
    /// `kind`: 1 tolerance, 2 resolution, 3 accuracy.
    void tolerance(const std::string& query, int kind, SymbolMap& result);

    static std::string dec_to_hex_str(const std::string& decimal);

private:
    /// Which sensor a query means, in decimal text.
    struct Address {
        std::string number;
        std::string owner;
        std::string lun;

        /// "/BMC/SENSOR[n]/OWNER[o]/LUN[l]".
        std::string path() const;
    };

    struct Shown;

    std::string parameter(const std::string& name, const std::string& otherwise);
    Address address(const std::string& plain);
    bool loadRecord(const Address& sensor);
    bool loadReading(const Address& sensor);
    double plainValue() const;
    double standardValue() const;
    bool isWithoutReading() const;
    bool isWithoutFlags();
    bool isNumeric() const;
    ipmi::SdrView record() const { return ipmi::SdrView(sdr); }
    void answer(const std::string& query, const std::string& plain, const Address& sensor, SymbolMap& result);
    std::string valueText();
    std::string stateText() const;
    void show(const Address& sensor, const std::string& path, SymbolMap& result);
    void showEntry(const Shown& entry, const Address& sensor, const std::string& path, SymbolMap& result);

    Interpreter* interpreter;
    _BMC_EXEC exec;
    ipmi::Bytes sdr;
    ipmi::Bytes reading;  ///< the answer's data
    std::uint8_t raw = 0; ///< of the reading, or the number given with the query
};

} // namespace Module::BMCConfig

#include "modules/bmc/subjects/Sensor.hpp"

#include "common/Logger.hpp"
#include "common/Policy.hpp"
#include "common/Util.hpp"
#include "ipmi/Hex.hpp"
#include "ipmi/States.hpp"
#include "modules/bmc/subjects/Sdr.hpp"
#include "modules/bmc/subjects/SensorConversion.hpp"
#include "modules/bmc/subjects/SensorStates.hpp"
#include "modules/bmc/subjects/SensorUnits.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

namespace Module::BMCConfig {

namespace {

constexpr const char* unavailable = "READING_UNAVAILABLE";
constexpr const char* nothingAsserted = "ALL_DEASSERTED";
constexpr std::uint8_t linearisationBits = 0x3F; ///< one less than the standard has: no code of its own lies above

constexpr const char* rawReading = "INTERPRET_SENSOR_VALUE_NUMBER";

enum class Asks { Units, Value, RawValue, Tolerance, Resolution, Accuracy };

struct SensorQuery {
    std::string_view word;
    Asks asks;
};

constexpr SensorQuery sensorQueries[] = {
    {"/INTERPRET_SENSOR_UNITS", Asks::Units},
    {"/INTERPRET_SENSOR_VALUE", Asks::Value},
    {"/INTERPRET_SENSOR_VALUE[]", Asks::RawValue},
    {"/TOLERANCE", Asks::Tolerance},
    {"/RESOLUTION", Asks::Resolution},
    {"/ACCURACY", Asks::Accuracy},
};

constexpr std::string_view shortForm = "GET://BMC/SENSOR[]", longForm = "GET://BMC/SENSOR[]/OWNER[]/LUN[]";

/// What stands behind the sensor in `plain`, empty if it is no query of a sensor.
std::string_view tail(std::string_view plain)
{
    if (plain.starts_with(longForm))
        return plain.substr(longForm.size());
    return plain.starts_with(shortForm) ? plain.substr(shortForm.size()) : std::string_view();
}

} // namespace

Sensor::Sensor(Interpreter* interpreter_, _BMC_EXEC exec_) : interpreter(interpreter_), exec(exec_) {}

std::string Sensor::Address::path() const
{
    return "/BMC/SENSOR[" + number + "]/OWNER[" + owner + "]/LUN[" + lun + "]";
}

void Sensor::process(const std::string& query, SymbolMap& result)
{
    handle(query, result);
    if (result[query].text() == "FAILURE")
        HW_LOG(LOGGER::Category::First, "Failed: %s", query.c_str());
}

void Sensor::router(const std::string& query, SymbolMap& result)
{
    interpreter->extract_and_inject(query);
    process(query, result);
}

void Sensor::handle(const std::string& query, SymbolMap& result)
{
    const std::string plain = Interpreter::handleIndexes(query);
    if (plain == "GET://BMC/SENSOR/DISPLAY")
        return display(query, result);
    if (std::ranges::find(sensorQueries, tail(plain), &SensorQuery::word) == std::end(sensorQueries))
        return run(query, result);
    const Address sensor = address(plain);
    if (loadRecord(sensor))
        answer(query, plain, sensor, result);
}

void Sensor::answer(const std::string& query, const std::string& plain, const Address& sensor, SymbolMap& result)
{
    const Asks asks = std::ranges::find(sensorQueries, tail(plain), &SensorQuery::word)->asks;
    // The record alone tells all but a present value; a number given with the query needs no reading either.
    if (asks == Asks::Value || (asks == Asks::RawValue && !isNumeric())) {
        if (!loadReading(sensor))
            return;
        if (isWithoutReading()) {
            result[query] = unavailable;
            return;
        }
    }
    switch (asks) {
    case Asks::Units:
        return interpret_sensor_units(query, result);
    case Asks::RawValue:
        if (isNumeric())
            raw = ipmi::parseByte(interpreter->getText($(rawReading)));
        return interpret_sensor_value(query, result);
    case Asks::Value:
        return interpret_sensor_value(query, result);
    case Asks::Tolerance:
        return tolerance(query, 1, result);
    case Asks::Resolution:
        return tolerance(query, 2, result);
    case Asks::Accuracy:
        return tolerance(query, 3, result);
    }
}

void Sensor::run(const std::string& query, SymbolMap& result, const std::map<std::string, std::string>& parameters)
{
    for (const auto& [name, value] : parameters)
        interpreter->symbolTable()[$(name)] = value;
    interpreter->run(result, query);
}

void Sensor::ipmi(const std::string& query, std::vector<std::string>& items)
{
    interpreter->extract_and_inject(query);
    SymbolMap local;
    run(query, local);
    items = Util::split(local[query].text(), " ");
}

std::string Sensor::parameter(const std::string& name, const std::string& otherwise)
{
    const std::string hex = interpreter->getText($(name));
    return hex.empty() ? otherwise : std::to_string(Util::string_to_long(hex, 16));
}

Sensor::Address Sensor::address(const std::string& plain)
{
    const std::string number = parameter("SENSOR_NUMBER", "0");
    if (!plain.starts_with(longForm))
        return {number, "32", "0"};
    return {number, parameter("OWNER_NUMBER", "32"), parameter("LUN_NUMBER", "0")};
}

bool Sensor::loadRecord(const Address& sensor)
{
    const std::string query =
        "GET://BMC/SDR/SENSOR_NUMBER[" + sensor.number + "]/OWNER[" + sensor.owner + "]/LUN[" + sensor.lun + "]";
    SymbolMap local;
    Sdr records(interpreter, exec);
    records.router(query, local);
    const std::string name = local[query].text();
    if (name.empty())
        return false;
    records.router("GET:/" + name, local);
    sdr = ipmi::parseBytes(local["GET:/" + name].text());
    return !sdr.empty();
}

bool Sensor::loadReading(const Address& sensor)
{
    const Address behind{sensor.number, sensor.owner, std::to_string(record().lun())};
    std::vector<std::string> items;
    ipmi("GET:/" + behind.path() + "/VALUE", items);
    if (items.size() < ipmi::SensorReading::size)
        return false;
    reading = ipmi::parseBytes(items);
    if (isWithoutFlags())
        reading[ipmi::SensorReading::flagsAt] |= ipmi::SensorReading::unavailableFlag;
    raw = ipmi::SensorReading(reading).raw();
    return true;
}

/// Of an answer too short for its flags the rest was filled up.
bool Sensor::isWithoutFlags()
{
    const std::string count = interpreter->symbolTable().read("$BMC_REPLY_BYTES").text();
    return common::policy().refusesShortReadings &&
           Util::string_to_long(count, 10) <= static_cast<long>(ipmi::SensorReading::flagsAt);
}

bool Sensor::isNumeric() const
{
    return record().type() == ipmi::sdrtype::full && record().eventType() == ipmi::eventtype::threshold &&
           record().has(ipmi::sdr::exponents);
}

/// What a sensor keeps while nobody scans it may be of any age.
bool Sensor::isWithoutReading() const
{
    const ipmi::SensorReading answer(reading);
    return answer.isUnavailable() || (common::policy().heedsScanning && !answer.isScanned());
}

void Sensor::interpret_sensor_value(const std::string& query, SymbolMap& result)
{
    result[query] = isNumeric() ? valueText() : stateText();
}

double Sensor::plainValue() const
{
    const ipmi::Factors factors = record().factors();
    int x = 0;
    double value = 0.0;
    CVTCUtilities::GetSignedData(raw, static_cast<std::uint8_t>(record().units().format()), &x);
    CVTCUtilities::ConversionFormula(record().linearisation() & linearisationBits, factors.m, x, factors.b,
                                     factors.resultExponent, factors.bExponent, &value);
    return value;
}

/// IPMI 2.0, 36.3; NaN where the record does not give the formula.
double Sensor::standardValue() const
{
    if (!record().hasReading())
        return std::nan("");
    return ipmi::linearise(record().linearisation(),
                           record().factors().apply(ipmi::signedReading(raw, record().units().format())));
}

std::string Sensor::valueText()
{
    const double value = common::policy().convertsByStandard ? standardValue() : plainValue();
    // The logarithm of 0 is no number that a manager could be shown.
    return std::isfinite(value) ? Util::double_to_string(value) : unavailable;
}

std::string Sensor::stateText() const
{
    if (!record().isReadable()) // an event-only record has other fields at these places
        return nameStates(0, 0, 0);
    const std::uint8_t readingType = record().eventType().value_or(0), sensorType = record().sensorType().value_or(0);
    const unsigned mask = record().readableStates(), states = ipmi::SensorReading(reading).states();
    if (!common::policy().namesDeasserted)
        return nameStates(readingType, sensorType, states & mask);
    const unsigned shown = mask == 0 ? states : states & mask; // some records leave the mask out
    if (shown != 0)
        return nameStates(readingType, sensorType, shown);
    const auto known = ipmi::statesOf(readingType, sensorType);
    return known.empty() || ipmi::canSayFitted(known, mask) ? unknownState : nothingAsserted;
}

void Sensor::interpret_sensor_units(const std::string& query, SymbolMap& result)
{
    char text[unitTextSize] = {};
    const ipmi::Units units = record().units();
    if (record().isReadable() && record().has(ipmi::sdr::modifierUnit) &&
        (FindAndLoadTemperatureUnit(units.base, units.modifier, text) ||
         FindAndLoadNonTemperatureUnit(units.base, units.modifier, units.flags, text)))
        result[query] = text;
}

void Sensor::tolerance(const std::string& query, int kind, SymbolMap& result)
{
    if (record().type() != ipmi::sdrtype::full || !record().has(ipmi::sdr::exponents))
        return;
    const std::uint8_t linearisation = record().linearisation() & linearisationBits;
    const ipmi::Factors factors = record().factors();
    if (kind == 1) {
        double value = 0.0;
        CVTCUtilities::CalculateTolerance(static_cast<int>(ipmi::toleranceOf(sdr[ipmi::sdr::mTolerance])), factors.m,
                                          factors.resultExponent, linearisation, &value);
        result[query] = Util::double_to_string(value);
    } else if (kind == 2) {
        // At most 512 x 10^7, which a long holds.
        const double step = linearisation == 0 ? std::fabs(factors.m * std::pow(10.0, factors.resultExponent)) : 0.0;
        result[query] = std::to_string(static_cast<long>(step));
    } else {
        result[query] = Util::double_to_string(ipmi::accuracyOf(sdr[ipmi::sdr::bAccuracy], sdr[ipmi::sdr::accuracy]));
    }
}

std::string Sensor::dec_to_hex_str(const std::string& decimal)
{
    return Util::dec_to_hex_string(static_cast<unsigned>(Util::string_to_long(decimal, 10)));
}

} // namespace Module::BMCConfig

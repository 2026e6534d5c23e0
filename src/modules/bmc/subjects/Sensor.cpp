#include "modules/bmc/subjects/Sensor.hpp"

#include "common/Logger.hpp"
#include "common/Util.hpp"
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

constexpr std::uint8_t unavailableFlag = 0x20;
constexpr const char* unavailable = "READING_UNAVAILABLE";
constexpr std::uint8_t linearisationBits = 0x3F, toleranceBits = 0x3F;
constexpr unsigned formatShift = 6; ///< analog data format in sensor units 1
constexpr std::uint8_t thresholdReading = 1, lunBits = 3;

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

/// The factors of the record's conversion.
struct Factors {
    int multiplier;
    int offset;
    int rExponent;
    int bExponent;
};

std::uint8_t toByte(const std::string& hex)
{
    return static_cast<std::uint8_t>(Util::string_to_long(hex, 16));
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
        if (flags & unavailableFlag) {
            result[query] = unavailable;
            return;
        }
    }
    switch (asks) {
    case Asks::Units:
        return interpret_sensor_units(query, result);
    case Asks::RawValue:
        if (isNumeric())
            reading = toByte(interpreter->getText($(rawReading)));
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
    sdr = Util::hexTextToBytes(local["GET:/" + name].text());
    return !sdr.empty();
}

bool Sensor::loadReading(const Address& sensor)
{
    const Address behind{sensor.number, sensor.owner, std::to_string(at(SdrByte::lun) & lunBits)};
    std::vector<std::string> items;
    ipmi("GET:/" + behind.path() + "/VALUE", items);
    if (items.size() < 4)
        return false;
    reading = toByte(items[0]);
    flags = toByte(items[1]);
    state1 = toByte(items[2]);
    state2 = toByte(items[3]);
    return true;
}

bool Sensor::isNumeric() const
{
    return at(SdrByte::recordType) == SDR_FULL && at(SdrByte::readingType) == thresholdReading &&
           sdr.size() > SdrByte::exponents;
}

void Sensor::interpret_sensor_value(const std::string& query, SymbolMap& result)
{
    result[query] = isNumeric() ? valueText() : stateText();
}

std::string Sensor::valueText()
{
    Factors factors{};
    int x = 0;
    double value = 0.0;
    CVTCUtilities::CalculateMultiplier(at(SdrByte::m), at(SdrByte::mTolerance), &factors.multiplier);
    CVTCUtilities::CalculateOffset(at(SdrByte::b), at(SdrByte::bAccuracy), &factors.offset);
    CVTCUtilities::CalculateRExponent(at(SdrByte::exponents), &factors.rExponent);
    CVTCUtilities::CalculateBExponent(at(SdrByte::exponents), &factors.bExponent);
    CVTCUtilities::GetSignedData(reading, static_cast<std::uint8_t>(at(SdrByte::units1) >> formatShift), &x);
    CVTCUtilities::ConversionFormula(at(SdrByte::linearisation) & linearisationBits, factors.multiplier, x,
                                     factors.offset, factors.rExponent, factors.bExponent, &value);
    // The logarithm of 0 is no number that a manager could be shown.
    return std::isfinite(value) ? Util::double_to_string(value) : unavailable;
}

std::string Sensor::stateText() const
{
    const int type = at(SdrByte::recordType);
    if (type != SDR_FULL && type != SDR_COMPACT) // an event-only record has other fields at these places
        return nameStates(0, 0, 0, 0);
    return nameStates(at(SdrByte::readingType), at(SdrByte::sensorType), state1 & at(SdrByte::mask1),
                      state2 & at(SdrByte::mask2));
}

void Sensor::interpret_sensor_units(const std::string& query, SymbolMap& result)
{
    char text[unitTextSize] = {};
    const std::uint8_t base = at(SdrByte::baseUnit), modifier = at(SdrByte::modifierUnit);
    if (sdr.size() > SdrByte::modifierUnit &&
        (FindAndLoadTemperatureUnit(base, modifier, text) ||
         FindAndLoadNonTemperatureUnit(base, modifier, at(SdrByte::units1), text)))
        result[query] = text;
}

void Sensor::tolerance(const std::string& query, int kind, SymbolMap& result)
{
    if (at(SdrByte::recordType) != SDR_FULL || sdr.size() <= SdrByte::exponents)
        return;
    const std::uint8_t linearisation = at(SdrByte::linearisation) & linearisationBits;
    int multiplier = 0, rExponent = 0;
    CVTCUtilities::CalculateMultiplier(at(SdrByte::m), at(SdrByte::mTolerance), &multiplier);
    CVTCUtilities::CalculateRExponent(at(SdrByte::exponents), &rExponent);
    if (kind == 1) {
        double value = 0.0;
        CVTCUtilities::CalculateTolerance(at(SdrByte::mTolerance) & toleranceBits, multiplier, rExponent, linearisation,
                                          &value);
        result[query] = Util::double_to_string(value);
    } else if (kind == 2) {
        // At most 512 x 10^7, which a long holds.
        const double step = linearisation == 0 ? std::fabs(multiplier * std::pow(10.0, rExponent)) : 0.0;
        result[query] = std::to_string(static_cast<long>(step));
    } else {
        unsigned accuracy = 0;
        CVTCUtilities::CalculateAccuracy(at(SdrByte::bAccuracy), at(SdrByte::accuracy), &accuracy);
        result[query] = Util::double_to_string(accuracy);
    }
}

std::string Sensor::dec_to_hex_str(const std::string& decimal)
{
    return Util::dec_to_hex_string(static_cast<unsigned>(Util::string_to_long(decimal, 10)));
}

} // namespace Module::BMCConfig

#include "modules/bmc/subjects/SensorUnits.hpp"

#include "ipmi/Conversion.hpp"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdio>
#include <string>

namespace Module::BMCConfig {

namespace {

constexpr const char* unitNames[] = {"Unspecified Units",
                                     "Degrees Celsius",
                                     "Degrees Fahrenheit",
                                     "Degrees Kelvin",
                                     "Volts",
                                     "Amps",
                                     "Watts",
                                     "Joules",
                                     "Coulombs",
                                     "VA",
                                     "Nits",
                                     "Lumen",
                                     "Lux",
                                     "Candela",
                                     "KPa",
                                     "PSI",
                                     "Newton",
                                     "CFM",
                                     "RPM",
                                     "Hz",
                                     "Microsecond",
                                     "Millisecond",
                                     "Second",
                                     "Minute",
                                     "Hour",
                                     "Day",
                                     "Week",
                                     "Mil",
                                     "Inches",
                                     "Feet",
                                     "CuIn",
                                     "CuFeet",
                                     "MM",
                                     "CM",
                                     "M",
                                     "CuCM",
                                     "CuM",
                                     "Liters",
                                     "FluidOunce",
                                     "Radians",
                                     "Steradians",
                                     "Revolutions",
                                     "Cycles",
                                     "Gravities",
                                     "Ounce",
                                     "Pound",
                                     "FtLb",
                                     "OzIn",
                                     "Gauss",
                                     "Gilerts",
                                     "Henry",
                                     "Millihenry",
                                     "Farad",
                                     "Microfarad",
                                     "Ohms",
                                     "Siemens",
                                     "Mole",
                                     "Becquerel",
                                     "PPM",
                                     "Reserved",
                                     "Decibels",
                                     "DbA",
                                     "DbC",
                                     "Gray",
                                     "Sievert",
                                     "ColorTempDegK",
                                     "Bit",
                                     "Kilobit",
                                     "Megabit",
                                     "Gigabit",
                                     "Byte",
                                     "Kilobyte",
                                     "Megabyte",
                                     "Gigabyte",
                                     "Word",
                                     "DWord",
                                     "QWord",
                                     "Line",
                                     "Hit",
                                     "Miss",
                                     "Retry",
                                     "Reset",
                                     "OverrunOverflow",
                                     "Underrun",
                                     "Collision",
                                     "Packets",
                                     "Messages",
                                     "Characters",
                                     "Error",
                                     "CorrectableError",
                                     "UncorrectableError"};

constexpr auto unitRows = [] {
    std::array<CodeRow, std::size(unitNames)> rows{};
    for (std::size_t code = 0; code < rows.size(); ++code)
        rows[code] = {static_cast<int>(code), unitNames[code]};
    return rows;
}();
static_assert(unitRows.size() == 91);

void load(char* text, const std::string& unit)
{
    std::snprintf(text, unitTextSize, "%s", unit.c_str());
}

} // namespace

const std::span<const CodeRow> SensorUnitTypeCodesTypes = unitRows;

int FindRowValue(std::span<const CodeRow> table, int code, const char** name)
{
    assert(NULL != table.data());
    *name = "";
    const auto row = std::ranges::find(table, code, &CodeRow::code);
    if (row == table.end())
        return 0;
    *name = row->name;
    return static_cast<int>(row - table.begin());
}

int FindAndLoadTemperatureUnit(std::uint8_t base, std::uint8_t modifier, char* text)
{
    constexpr std::uint8_t celsius = 1, fahrenheit = 2;
    if (modifier != 0 || (base != celsius && base != fahrenheit))
        return 0;
    load(text, unitNames[base]);
    return 1;
}

int FindAndLoadNonTemperatureUnit(std::uint8_t base, std::uint8_t modifier, std::uint8_t units1, char* text)
{
    const char* name = nullptr;
    FindRowValue(SensorUnitTypeCodesTypes, base, &name);
    std::string unit = name;
    const ipmi::Units units{units1, base, modifier};
    const bool per = units.modifierUse() == ipmi::ModifierUse::perUnit;
    if (modifier != 0 && (per || units.modifierUse() == ipmi::ModifierUse::timesUnit)) {
        FindRowValue(SensorUnitTypeCodesTypes, modifier, &name);
        unit += (per ? "/" : "*") + std::string(name);
    }
    if (units.isPercentage())
        unit += "%";
    if (unit.empty())
        return 0;
    load(text, unit);
    return 1;
}

} // namespace Module::BMCConfig

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace Module::BMCConfig {

/// A code with its name.
struct CodeRow {
    int code;
    const char* name;
};

/// Units by their code in a sensor record (IPMI 2.0, 43.17); the names are this system's own.
extern const std::span<const CodeRow> SensorUnitTypeCodesTypes;

/// Room that the unit's text has, its end mark included.
inline constexpr std::size_t unitTextSize = 20;

/// The name of `code` in `name`, and the row's place. A code that the table does not hold gives an empty name and 0.
int FindRowValue(std::span<const CodeRow> table, int code, const char** name);

/// The unit of a temperature into `text` (unitTextSize bytes): 1, or 0 if it is none or has a modifier unit.
int FindAndLoadTemperatureUnit(std::uint8_t base, std::uint8_t modifier, char* text);
/// Any other unit, with what sensor units 1 says of the modifier unit and of percents: 1, or 0 without a name.
int FindAndLoadNonTemperatureUnit(std::uint8_t base, std::uint8_t modifier, std::uint8_t units1, char* text);

} // namespace Module::BMCConfig

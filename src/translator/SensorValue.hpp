#pragma once

#include "translator/EventContext.hpp"

namespace translator {

/// The value of a raw reading byte by the sensor's record (IPMI 2.0, 36.3), or what stands in for a missing value.
std::wstring sensorValueText(const EventContext& context, std::uint8_t raw);
/// The sensor's units in words: base unit, modifier unit, rate, percentage (IPMI 2.0, 43.1, bytes 21 to 23).
std::wstring sensorUnitText(const EventContext& context);

} // namespace translator

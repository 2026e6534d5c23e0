#pragma once

#include "translator/EventContext.hpp"

#include <optional>

namespace translator {

/// The value of a raw reading byte by the sensor's record (IPMI 2.0, 36.3); nothing if the record does not tell it.
std::optional<double> sensorValue(const EventContext& context, std::uint8_t raw);
/// The same as text, or what stands in for a missing value.
std::wstring sensorValueText(const EventContext& context, std::uint8_t raw);
/// How grave a threshold event leaves the sensor that has come back over the event's threshold: 0, or the severity of a
/// milder threshold that the reading is still beyond, by the thresholds in the sensor's record.
int severityAfterReturn(const EventContext& context);
/// The sensor's units in words: base unit, modifier unit, rate, percentage (IPMI 2.0, 43.1, bytes 21 to 23).
std::wstring sensorUnitText(const EventContext& context);

} // namespace translator

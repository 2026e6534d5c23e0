#pragma once

#include <cstdint>
#include <string>

namespace Module::BMCConfig {

/// What stands for states of which none has a name.
inline constexpr const char* unknownState = "UNKNOWN";

/// The names of a discrete sensor's states, ", " between them, lowest bit first; "UNKNOWN" if no state with a name is
/// set. `readingType`: event/reading type code; `sensorType` counts for 6Fh and the codes of makers (IPMI 2.0, 42).
/// `states`: those of a reading, bit n for offset n, masked by what the record says the sensor can report.
std::string nameStates(std::uint8_t readingType, std::uint8_t sensorType, unsigned states);

} // namespace Module::BMCConfig

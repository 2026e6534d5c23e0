#pragma once

#include "ipmi/Bytes.hpp"

/// Reading and event types (IPMI 2.0, 42.1) and sensor types (table 42-3) that are named anywhere, and the answer to
/// Get Sensor Reading (35.14).
namespace ipmi {

namespace eventtype {
inline constexpr std::uint8_t unspecified = 0x00, threshold = 0x01, firstGeneric = 0x02, digitalDiscrete = 0x03,
                              lastGeneric = 0x0C, sensorSpecific = 0x6F, firstOem = 0x70, lastOem = 0x7F;
} // namespace eventtype

namespace sensortype {
inline constexpr std::uint8_t temperature = 0x01, voltage = 0x02, current = 0x03, fan = 0x04, physicalSecurity = 0x05,
                              securityViolation = 0x06, processor = 0x07, powerSupply = 0x08, powerUnit = 0x09,
                              memory = 0x0C, driveSlot = 0x0D;
} // namespace sensortype

/// Offset of physical security that says that the chassis is open (table 42-3, 05h).
inline constexpr unsigned generalChassisIntrusion = 0;

/// The data of the answer, behind the completion code; bytes that are not there read as 0.
class SensorReading {
public:
    static constexpr std::size_t rawAt = 0, flagsAt = 1, states1At = 2, states2At = 3, size = 4;
    static constexpr std::uint8_t unavailableFlag = 0x20, scanningFlag = 0x40;

    explicit SensorReading(ByteView answer) : data(answer) {}

    std::uint8_t raw() const { return byteAt(data, rawAt); }
    /// "Reading/state unavailable": the rest says nothing.
    bool isUnavailable() const { return (byteAt(data, flagsAt) & unavailableFlag) != 0; }
    bool isScanned() const { return (byteAt(data, flagsAt) & scanningFlag) != 0; }
    /// Bit n is offset n; bit 15 is reserved.
    std::uint16_t states() const { return wordAt(data, states1At); }
    bool isSet(unsigned offset) const { return (states() >> offset & 1) != 0; }

private:
    ByteView data;
};

} // namespace ipmi

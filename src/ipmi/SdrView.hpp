#pragma once

#include "ipmi/Conversion.hpp"
#include "ipmi/TypeLengthText.hpp"

#include <optional>

/// Sensor data records (IPMI 2.0, 43).
namespace ipmi {

/// Types of record (IPMI 2.0, 43, table 43-1 and following).
namespace sdrtype {
inline constexpr std::uint8_t full = 0x01, compact = 0x02, eventOnly = 0x03, genericLocator = 0x10, fruLocator = 0x11,
                              controllerLocator = 0x12;
} // namespace sdrtype

/// Places of a record's bytes, counted from 0; the standard counts from 1.
namespace sdr {
// Every record (43.1, record header).
inline constexpr std::size_t id = 0, version = 2, type = 3, length = 4, headerSize = 5;
// Records of sensors: full, compact, event-only (43.1 to 43.3, record key bytes).
inline constexpr std::size_t owner = 5, lun = 6, number = 7, entityId = 8, entityInstance = 9;
// Full and compact records (43.1 and 43.2).
inline constexpr std::size_t sensorType = 12, eventType = 13, readableStates = 18, readableThresholds = 18,
                             settableThresholds = 19, units1 = 20, baseUnit = 21, modifierUnit = 22;
// Full records (43.1).
inline constexpr std::size_t linearisation = 23, m = 24, mTolerance = 25, b = 26, bAccuracy = 27, accuracy = 28,
                             exponents = 29, upperNonRecoverable = 36, upperCritical = 37, upperNonCritical = 38,
                             lowerNonRecoverable = 39, lowerCritical = 40, lowerNonCritical = 41;
// Event-only records (43.3).
inline constexpr std::size_t eventOnlySensorType = 10, eventOnlyEventType = 11;
} // namespace sdr

/// Where the type/length byte of a record's name stands; the text follows it.
struct NamePlace {
    std::uint8_t recordType;
    std::size_t typeLength;
};

/// IPMI 2.0, 43.1 to 43.3 and 43.7 to 43.9.
inline constexpr NamePlace namePlaces[] = {
    {sdrtype::full, 47},           {sdrtype::compact, 31},    {sdrtype::eventOnly, 16},
    {sdrtype::genericLocator, 15}, {sdrtype::fruLocator, 15}, {sdrtype::controllerLocator, 15},
};

/// Linearisation codes from here on are of sensors that are not linear (43.1, byte 24).
inline constexpr std::uint8_t firstNonLinear = 0x70;

/// The last linearisation code whose formula the standard gives (43.1, byte 24); a reading of those between needs none.
inline constexpr std::uint8_t lastFormula = 0x0B;

/// A view of one record; the bytes stay the caller's. A byte that the record does not have reads as 0.
class SdrView {
public:
    explicit SdrView(ByteView record) : bytes(record) {}

    ByteView all() const { return bytes; }
    bool has(std::size_t at) const { return at < bytes.size(); }
    std::uint8_t at(std::size_t at) const { return byteAt(bytes, at); }

    std::uint8_t version() const { return at(sdr::version); }
    std::uint8_t type() const { return at(sdr::type); }
    /// True for full, compact and event-only records, which alone have an owner, a LUN and a sensor number.
    bool isSensor() const;
    /// True for full and compact records, the sensors of which can be read.
    bool isReadable() const { return type() == sdrtype::full || type() == sdrtype::compact; }

    /// Slave address in the 8-bit form, or a software id with bit 0 set.
    std::uint8_t owner() const { return at(sdr::owner); }
    /// Channel, reserved bits and LUN in one byte, as the keys of the engine hold them.
    std::uint8_t lunByte() const { return at(sdr::lun); }
    std::uint8_t lun() const { return lunByte() & 0x03; }
    std::uint8_t channel() const { return lunByte() >> 4; }
    std::uint8_t number() const { return at(sdr::number); }
    std::uint8_t entityId() const { return at(sdr::entityId); }
    std::uint8_t entityInstance() const { return at(sdr::entityInstance); }
    /// Nothing for a record that is no sensor's, or ends before it.
    std::optional<std::uint8_t> sensorType() const;
    /// Event/reading type (IPMI 2.0, 42.1); nothing as above.
    std::optional<std::uint8_t> eventType() const;

    /// The states that can be read, bit for bit as in a reading; full and compact records.
    std::uint16_t readableStates() const { return wordAt(bytes, sdr::readableStates); }

    Units units() const { return {at(sdr::units1), at(sdr::baseUnit), at(sdr::modifierUnit)}; }
    /// Of a full record (IPMI 2.0, 36.3).
    std::uint8_t linearisation() const { return at(sdr::linearisation) & 0x7F; }
    bool isLinear() const { return type() == sdrtype::full && linearisation() < firstNonLinear; }
    /// True for a full record of a sensor with thresholds whose raw reading the record's own factors turn into a value.
    bool hasReading() const;
    Factors factors() const;

    /// The field of the sensor's or device's name; empty where the type of record has none.
    TypeLengthText name() const;

    /// The sensor as one number: LUN in bits 0 and 1, owner in 8 to 15, sensor number in 16 to 23, bits 5 to 7 of the
    /// LUN's byte (of the channel's number) in 24 to 26.
    std::int32_t packedId() const;

private:
    ByteView bytes;
};

} // namespace ipmi

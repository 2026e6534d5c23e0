#pragma once

#include <cstdint>
#include <span>

/// A view of a system event log record of 16 bytes or more (IPMI 2.0, 32.1); the bytes stay the caller's.
class SELEntry {
public:
    explicit SELEntry(std::span<const std::uint8_t> record) : bytes(record) {}
    static constexpr std::size_t length = 16;

    /// Generator id, channel and LUN, and sensor number in one number; that of SDREntry for the same sensor.
    int getIndex() const { return (generator() * 256 + bytes[8]) * 256 + sensorNumber(); }

    std::uint8_t recordType() const { return bytes[2]; }
    /// Seconds since 1970.
    std::uint32_t seconds() const { return secondsOf(bytes.subspan<3, 4>()); }
    /// Slave address, or software id with bit 0 set.
    std::uint8_t generator() const { return bytes[7]; }
    std::uint8_t sensorType() const { return bytes[10]; }
    std::uint8_t sensorNumber() const { return bytes[11]; }
    bool isDeassertion() const { return (bytes[12] & 0x80) != 0; }
    std::uint8_t eventType() const { return bytes[12] & 0x7F; }
    /// Event data byte 1, 2 or 3.
    std::uint8_t eventData(int number) const { return bytes[12 + static_cast<std::size_t>(number)]; }
    std::uint8_t offset() const { return eventData(1) & 0x0F; }
    /// What event data 1 says of event data 2 (0 unspecified, 1 reading or previous state, 2 OEM code, 3 extension).
    std::uint8_t data2Kind() const { return eventData(1) >> 6; }
    /// The same of event data 3.
    std::uint8_t data3Kind() const { return eventData(1) >> 4 & 3; }
    /// Manufacturer id of a timestamped OEM record.
    std::uint32_t manufacturer() const { return bytes[7] | bytes[8] << 8 | bytes[9] << 16; }
    std::span<const std::uint8_t, 6> oemTimeBytes() const { return bytes.subspan<10, 6>(); }
    std::span<const std::uint8_t, 13> oemNonTimeBytes() const { return bytes.subspan<3, 13>(); }
    /// What an extended record has behind the first 16 bytes.
    std::span<const std::uint8_t> extension() const { return bytes.subspan(length); }

    /// Four bytes, the least significant first.
    static std::uint32_t secondsOf(std::span<const std::uint8_t, 4> stamp)
    {
        return stamp[0] | stamp[1] << 8 | stamp[2] << 16 | std::uint32_t{stamp[3]} << 24;
    }

private:
    std::span<const std::uint8_t> bytes;
};

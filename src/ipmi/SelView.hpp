#pragma once

#include "ipmi/Bytes.hpp"

/// Records of the system event log (IPMI 2.0, 32).
namespace ipmi {

/// Places of a record's bytes, counted from 0; the standard counts from 1.
namespace sel {
inline constexpr std::size_t id = 0, type = 2, time = 3, generator = 7, channelAndLun = 8, formatVersion = 9,
                             sensorType = 10, sensorNumber = 11, directionAndType = 12, eventData1 = 13;
inline constexpr std::size_t manufacturer = 7, oemTimestampedData = 10, oemData = 3; ///< 32.2 and 32.3
inline constexpr std::size_t recordSize = 16; ///< an extended record of a manufacturer's own is longer
} // namespace sel

/// Types of record (32.1): the standard's own event; all below the first of the makers' are read as such; records
/// without a time from the last on.
inline constexpr std::uint8_t systemEventType = 0x02, firstOemType = 0xC0, firstTimelessType = 0xE0;

/// Ids with a meaning of their own (31.5): the log's first record, and its last one or, as the id of a next record, the
/// end.
inline constexpr unsigned firstSelId = 0, lastSelId = 0xFFFF;

/// What event data 1 says of event data 2 and 3 (29.7, table 29-6). The code 1 is the reading or the threshold of a
/// threshold sensor and the previous state of a discrete one, 3 the sensor type's own extension.
enum class DataKind : std::uint8_t { unspecified, reading, oem, extension };

/// A view of one record of 16 bytes or more; the bytes stay the caller's.
class SelView {
public:
    explicit SelView(ByteView record) : bytes(record) {}

    unsigned id() const { return wordAt(bytes, sel::id); }
    std::uint8_t type() const { return byteAt(bytes, sel::type); }
    bool isSystemEvent() const { return type() < firstOemType; }
    bool isTimestamped() const { return type() < firstTimelessType; }
    /// Seconds since 1970, whatever the type of the record.
    std::uint32_t seconds() const { return littleEndian(bytes.subspan(sel::time, 4)); }

    // System events (32.1).
    /// Slave address in the 8-bit form, or a software id with bit 0 set.
    std::uint8_t generator() const { return byteAt(bytes, sel::generator); }
    bool isFromSoftware() const { return (generator() & 0x01) != 0; }
    std::uint8_t channelAndLun() const { return byteAt(bytes, sel::channelAndLun); }
    std::uint8_t channel() const { return channelAndLun() >> 4; }
    std::uint8_t lun() const { return channelAndLun() & 0x03; }
    std::uint8_t sensorType() const { return byteAt(bytes, sel::sensorType); }
    std::uint8_t sensorNumber() const { return byteAt(bytes, sel::sensorNumber); }
    bool isDeassertion() const { return (byteAt(bytes, sel::directionAndType) & 0x80) != 0; }
    std::uint8_t eventType() const { return byteAt(bytes, sel::directionAndType) & 0x7F; }
    /// Event data byte 1, 2 or 3.
    std::uint8_t eventData(int number) const
    {
        return byteAt(bytes, sel::eventData1 + static_cast<std::size_t>(number) - 1);
    }
    std::uint8_t offset() const { return eventData(1) & 0x0F; }
    DataKind data2Kind() const { return static_cast<DataKind>(eventData(1) >> 6); }
    DataKind data3Kind() const { return static_cast<DataKind>(eventData(1) >> 4 & 3); }

    // OEM records (32.2 and 32.3).
    std::uint32_t manufacturer() const { return littleEndian(bytes.subspan(sel::manufacturer, 3)); }
    std::span<const std::uint8_t, 6> oemTimestampedData() const { return bytes.subspan<sel::oemTimestampedData, 6>(); }
    std::span<const std::uint8_t, 13> oemData() const { return bytes.subspan<sel::oemData, 13>(); }

    /// What an extended record has behind the standard's bytes.
    ByteView extension() const { return bytes.subspan(sel::recordSize); }

private:
    ByteView bytes;
};

} // namespace ipmi

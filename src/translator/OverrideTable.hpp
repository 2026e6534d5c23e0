#pragma once

#include "translator/EventTable.hpp"

/// An override says of one event what `event` says.
using override = event;

namespace translator {

/// The sensor key of overrides: event type in the high byte, sensor type in the low one.
constexpr std::uint16_t packSensorKey(unsigned eventType, unsigned sensorType)
{
    return static_cast<std::uint16_t>((eventType & 0xFFu) << 8 | (sensorType & 0xFFu));
}

} // namespace translator

/// Events of one kind of sensor that go before the general tables.
class OverrideTable {
public:
    void add(std::uint16_t sensor, std::uint32_t key, override entry) { index.add(sensor, key, std::move(entry)); }
    const override* findNearest(std::uint16_t sensor, unsigned offset, unsigned data2, unsigned data3) const
    {
        return index.findNearest(sensor, offset, data2, data3);
    }

    // For other callers; the agent itself takes the nearest entry.

    /// Fields of the entry of exactly this key; OverrideTableError without one.
    const std::wstring& findTranslation(std::uint16_t sensor, std::uint32_t key) const;
    int findAssertSev(std::uint16_t sensor, std::uint32_t key) const;
    int findDeassertSev(std::uint16_t sensor, std::uint32_t key) const;
    int findRecommendAction(std::uint16_t sensor, std::uint32_t key) const;

private:
    const override& entryOf(std::uint16_t sensor, std::uint32_t key) const;
    translator::EventIndex index;
};

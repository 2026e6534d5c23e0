#pragma once

#include "client/events/SelWrapper.hpp"
#include "client/traps/EventData.hpp"

#include <span>

namespace client::events {

/// What an event says of its device.
struct Meaning {
    const char* status = "";   ///< the event's text; its tail gives the trap's severity
    const char* severity = ""; ///< the log's severity word; without one the trap has no severity
    int CEventData::*counter = nullptr;
};

inline constexpr Meaning statusOk = {"Status is OK", "OK"};

/// One offset of a sensor's states. Its place in the table is event data 1 as DecodeSELQuery leaves it, modulo 16.
struct OffsetRow {
    Meaning asserted;
    Meaning deasserted = statusOk;
};
using OffsetTable = std::span<const OffsetRow>;

/// Sensors with thresholds (IPMI 2.0, table 42-2, type 01h).
OffsetTable thresholdOffsets(const EVENT_DATA_STRUCT& record);
OffsetTable coolingRedundancyOffsets(const EVENT_DATA_STRUCT& record);
OffsetTable powerSupplyOffsets(const EVENT_DATA_STRUCT& record);
OffsetTable powerRedundancyOffsets(const EVENT_DATA_STRUCT& record);
OffsetTable memoryOffsets(const EVENT_DATA_STRUCT& record);
OffsetTable processorOffsets(const EVENT_DATA_STRUCT& record);
/// By the record's sensor type; empty for a type without a table.
OffsetTable biosOffsets(const EVENT_DATA_STRUCT& record);
OffsetTable watchdogOffsets(const EVENT_DATA_STRUCT& record);
OffsetTable securityViolationOffsets(const EVENT_DATA_STRUCT& record);
OffsetTable intrusionOffsets(const EVENT_DATA_STRUCT& record);
/// By the record's event type: presence sensors and drive slot sensors.
OffsetTable driveSlotOffsets(const EVENT_DATA_STRUCT& record);
OffsetTable phpSlotOffsets(const EVENT_DATA_STRUCT& record);
OffsetTable surgeLoopOffsets(const EVENT_DATA_STRUCT& record);

} // namespace client::events

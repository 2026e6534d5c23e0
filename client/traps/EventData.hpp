#pragma once

#include <ctime>

/// One trap to send: an element of the event queue, copied by value.
struct eventData {
    int nInstIndex = 0; ///< one-based row of the device in its table, 0 if none
    int nDeviceId = 0;
    char stDeviceDesc[512] = {};
    char stEventDesc[1024] = {}; ///< the event's text; its tail carries the severity word
    int nSeverity = 0;           ///< HEALTH_STATUS
    char stTimeStamp[512] = {};
    char stSensorType[512] = {};
    int nEventType = 0;
    int nEventGroup = 0;
};
static_assert(sizeof(eventData) == 2580);

/// A record of the event log (IPMI 2.0, 32.1) as the classifiers get it, with the translator's words. Numbers hold what
/// DecodeSELQuery makes of the record's text, which for some is not the byte.
struct __attribute__((packed)) EVENT_DATA_STRUCT {
    unsigned short usRecordId = 0;
    unsigned char ucRecordType = 0;
    unsigned char ucPadding = 0;
    std::time_t t_Timestamp = 0;
    unsigned short usGeneratorID = 0;
    unsigned char ucEvmRev = 0;
    unsigned char ucSensorType = 0;
    unsigned char ucSensorNumber = 0;
    unsigned char ucEventTrigger = 0; ///< bit 7: deassertion; bits 0 to 6: event type
    unsigned char ucEventData1 = 0;
    unsigned char ucEventData2 = 0;
    unsigned char ucEventData3 = 0;
    char sEventDiscription[1024] = {};
    char sSeverity[20] = {};
};
static_assert(sizeof(EVENT_DATA_STRUCT) == 1065);

namespace client::traps {

/// Event type of a record (IPMI 2.0, table 42-1).
inline int eventTypeOf(const EVENT_DATA_STRUCT& record)
{
    return record.ucEventTrigger & 0x7F;
}

} // namespace client::traps

#pragma once

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

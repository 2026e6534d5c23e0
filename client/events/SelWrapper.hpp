#pragma once

#include "client/words/CString.hpp"
#include "client/words/Entities.hpp"

#include <cstddef>

/// What the road of an event carries from the log to the trap queue: plain values, copied field by field.

namespace client::events {

enum EventDirection : int { EVENT_ASSERTED = 0, EVENT_DEASSERTED = 1, EVENT_DIRECTION_UNKNOWN = 2 };
enum EventState : int { EVENT_STATE_UNKNOWN = 0 };

} // namespace client::events

/// A record of the event log as data.
class CSelInfo {
public:
    virtual ~CSelInfo() = default;

    unsigned short m_usRecordId = 0;
    int m_bStandardEvent = 0;
    std::size_t m_tdTimeStamp = 0;
    int m_iDeviceId = 0;
    client::events::EventDirection m_eEventDirection = client::events::EVENT_DIRECTION_UNKNOWN;
    unsigned char m_ucEventType = 0;
    unsigned char m_ucEventData1 = 0;
    unsigned char m_ucEventData2 = 0;
    unsigned char m_ucEventData3 = 0;
    unsigned char m_ucEvMRev = 0;
    unsigned short m_usGeneratorID = 0;
    int m_iSensorReading = client::words::noValue;
    int m_iSensorThreshold = client::words::noValue;
    CString m_cPreviousState;
    CString m_cLocalTimeStamp;
    CString m_cSensorType;
    CString m_cDescription; ///< English, without the sensor's name where the words are ours: it chooses the trap
    CString m_cShown;       ///< what the trap says in its place; empty for the description itself
    CString m_cSeverity;
};

class CSelData {
public:
    virtual ~CSelData() = default;

    unsigned short m_usChassisId = 0;
};

class CSelWrapper {
public:
    virtual ~CSelWrapper() = default;

    CSelInfo m_cInfo;
    CSelData m_cData;
};

class CEventInfo {
public:
    virtual ~CEventInfo() = default;

    int m_iIdNumber = 0; ///< the device's number, as the rows of the tables hold it
    CString m_cSensorName;
    unsigned short m_usChassisId = 0;
    client::events::EventState m_eState = client::events::EVENT_STATE_UNKNOWN;
};

/// What a classifier makes of the record.
class CEventData {
public:
    virtual ~CEventData() = default;

    int m_iFatalErrors = 0;
    int m_iCriticalErrors = 0;
    int m_iWarningErrors = 0;
    int m_bAsserted = 0;
    CString m_cStatus; ///< the severity word
    CSelWrapper m_cSelWrapper;
};

class CEventWrapper {
public:
    virtual ~CEventWrapper() = default;

    CEventInfo m_cInfo;
    CEventData m_cData;
};

#pragma once

#include "client/EventData.hpp"

#include <deque>
#include <list>
#include <mutex>

/// The agent's end of the event road: the lists of devices in trouble, and the queue of events for the trap sender.
/// No trap sender exists yet: events wait in the queue.
class eventHandler {
public:
    virtual ~eventHandler() = default;

    /// Takes over the present system status. Always 0.
    virtual int init();

    /// Puts the device at the end of the list of its status (4 non-critical, 5 critical, 6 non-recoverable), once. 9
    /// for any other status.
    virtual int insertElementByDeviceId(int deviceId, int status);
    virtual int insertElement(const eventData& event);
    /// Takes the device out of the first list that has it, from the mildest on.
    virtual void removeElement(int deviceId);

    /// Queues a copy. Always 0.
    virtual int addEvent(const eventData& event);

    std::list<int> mNonCriList;
    std::list<int> mCriticalList;
    std::list<int> mNonRecList;
    std::deque<eventData> mEventQueue; ///< under SyncMutex
    int m_nHealthStatus = 0;

private:
    std::mutex SyncMutex;
};

#include "client/eventHandler.hpp"

#include "client/Functions.hpp"

#include <algorithm>

int eventHandler::init()
{
    m_nHealthStatus = getHealthStatus();
    return CLIENT_SUCCESS;
}

int eventHandler::insertElementByDeviceId(int deviceId, int status)
{
    std::list<int>* list = nullptr;
    if (status == ENUM_STATUS_NONCRI)
        list = &mNonCriList;
    else if (status == ENUM_STATUS_CRITICAL)
        list = &mCriticalList;
    else if (status == ENUM_STATUS_NONREC)
        list = &mNonRecList;
    else
        return CLIENT_ERROR_NOSUCHNAME;
    if (std::ranges::find(*list, deviceId) == list->end())
        list->push_back(deviceId);
    return CLIENT_SUCCESS;
}

int eventHandler::insertElement(const eventData& event)
{
    return insertElementByDeviceId(event.nDeviceId, event.nSeverity);
}

void eventHandler::removeElement(int deviceId)
{
    for (std::list<int>* const list : {&mNonCriList, &mCriticalList, &mNonRecList})
        if (list->remove(deviceId) > 0)
            return;
}

int eventHandler::addEvent(const eventData& event)
{
    const std::scoped_lock lock(SyncMutex);
    mEventQueue.push_back(event);
    return CLIENT_SUCCESS;
}

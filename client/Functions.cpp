#include "client/Functions.hpp"

#include "client/smClient.hpp"

namespace {

/// Calls the client's operation, or answers `otherwise` when there is no client any more or not yet.
template<class Result, class... Parameters, class... Arguments>
Result forward(Result otherwise, Result (subagentBase::*operation)(Parameters...), Arguments&&... arguments)
{
    const ClientUse client;
    return client ? (client.operator->()->*operation)(arguments...) : otherwise;
}

} // namespace

int getIntInfo(_SMEntity entity, _SMAttribute attribute, int row, long& out)
{
    return forward(int{CLIENT_ERROR_NO_GROUP}, &subagentBase::getIntInfo, entity, attribute, row, out);
}

int getIntData(_SMEntity entity, _SMAttribute attribute, int row, long& out)
{
    return forward(int{CLIENT_ERROR_NO_GROUP}, &subagentBase::getIntData, entity, attribute, row, out);
}

int getStrInfo(_SMEntity entity, _SMAttribute attribute, int row, char*& out)
{
    return forward(int{CLIENT_ERROR_NO_GROUP}, &subagentBase::getStrInfo, entity, attribute, row, out);
}

int getStrData(_SMEntity entity, _SMAttribute attribute, int row, char*& out)
{
    return forward(int{CLIENT_ERROR_NO_GROUP}, &subagentBase::getStrData, entity, attribute, row, out);
}

int setIntData(_SMEntity entity, _SMAttribute attribute, int row, long value)
{
    return forward(int{CLIENT_ERROR_NO_GROUP}, &subagentBase::setIntData, entity, attribute, row, value);
}

int getCount(_SMEntity entity)
{
    return forward(int{CLIENT_ERROR_NO_GROUP}, &subagentBase::getCount, entity);
}

int getIndex(_SMEntity entity, int deviceId)
{
    return forward(int{CLIENT_ERROR_NO_GROUP}, &subagentBase::getIndex, entity, deviceId);
}

int getExtGroupStatus(_SMEntity entity)
{
    return forward(int{CLIENT_ERROR_NO_GROUP}, &subagentBase::getGroupStatus, entity);
}

int seedHealthListsExt(_SMEntity entity)
{
    return forward(int{CLIENT_ERROR_NO_GROUP}, &subagentBase::seedHealthLists, entity);
}

char* getDesc(_SMEntity entity, int row)
{
    return forward(static_cast<char*>(nullptr), &subagentBase::getDesc, entity, row);
}

int processEvent()
{
    return forward(0, &subagentBase::processEvent);
}

int addEvent(eventData event)
{
    return forward(int{CLIENT_ERROR_NO_GROUP}, &subagentBase::addEvent, event);
}

int setHealthStatus(int status)
{
    return forward(0, &subagentBase::setHealthStatus, status);
}

int getHealthStatus()
{
    return forward(0, &subagentBase::getHealthStatus);
}

int isSetEnabled()
{
    return forward(0, &subagentBase::isSetEnabled);
}

int isTrapEnabled()
{
    return forward(0, &subagentBase::isTrapEnabled);
}

int isInitComplete()
{
    smClient* const client = gSubagent;
    return client ? client->isInitComplete() : 0;
}

int initSMClient()
{
    gSubagent = std::make_unique<smClient>().release();
    return gSubagent.load()->init();
}

void shutdownSMClient()
{
    if (smClient* const client = gSubagent)
        client->shutdown();
}

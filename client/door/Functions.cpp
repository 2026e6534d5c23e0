#include "client/door/Functions.hpp"

#include "client/door/smClient.hpp"
#include "client/traps/TrapQueue.hpp"
#include "client/words/Trace.hpp"
#include "common/Policy.hpp"
#include "common/Waits.hpp"

#include <cxxabi.h>

namespace {

/// Calls the client's operation, or answers `otherwise` when there is no client yet. The callers are
/// C functions: whatever is thrown ends here.
template<class Result, class Client, class... Parameters, class... Arguments>
Result forward(Result otherwise, Result (Client::*operation)(Parameters...), Arguments&&... arguments)
{
    smClient* const client = gSubagent;
    if (!client)
        return otherwise;
    try {
        return (client->*operation)(arguments...);
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (...) {
        client::words::trace("a request of the client ended by an exception\n");
        return otherwise;
    }
}

constexpr int noGroup = CLIENT_ERROR_NO_GROUP;

} // namespace

int getIntInfo(_SMEntity entity, _SMAttribute attribute, int row, long& out)
{
    return forward(noGroup, &subagentBase::getIntInfo, entity, attribute, row, out);
}

int getIntData(_SMEntity entity, _SMAttribute attribute, int row, long& out)
{
    return forward(noGroup, &subagentBase::getIntData, entity, attribute, row, out);
}

int getStrInfo(_SMEntity entity, _SMAttribute attribute, int row, char*& out)
{
    return forward(noGroup, &subagentBase::getStrInfo, entity, attribute, row, out);
}

int getStrData(_SMEntity entity, _SMAttribute attribute, int row, char*& out)
{
    return forward(noGroup, &subagentBase::getStrData, entity, attribute, row, out);
}

int setIntData(_SMEntity entity, _SMAttribute attribute, int row, long value)
{
    return forward(noGroup, &subagentBase::setIntData, entity, attribute, row, value);
}

int getCount(_SMEntity entity)
{
    return forward(0, &subagentBase::getCount, entity);
}

int getIndex(_SMEntity entity, int deviceId)
{
    return forward(0, &subagentBase::getIndex, entity, deviceId);
}

int getExtGroupStatus(_SMEntity entity)
{
    return forward(0, &subagentBase::getGroupStatus, entity);
}

int seedHealthListsExt(_SMEntity entity)
{
    return forward(noGroup, &subagentBase::seedHealthLists, entity);
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
    return forward(noGroup, &subagentBase::addEvent, event);
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

namespace client::door {

void awaitInitComplete()
{
    using namespace std::chrono_literals;
    while (!isInitComplete())
        common::waitInterruptibly(1s);
}

std::string configuredLocale()
{
    const smClient* const client = gSubagent;
    return client && client->mSystemManagement ? client->mSystemManagement->m_stLocale : "";
}

int findRow(_SMEntity entity, int deviceId, const std::string& sensorName)
{
    return forward(0, &smClient::findRow, entity, deviceId, sensorName);
}

bool fillGroups(Sources sources)
{
    return forward(false, &smClient::fillGroups, sources);
}

bool readUnreadFigures(const std::function<bool()>& goOn)
{
    return forward(false, &smClient::readUnreadFigures, goOn);
}

std::optional<status::DeviceStatus> readPresentStatus(int deviceId)
{
    return forward(std::optional<status::DeviceStatus>(), &smClient::readPresentStatus, deviceId);
}

void noteEventOf(int deviceId)
{
    forward(0, &smClient::noteEventOf, deviceId);
}

void noteAllRead(bool all)
{
    forward(0, &smClient::noteAllRead, all);
}

void followReadings()
{
    forward(0, &smClient::followReadings);
}

std::vector<GroupStanding> standingOfGroups()
{
    return forward(std::vector<GroupStanding>(), &smClient::standingOfGroups);
}

int addShownEvent(const eventData& event, const std::string& shown)
{
    return forward(noGroup, &smClient::addShownEvent, event, shown);
}

std::chrono::milliseconds pauseBeforeTraps()
{
    using namespace std::chrono_literals;
    constexpr std::chrono::milliseconds pollPeriod = 10s;
    constexpr std::chrono::milliseconds lookPeriod = 1s; // the log is polled by another thread
    return traps::untilNextTrap(common::policy().answersFromPublished ? lookPeriod : pollPeriod);
}

void tellingOldEvents(bool old)
{
    smClient* const client = gSubagent;
    if (eventHandler* const handler = client ? client->getEventHandler() : nullptr)
        handler->holdHealth(old);
}

} // namespace client::door

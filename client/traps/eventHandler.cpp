#include "client/traps/eventHandler.hpp"

#include "client/status/StatusWords.hpp"
#include "client/traps/TrapQueue.hpp"
#include "client/words/Trace.hpp"
#include "common/Policy.hpp"
#include "common/Waits.hpp"

#include <algorithm>
#include <cstdio>
#include <pthread.h>
#include <utility>

using namespace client::traps;
using namespace client::words;

namespace {

using namespace std::chrono_literals;

/// Managers are given time to take one trap before the next.
constexpr auto pauseBeforeTrap = 3s;
constexpr auto pauseOfInit = 1s;
constexpr int healthGroup = 1;
constexpr int agesWithoutAll = 15;

/// All there is to know about an event's trap, or why there is none.
const TrapOid* chooseOid(const TrapGroup* group, const eventData& event, const char* badGroup, const char* noOid)
{
    const auto thread = static_cast<unsigned long>(pthread_self());
    if (!group) {
        trace(badGroup, thread);
        return nullptr;
    }
    const TrapOid* const oid = group->chooseOid(event);
    if (!oid)
        trace(noOid, thread);
    else
        printOID(oid->data(), static_cast<int>(oid->size()), "trap");
    return oid;
}

/// The way of a trap to the main thread, and the pause before it. In the plain mode the pause is a sleep of the event
/// thread, with all that waits for it; else traps are paced where they wait.
struct TrapWay {
    void (*pause)();
    void (*queue)(Trap trap);
};
constexpr TrapWay withPauses = {[] { common::waitInterruptibly(pauseBeforeTrap); }, queueTrap};
constexpr TrapWay pacedApart = {[] {}, queuePacedTrap};

const TrapWay& trapWay()
{
    return common::policy().pacesTrapsApart ? pacedApart : withPauses;
}

/// The trap with another text, unless that is empty.
Trap saying(const std::string& shown, Trap trap)
{
    constexpr std::size_t textPlace = 1;
    if (!shown.empty())
        trap[textPlace].value = shown;
    return trap;
}

} // namespace

int eventHandler::init()
{
    m_nHealthStatus = agent.getHealthStatus();
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
    return addShownEvent(event, {});
}

int eventHandler::addShownEvent(const eventData& event, const std::string& shown)
{
    const std::scoped_lock lock(SyncMutex);
    mEventQueue.push_back(event);
    mShownTexts.push_back(shown);
    return CLIENT_SUCCESS;
}

int eventHandler::processEvent()
{
    while (!agent.isInitComplete())
        common::waitInterruptibly(pauseOfInit);
    const std::scoped_lock lock(SyncMutex);
    int result = CLIENT_SUCCESS;
    while (!mEventQueue.empty()) {
        const eventData event = mEventQueue.front();
        const std::string shown = mShownTexts.front();
        printEvent(event);
        mEventQueue.pop_front();
        mShownTexts.pop_front();
        if (agent.isTrapEnabled() && findTrapGroup(event.nEventGroup)) {
            trapWay().pause();
            result = sendEvent(event, shown);
        }
        checkEventLists(event);
    }
    callForTraps();
    return result;
}

int eventHandler::sendEvent(const eventData& event, const std::string& shown)
{
    return findTrapGroup(event.nEventGroup)->objects == TrapGroup::two ? send2ObjEvent(event, shown)
                                                                       : send4ObjEvent(event, shown);
}

int eventHandler::send2ObjEvent(const eventData& event, const std::string& shown)
{
    const TrapGroup* group = findTrapGroup(event.nEventGroup);
    if (group && group->objects != TrapGroup::two)
        group = nullptr;
    const TrapOid* const oid = chooseOid(
        group, event, "%lu: eventHandler::send2ObjEvent() Invalid EventGroup. Returning CLIENT_ERROR_NOSUCHNAME.\n",
        "%lu: eventHandler::send2ObjEvent()  Valid EventGroup, but OID is not available. Returning "
        "CLIENT_ERROR_NOSUCHNAME.\n");
    if (!oid)
        return CLIENT_ERROR_NOSUCHNAME;
    trapWay().queue(saying(shown, TrapMaker::makeTwoObjects(event, *oid)));
    return CLIENT_SUCCESS;
}

int eventHandler::send4ObjEvent(const eventData& event, const std::string& shown)
{
    static constexpr char complaint[] = "%lu: eventHandler::send4ObjEvent() Returning CLIENT_ERROR_NOSUCHNAME.\n";
    const TrapGroup* group = findTrapGroup(event.nEventGroup);
    if (group && group->objects == TrapGroup::two)
        group = nullptr;
    const TrapOid* const oid = chooseOid(group, event, complaint, complaint);
    if (!oid)
        return CLIENT_ERROR_NOSUCHNAME;
    trapWay().queue(saying(shown, traps.makeFourObjects(*group, event, *oid)));
    return CLIENT_SUCCESS;
}

void eventHandler::checkEventLists(const eventData& event)
{
    const TrapGroup* const group = findTrapGroup(event.nEventGroup);
    if (!group || !group->countsForHealth || !hasPart(event.nDeviceId))
        return;
    if (!m_bHealthHeld) // an old event is older than any reading
        lastEvents[event.nDeviceId] = current<Clock>().steady();
    if (event.nSeverity >= ENUM_STATUS_OK)
        removeElement(event.nDeviceId);
    if (event.nSeverity > ENUM_STATUS_OK)
        insertElement(event);
    int newHealth = 0;
    if (!m_bHealthHeld && needHealthEvent(event.nSeverity, &newHealth))
        changeHealth(newHealth);
}

/// Rows alone make the health where they are followed; before their first readings there is none.
bool eventHandler::hasPart(int deviceId) const
{
    return !common::policy().tellsHealthOfRows || followed.contains(deviceId);
}

void eventHandler::changeHealth(int newHealth)
{
    if (agent.isTrapEnabled())
        sendHealthEvent(newHealth);
    toldHealth = newHealth;
    trace("checkEventLists:: Update System Health old=%d new m_nHealthStatus=%d\n", m_nHealthStatus, newHealth);
    takeHealth(newHealth);
}

void eventHandler::takeHealth(int newHealth)
{
    agent.setHealthStatus(getNewHealthEnum(newHealth));
    m_nHealthStatus = newHealth;
}

void eventHandler::holdHealth(bool hold)
{
    const std::scoped_lock lock(SyncMutex);
    int newHealth = 0;
    if (std::exchange(m_bHealthHeld, hold) && !hold && needHealthEvent(0, &newHealth))
        changeHealth(newHealth);
}

/// False if no sensor has a status.
bool eventHandler::takeStatuses(std::span<const client::status::DeviceStatus> present, std::chrono::nanoseconds age)
{
    bool isAnyKnown = false;
    followed.clear();
    for (const auto& [deviceId, status, side] : present) {
        if (status < ENUM_STATUS_OK)
            continue;
        isAnyKnown = true;
        followed.insert(deviceId);
        if (hasEventWithin(deviceId, age))
            continue;
        removeElement(deviceId);
        insertElementByDeviceId(deviceId, status);
    }
    for (std::list<int>* const list : {&mNonCriList, &mCriticalList, &mNonRecList})
        list->remove_if([this](int deviceId) { return !hasPart(deviceId); });
    return isAnyKnown;
}

bool eventHandler::hasEventWithin(int deviceId, std::chrono::nanoseconds age)
{
    const auto event = lastEvents.find(deviceId);
    if (event == lastEvents.end())
        return false;
    if (current<Clock>().steady() - event->second <= age)
        return true;
    lastEvents.erase(event);
    return false;
}

void eventHandler::followReadings(std::span<const client::status::DeviceStatus> present, std::chrono::nanoseconds age,
                                  bool all)
{
    const std::scoped_lock lock(SyncMutex);
    const bool isAnyKnown = takeStatuses(present, age);
    const auto now = current<Clock>().steady();
    if (isAnyKnown && m_nHealthStatus < ENUM_STATUS_OK)
        knownSince = now;
    const bool tells = isAnyKnown && (all || now - knownSince > agesWithoutAll * age);
    const int health = isAnyKnown ? worstPresent() : ENUM_STATUS_UNKNOWN;
    if (tells && toldHealth != 0 && toldHealth != health) {
        m_nHealthStatus = toldHealth;
        changeHealth(health);
    } else if (m_nHealthStatus != health) {
        takeHealth(health);
    }
    if (tells)
        toldHealth = health;
}

int eventHandler::worstPresent() const
{
    if (!mNonRecList.empty())
        return ENUM_STATUS_NONREC;
    if (!mCriticalList.empty())
        return ENUM_STATUS_CRITICAL;
    return mNonCriList.empty() ? ENUM_STATUS_OK : ENUM_STATUS_NONCRI;
}

bool eventHandler::needHealthEvent(int severity, int* newHealth) const
{
    *newHealth = severity;
    if (severity > m_nHealthStatus)
        return true;
    if (!mNonRecList.empty()) {
        *newHealth = ENUM_STATUS_NONREC;
        return m_nHealthStatus < ENUM_STATUS_NONREC;
    }
    if (!mCriticalList.empty()) {
        *newHealth = ENUM_STATUS_CRITICAL;
        return m_nHealthStatus != ENUM_STATUS_CRITICAL;
    }
    if (!mNonCriList.empty()) {
        *newHealth = ENUM_STATUS_NONCRI;
        return m_nHealthStatus != ENUM_STATUS_NONCRI;
    }
    *newHealth = ENUM_STATUS_OK;
    return m_nHealthStatus > ENUM_STATUS_OK;
}

int eventHandler::sendHealthEvent(int newHealth)
{
    const char* const before = getStringStatus(m_nHealthStatus);
    const char* const after = getStringStatus(newHealth);
    if (!before || !after)
        return 1;
    eventData event;
    std::snprintf(event.stEventDesc, sizeof event.stEventDesc, "System health was changed from %s to %s.", before,
                  after);
    event.nSeverity = newHealth;
    event.nEventGroup = healthGroup;
    trapWay().pause();
    return send2ObjEvent(event);
}

void printEvent(const eventData& event)
{
    trace("event: group %d, device %d, row %d, severity %d, type %d\n", event.nEventGroup, event.nDeviceId,
          event.nInstIndex, event.nSeverity, event.nEventType);
    trace("event: %s, %s, sensor %s, device %s\n", event.stTimeStamp, event.stEventDesc, event.stSensorType,
          event.stDeviceDesc);
}

void printOID(const unsigned long* oid, int length, const char* title)
{
    trace("%s", title);
    for (int place = 0; place < length; ++place)
        trace(".%lu", oid[place]);
    trace("\n");
}

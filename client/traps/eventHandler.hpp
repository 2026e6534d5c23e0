#pragma once

#include "client/status/TroubleLists.hpp"
#include "client/traps/AgentState.hpp"
#include "client/traps/EventData.hpp"
#include "client/traps/TrapFunctions.hpp"
#include "common/Seams.hpp"

#include <deque>
#include <list>
#include <map>
#include <mutex>
#include <set>
#include <span>

/// The agent's end of the event road: the queue of events, the lists of devices in trouble, and the system's health
/// that follows from them, whose change is a trap too. Events are handled on the event thread; finished traps go to
/// the main thread.
class eventHandler : public client::status::TroubleLists {
public:
    /// `state` outlives the handler.
    explicit eventHandler(client::traps::AgentState& state) : agent(state) {}

    /// Takes over the present system status. Always 0.
    virtual int init();

    /// Puts the device at the end of the list of its status (4 non-critical, 5 critical, 6 non-recoverable), once. 9
    /// for any other status.
    int insertElementByDeviceId(int deviceId, int status) override;
    virtual int insertElement(const eventData& event);
    /// Takes the device out of the first list that has it, from the mildest on.
    virtual void removeElement(int deviceId);

    /// Queues a copy, without a limit. Always 0.
    virtual int addEvent(const eventData& event);
    /// The same with another text for the trap to say: the event's own still chooses it.
    int addShownEvent(const eventData& event, const std::string& shown);
    /// Empties the queue: a trap for each event, if traps are enabled, three seconds after the one before or, where the
    /// policy paces traps apart, at once into their own queue; then lists and health. The queue is locked meanwhile.
    /// Result of the last send.
    virtual int processEvent();

    /// The lock of the queue, for others.
    void semaphoreWait() { SyncMutex.lock(); }
    void semaphoreRelease() { SyncMutex.unlock(); }

    /// Queue the trap of an event: 9 if its group or its text has none. It says `shown`; the event's own text if that
    /// is empty.
    int send2ObjEvent(const eventData& event, const std::string& shown = {});
    int send4ObjEvent(const eventData& event, const std::string& shown = {});

    /// Brings lists and health up to date with an event of a group that counts for them.
    void checkEventLists(const eventData& event);
    /// Whether an event of `severity` changes the system's health, and to what. The lists hold the event already.
    bool needHealthEvent(int severity, int* newHealth) const;
    /// While old events are told again their lists follow, but the health does not: it follows when they are over.
    void holdHealth(bool hold);
    /// Brings lists and health in line with what sensors say now; those without a status change nothing. Nor do devices
    /// of which an event came within `age`: their readings may be older than it. As long as no sensor has a status, the
    /// health is unavailable. Its first value is no change, and no trap. As long as not `all` sensors have been read,
    /// but not longer than fifteen times `age`, the health follows those that are known and is not told; then it is, if
    /// it is another than was told last.
    void followReadings(std::span<const client::status::DeviceStatus> present, std::chrono::nanoseconds age,
                        bool all = true);
    /// 1, and no trap, if there is no word for the old or the new health.
    int sendHealthEvent(int newHealth);

    std::list<int> mNonCriList;
    std::list<int> mCriticalList;
    std::list<int> mNonRecList;
    std::deque<eventData> mEventQueue;   ///< under SyncMutex
    std::deque<std::string> mShownTexts; ///< in step with it
    int m_nHealthStatus = 0;             ///< HEALTH_STATUS
    bool m_bHealthHeld = false;          ///< under SyncMutex

private:
    int sendEvent(const eventData& event, const std::string& shown);
    bool hasPart(int deviceId) const;
    void changeHealth(int newHealth);
    void takeHealth(int newHealth);
    int worstPresent() const;
    bool takeStatuses(std::span<const client::status::DeviceStatus> present, std::chrono::nanoseconds age);
    bool hasEventWithin(int deviceId, std::chrono::nanoseconds age);

    client::traps::AgentState& agent;
    std::mutex SyncMutex;
    client::traps::TrapMaker traps;
    int toldHealth = 0;              ///< what managers know, 0 at first; under SyncMutex
    Clock::SteadyPoint knownSince{}; ///< that any sensor has a status; under SyncMutex
    std::set<int> followed;          ///< devices whose sensors had a status at the last look; under SyncMutex
    std::map<int, Clock::SteadyPoint> lastEvents; ///< of devices whose readings may be older; under SyncMutex
};

/// Writes an event, or a name with `title`, to the diagnostics.
void printEvent(const eventData& event);
void printOID(const unsigned long* oid, int length, const char* title);

#pragma once

#include "client/query/Publication.hpp"
#include "client/traps/EventData.hpp"
#include "client/words/Entities.hpp"

#include <mutex>
#include <optional>

class BaseAccessor;
class eventHandler;

/// Held while a group is asked, where another thread may put a fresher group in its place meanwhile
/// (Policy::fillsBehindRegistration). Requests wait for it, so on no thread does its holder ask the controller.
class GroupsHold {
public:
    explicit GroupsHold(std::mutex& groups);

private:
    std::optional<client::query::LookUpScope> looksUp;
    std::unique_lock<std::mutex> lock;
};

/// The client as the flat functions see it. The ten operations from getIntInfo to getDesc find the group and pass the
/// call on; 8, or a null description, when there is no such group.
class subagentBase {
public:
    virtual ~subagentBase() = default;

    virtual int init() = 0;
    virtual void shutdown() = 0;
    virtual int getIntInfo(_SMEntity entity, _SMAttribute attribute, int row, long& out);
    virtual int getIntData(_SMEntity entity, _SMAttribute attribute, int row, long& out);
    virtual int getStrInfo(_SMEntity entity, _SMAttribute attribute, int row, char*& out);
    virtual int getStrData(_SMEntity entity, _SMAttribute attribute, int row, char*& out);
    virtual int setIntData(_SMEntity entity, _SMAttribute attribute, int row, long value);
    virtual int getCount(_SMEntity entity);
    virtual int getIndex(_SMEntity entity, int deviceId);
    virtual int getGroupStatus(_SMEntity entity);
    virtual int seedHealthLists(_SMEntity entity);
    virtual char* getDesc(_SMEntity entity, int row);
    virtual int processEvent() = 0;
    virtual int addEvent(const eventData& event) = 0;
    virtual int setHealthStatus(int status) = 0;
    virtual int getHealthStatus() = 0;
    virtual int isSetEnabled() = 0;
    virtual int isTrapEnabled() = 0;
    virtual int isInitComplete() = 0;
    virtual BaseAccessor* getEntity(_SMEntity entity) = 0;
    virtual eventHandler* getEventHandler() = 0;

protected:
    GroupsHold holdGroups() { return GroupsHold(groupsGuard); }

    std::mutex groupsGuard;
};

#include "client/door/subagentBase.hpp"

#include "client/groups/BaseContainer.hpp"
#include "client/traps/eventHandler.hpp"
#include "common/Policy.hpp"

GroupsHold::GroupsHold(std::mutex& groups)
{
    if (!common::policy().fillsBehindRegistration)
        return;
    looksUp.emplace();
    lock = std::unique_lock(groups);
}

int subagentBase::getIntInfo(_SMEntity entity, _SMAttribute attribute, int row, long& out)
{
    const auto hold = holdGroups();
    BaseAccessor* const group = getEntity(entity);
    return group ? group->getIntInfo(attribute, row, out) : CLIENT_ERROR_NO_GROUP;
}

int subagentBase::getIntData(_SMEntity entity, _SMAttribute attribute, int row, long& out)
{
    const auto hold = holdGroups();
    BaseAccessor* const group = getEntity(entity);
    return group ? group->getIntData(attribute, row, out) : CLIENT_ERROR_NO_GROUP;
}

int subagentBase::getStrInfo(_SMEntity entity, _SMAttribute attribute, int row, char*& out)
{
    const auto hold = holdGroups();
    BaseAccessor* const group = getEntity(entity);
    return group ? group->getStrInfo(attribute, row, out) : CLIENT_ERROR_NO_GROUP;
}

int subagentBase::getStrData(_SMEntity entity, _SMAttribute attribute, int row, char*& out)
{
    const auto hold = holdGroups();
    BaseAccessor* const group = getEntity(entity);
    return group ? group->getStrData(attribute, row, out) : CLIENT_ERROR_NO_GROUP;
}

int subagentBase::setIntData(_SMEntity entity, _SMAttribute attribute, int row, long value)
{
    const auto hold = holdGroups();
    BaseAccessor* const group = getEntity(entity);
    return group ? group->setIntData(attribute, row, value) : CLIENT_ERROR_NO_GROUP;
}

int subagentBase::getCount(_SMEntity entity)
{
    const auto hold = holdGroups();
    BaseAccessor* const group = getEntity(entity);
    return group ? group->getCount() : CLIENT_ERROR_NO_GROUP;
}

int subagentBase::getIndex(_SMEntity entity, int deviceId)
{
    const auto hold = holdGroups();
    BaseAccessor* const group = getEntity(entity);
    return group ? group->getIndex(deviceId) : CLIENT_ERROR_NO_GROUP;
}

int subagentBase::getGroupStatus(_SMEntity entity)
{
    const auto hold = holdGroups();
    BaseAccessor* const group = getEntity(entity);
    return group ? group->getGroupStatus() : CLIENT_ERROR_NO_GROUP;
}

int subagentBase::seedHealthLists(_SMEntity entity)
{
    const auto hold = holdGroups();
    BaseAccessor* const group = getEntity(entity);
    return group ? group->seedHealthLists(getEventHandler()) : CLIENT_ERROR_NO_GROUP;
}

char* subagentBase::getDesc(_SMEntity entity, int row)
{
    const auto hold = holdGroups();
    BaseAccessor* const group = getEntity(entity);
    return group ? group->getDesc(row) : nullptr;
}

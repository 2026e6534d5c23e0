#include "client/door/smClient.hpp"

#include "client/door/Functions.hpp"
#include "client/query/Publication.hpp"
#include "client/query/QLInterface.hpp"
#include "client/words/Trace.hpp"
#include "common/Policy.hpp"

#include <algorithm>
#include <cstdio>

using namespace client::words;

namespace {

constexpr char repositoryQuery[] = "/BMC/SDR";

/// All there is to say of a group but what it does.
struct Group {
    _SMEntity entity;
    int deletedAs; ///< its place in the order of deletion
    const char* name;
    const char* complaint; ///< traced when it fails to start
    void (*make)(smClient&);
    void (*refill)(smClient&, std::mutex& guard);
    void (*end)(smClient&);
    BaseAccessor* (*find)(smClient&);
};

template<auto Member>
auto make()
{
    using Pointer = std::remove_reference_t<decltype(std::declval<smClient>().*Member)>;
    return std::make_unique<typename Pointer::element_type>();
}

/// The older group ends behind the lock.
template<auto Member>
void refill(smClient& client, std::mutex& guard)
{
    auto fresh = make<Member>();
    fresh->init();
    const std::scoped_lock lock(guard);
    fresh->goLive();
    (client.*Member).swap(fresh);
}

template<auto Member>
constexpr Group group(_SMEntity entity, int deletedAs, const char* name, const char* complaint)
{
    return {entity,
            deletedAs,
            name,
            complaint,
            [](smClient& client) { client.*Member = make<Member>(); },
            refill<Member>,
            [](smClient& client) { (client.*Member).reset(); },
            [](smClient& client) -> BaseAccessor* { return (client.*Member).get(); }};
}

/// In the order of their start: the first reads the configuration, which says where the messages of all others go.
constexpr Group groups[] = {
    group<&smClient::mSystemManagement>(SMINFO, 1, "systemManagement",
                                        "\nsmClient::init() systemManagement - failed\n"),
    group<&smClient::mPowerUnit>(POWERUNIT, 4, "powerUnit", "\nPower unit failed to get data\n"),
    group<&smClient::mTemperatureProbe>(TEMPERATURE, 11, "temperatureProbe",
                                        "\n Temprature probe failed to initialize\n"),
    group<&smClient::mPowerSupply>(POWERSUPPLY, 3, "powerSupply", "\n-->Power supply failed to get data\n"),
    group<&smClient::mVoltageProbe>(VOLTAGE, 5, "voltageProbe", "\n--> voltage probe failed to get data\n"),
    group<&smClient::mDiscreteVoltage>(DISCRETEVOLTAGE, 7, "discreteVoltage",
                                       "\n--> Discrete voltage failed to get any data\n"),
    group<&smClient::mCurrentProbe>(CURRENT, 6, "currentProbe", "\nsmClient::currentProbe exited with no data\n"),
    group<&smClient::mCoolingDevice>(COOLINGDEVICE, 8, "coolingDevice", "\nCooling device failed to get data\n"),
    group<&smClient::mCoolingUnit>(COOLINGUNIT, 9, "coolingUnit", "\n-->Cooling unit failed to get any data\n"),
    group<&smClient::mDiscreteCooling>(DISCRETECOOLING, 10, "discreteCooling",
                                       "\n-->Discrete COoling failed to get any data\n"),
    group<&smClient::mProcessorDevice>(PROCESSOR, 15, "processorDevice", "\n--> Processor device failed to get data\n"),
    group<&smClient::mMemoryArray>(MEMORYARRAY, 12, "memoryArray", "\n--> Memory array failed to get data\n"),
    group<&smClient::mMemoryDevice>(MEMORYDEVICE, 13, "memoryDevice", "\n--> Memory device failed\n"),
    group<&smClient::mDiscreteProcessor>(DISCRETE_PROCESSOR, 16, "discreteProcessor",
                                         "\nsmClient::discrete processor sensor exited with no data\n"),
    group<&smClient::mDiscreteMemory>(DISCRETE_MEMORY, 14, "discreteMemory",
                                      "\nsmClient::init about to init discrete memory sensor exited with no data\n"),
    group<&smClient::mChassisInfo>(CHASSIS, 2, "chassisInfo", "\n --> Chassis info failed to get data\n"),
    group<&smClient::mDriveSlot>(DRIVESLOT, 17, "driveSlot", "\n--> Drive solt failed to get data \n"),
    group<&smClient::mMiscSensor>(MISCELLANEOUS, 18, "miscSensor",
                                  "\nsmClient::miscellaneous sensor exited with no data\n"),
};

client::door::Sources sourcesOf(_SMEntity entity)
{
    using client::door::Sources;
    if (entity == CHASSIS)
        return Sources::inventory;
    return entity == MEMORYARRAY || entity == MEMORYDEVICE ? Sources::firmware : Sources::repository;
}

bool isFilledFrom(_SMEntity entity, client::door::Sources sources)
{
    using client::door::Sources;
    if (sources == Sources::machine)
        return entity == PROCESSOR || entity == CHASSIS;
    if (sources == Sources::rest)
        sources = Sources::repository;
    return entity != SMINFO && sources == sourcesOf(entity);
}

bool hasRepository()
{
    const auto records = client::query::tryQuery(repositoryQuery, "\nNo sensor data records\n");
    const auto list = records ? records->find(repositoryQuery) : ResultMap::const_iterator();
    return records && list != records->end() && !list->second.mXNodeList.empty();
}

void startGroups(smClient& client)
{
    for (const Group& each : groups) {
        trace("smClient::init() starting %s\n", each.name);
        each.make(client);
        const bool filledLater = common::policy().fillsBehindRegistration && each.entity != SMINFO;
        if (filledLater || each.find(client)->init() == CLIENT_SUCCESS)
            continue;
        trace("%s", each.complaint);
        std::fflush(nullptr);
    }
}

} // namespace

std::atomic<smClient*> gSubagent{nullptr};

int smClient::init()
{
    m_bInitComplete = 0;
    trace("smClient::init() called.\n");
    try {
        return runInit();
    } catch (...) {
        shutdown();
        return CLIENT_ERROR_MEMORY;
    }
}

int smClient::runInit()
{
    startGroups(*this);
    const bool filledLater = common::policy().fillsBehindRegistration;
    if (filledLater)
        mSystemManagement->setHealthStatus(ENUM_STATUS_UNAVAILABLE);
    else
        mSystemManagement->setInitialStatus(getExtGroupStatus);
    mEventHandler = std::make_unique<eventHandler>(*this);
    if (const int result = mEventHandler->init(); result != CLIENT_SUCCESS) {
        trace("\n--> Event handler failed to initialize \n");
        return result;
    }
    if (!filledLater)
        mSystemManagement->seedAllHealthLists(seedHealthListsExt);
    m_bInitComplete = 1;
    trace("smClient::init() - done\n");
    std::fflush(nullptr);
    return CLIENT_SUCCESS;
}

bool smClient::fillGroups(client::door::Sources sources)
{
    using namespace client::query;
    using client::door::Sources;
    const unsigned long failuresBefore = interfaceFailures();
    const bool isRest = sources == Sources::rest, isNew = sources == Sources::repository;
    if (isRest || isNew) {
        forgetStanding(isRest ? repositoryQuery : "/BMC/");
        if (!hasRepository())
            return false;
    }
    for (const Group& group : groups) {
        if (!isFilledFrom(group.entity, sources))
            continue;
        group.refill(*this, groupsGuard);
        BaseAccessor* const rows = group.find(*this);
        const std::scoped_lock lock(groupsGuard);
        for (int row = 0; isNew && row < rows->getCount(); ++row)
            rows->outdate(row);
    }
    return interfaceFailures() == failuresBefore;
}

bool smClient::readUnreadFigures(const std::function<bool()>& goOn)
{
    for (const Group& group : groups) {
        BaseAccessor* const rows = group.find(*this);
        for (int row = 0; rows && row < rows->getCount() && goOn(); ++row)
            if (!rows->readUnread(row, groupsGuard))
                return false;
    }
    return true;
}

/// Uses the row of the device's sensor, if it has one; on the thread that alone changes groups.
void smClient::withSensor(int deviceId, const std::function<void(BaseAccessor& group, int row)>& use)
{
    for (const Group& group : groups) {
        BaseAccessor* const rows = group.find(*this);
        const int row = rows ? rows->getIndex(deviceId) - 1 : -1;
        if (row >= 0 && rows->presentStatus(row))
            return use(*rows, row);
    }
}

std::optional<client::status::DeviceStatus> smClient::readPresentStatus(int deviceId)
{
    std::optional<client::status::DeviceStatus> status;
    withSensor(deviceId, [&status](BaseAccessor& group, int row) {
        group.readNow(row);
        status = group.presentStatus(row);
    });
    return status;
}

int smClient::noteEventOf(int deviceId)
{
    withSensor(deviceId, [this](BaseAccessor& group, int row) {
        const auto hold = holdGroups();
        group.outdate(row);
    });
    return CLIENT_SUCCESS;
}

int smClient::noteAllRead(bool all)
{
    allRead = all;
    return CLIENT_SUCCESS;
}

int smClient::followReadings()
{
    std::vector<client::status::DeviceStatus> present;
    {
        const auto hold = holdGroups();
        for (const Group& group : groups) {
            BaseAccessor* const rows = group.find(*this);
            for (int row = 0; rows && row < rows->getCount(); ++row)
                if (const auto status = rows->presentStatus(row))
                    present.push_back(*status);
        }
    }
    if (mEventHandler)
        mEventHandler->followReadings(present, 2 * client::query::refreshPeriod(), allRead);
    return CLIENT_SUCCESS;
}

std::vector<client::door::GroupStanding> smClient::standingOfGroups()
{
    std::vector<client::door::GroupStanding> standing;
    const auto hold = holdGroups();
    for (const Group& group : groups) {
        BaseAccessor* const rows = group.entity == SMINFO ? nullptr : group.find(*this);
        if (!rows)
            continue;
        standing.push_back({group.name, rows->getCount(), {}});
        for (int row = 0; row < rows->getCount(); ++row)
            if (const auto status = rows->presentStatus(row); status && status->status < ENUM_STATUS_OK)
                standing.back().silent.emplace_back(rows->getDesc(row));
    }
    return standing;
}

void smClient::shutdown()
{
    if (m_bInitComplete == 0)
        return;
    for (std::size_t place = 1; place <= std::size(groups); ++place)
        std::ranges::find(groups, static_cast<int>(place), &Group::deletedAs)->end(*this);
    mEventHandler.reset();
}

BaseAccessor* smClient::getEntity(_SMEntity entity)
{
    const auto* const found = std::ranges::find(groups, entity, &Group::entity);
    return found == std::end(groups) ? nullptr : found->find(*this);
}

int smClient::processEvent()
{
    return mEventHandler ? mEventHandler->processEvent() : CLIENT_SUCCESS;
}

int smClient::addEvent(const eventData& event)
{
    return mEventHandler ? mEventHandler->addEvent(event) : CLIENT_ERROR_NO_GROUP;
}

int smClient::addShownEvent(const eventData& event, const std::string& shown)
{
    return mEventHandler ? mEventHandler->addShownEvent(event, shown) : CLIENT_ERROR_NO_GROUP;
}

int smClient::findRow(_SMEntity entity, int deviceId, const std::string& sensorName)
{
    if (entity == MEMORYDEVICE) {
        const auto hold = holdGroups();
        return mMemoryDevice ? mMemoryDevice->findModule(sensorName) : 0;
    }
    return getIndex(entity, deviceId);
}

int smClient::setHealthStatus(int status)
{
    return mSystemManagement ? mSystemManagement->setHealthStatus(status) : CLIENT_SUCCESS;
}

int smClient::getHealthStatus()
{
    return mSystemManagement ? mSystemManagement->getHealthStatus() : 0;
}

int smClient::isSetEnabled()
{
    return mSystemManagement ? mSystemManagement->isSetEnabled() : 0;
}

int smClient::isTrapEnabled()
{
    return mSystemManagement ? mSystemManagement->isTrapEnabled() : 0;
}

#include "client/door/smClient.hpp"

#include "common/Seams.hpp"

#include <cstdio>

namespace {

using namespace std::chrono_literals;

/// A stop of the agent may not take longer than a few seconds, whatever an event thread is waiting for.
constexpr auto pauseBetweenChecks = 1ms;
constexpr int mostChecks = 2000;

struct StartStep {
    const char* name;
    int (*start)(smClient&);
    const char* complaint;
};

template<auto Member>
int startGroup(smClient& client)
{
    auto& group = client.*Member;
    group = std::make_unique<typename std::remove_reference_t<decltype(group)>::element_type>();
    return group->init();
}

int startSystemManagement(smClient& client)
{
    const int result = startGroup<&smClient::mSystemManagement>(client);
    if (result != CLIENT_SUCCESS) {
        trace("\nsmClient::init() systemManagement - failed\n");
        std::fflush(nullptr);
    }
    return CLIENT_SUCCESS;
}

/// The first reads the configuration, which says where the messages of all others go.
constexpr StartStep startSteps[] = {
    {"systemManagement", startSystemManagement, ""},
    {"powerUnit", startGroup<&smClient::mPowerUnit>, "\nPower unit failed to get data\n"},
    {"temperatureProbe", startGroup<&smClient::mTemperatureProbe>, "\n Temprature probe failed to initialize\n"},
    {"powerSupply", startGroup<&smClient::mPowerSupply>, "\n-->Power supply failed to get data\n"},
    {"voltageProbe", startGroup<&smClient::mVoltageProbe>, "\n--> voltage probe failed to get data\n"},
    {"discreteVoltage", startGroup<&smClient::mDiscreteVoltage>, "\n--> Discrete voltage failed to get any data\n"},
    {"currentProbe", startGroup<&smClient::mCurrentProbe>, "\nsmClient::currentProbe exited with no data\n"},
    {"coolingDevice", startGroup<&smClient::mCoolingDevice>, "\nCooling device failed to get data\n"},
    {"coolingUnit", startGroup<&smClient::mCoolingUnit>, "\n-->Cooling unit failed to get any data\n"},
    {"discreteCooling", startGroup<&smClient::mDiscreteCooling>, "\n-->Discrete COoling failed to get any data\n"},
    {"processorDevice", startGroup<&smClient::mProcessorDevice>, "\n--> Processor device failed to get data\n"},
    {"memoryArray", startGroup<&smClient::mMemoryArray>, "\n--> Memory array failed to get data\n"},
    {"memoryDevice", startGroup<&smClient::mMemoryDevice>, "\n--> Memory device failed\n"},
    {"discreteProcessor", startGroup<&smClient::mDiscreteProcessor>,
     "\nsmClient::discrete processor sensor exited with no data\n"},
    {"discreteMemory", startGroup<&smClient::mDiscreteMemory>,
     "\nsmClient::init about to init discrete memory sensor exited with no data\n"},
    {"chassisInfo", startGroup<&smClient::mChassisInfo>, "\n --> Chassis info failed to get data\n"},
    {"driveSlot", startGroup<&smClient::mDriveSlot>, "\n--> Drive solt failed to get data \n"},
    {"miscSensor", startGroup<&smClient::mMiscSensor>, "\nsmClient::miscellaneous sensor exited with no data\n"},
};

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
    for (const StartStep& step : startSteps) {
        trace("smClient::init() starting %s\n", step.name);
        if (step.start(*this) != CLIENT_SUCCESS)
            trace("%s", step.complaint);
    }
    mSystemManagement->setInitialStatus();
    mEventHandler = std::make_unique<eventHandler>();
    if (const int result = mEventHandler->init(); result != CLIENT_SUCCESS) {
        trace("\n--> Event handler failed to initialize \n");
        return result;
    }
    mSystemManagement->seedAllHealthLists();
    m_bInitComplete = 1;
    trace("smClient::init() - done\n");
    std::fflush(nullptr);
    return CLIENT_SUCCESS;
}

void smClient::shutdown()
{
    if (m_bInitComplete == 0 || closed.exchange(true))
        return;
    if (awaitUses())
        deleteAll();
    else
        trace("smClient::shutdown() leaves the groups to a call that does not end\n");
}

bool smClient::awaitUses() const
{
    for (int check = 0; check < mostChecks && uses != 0; ++check)
        current<Clock>().sleepFor(pauseBetweenChecks);
    return uses == 0;
}

void smClient::deleteAll()
{
    mSystemManagement.reset();
    mChassisInfo.reset();
    mPowerSupply.reset();
    mPowerUnit.reset();
    mVoltageProbe.reset();
    mCurrentProbe.reset();
    mDiscreteVoltage.reset();
    mCoolingDevice.reset();
    mCoolingUnit.reset();
    mDiscreteCooling.reset();
    mTemperatureProbe.reset();
    mMemoryArray.reset();
    mMemoryDevice.reset();
    mDiscreteMemory.reset();
    mProcessorDevice.reset();
    mDiscreteProcessor.reset();
    mDriveSlot.reset();
    mMiscSensor.reset();
    mEventHandler.reset();
}

BaseAccessor* smClient::getEntity(_SMEntity entity)
{
    switch (entity) {
    case SMINFO:
        return mSystemManagement.get();
    case CHASSIS:
        return mChassisInfo.get();
    case PROCESSOR:
        return mProcessorDevice.get();
    case DISCRETE_PROCESSOR:
        return mDiscreteProcessor.get();
    case POWERUNIT:
        return mPowerUnit.get();
    case POWERSUPPLY:
        return mPowerSupply.get();
    case VOLTAGE:
        return mVoltageProbe.get();
    case DISCRETEVOLTAGE:
        return mDiscreteVoltage.get();
    case CURRENT:
        return mCurrentProbe.get();
    case MEMORYARRAY:
        return mMemoryArray.get();
    case MEMORYDEVICE:
        return mMemoryDevice.get();
    case DISCRETE_MEMORY:
        return mDiscreteMemory.get();
    case COOLINGUNIT:
        return mCoolingUnit.get();
    case COOLINGDEVICE:
        return mCoolingDevice.get();
    case DISCRETECOOLING:
        return mDiscreteCooling.get();
    case TEMPERATURE:
        return mTemperatureProbe.get();
    case DRIVESLOT:
        return mDriveSlot.get();
    case MISCELLANEOUS:
        return mMiscSensor.get();
    }
    return nullptr;
}

int smClient::processEvent()
{
    return mEventHandler ? mEventHandler->processEvent() : CLIENT_SUCCESS;
}

int smClient::addEvent(const eventData& event)
{
    return mEventHandler ? mEventHandler->addEvent(event) : CLIENT_ERROR_NO_GROUP;
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

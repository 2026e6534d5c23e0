#pragma once

#include "client/door/Filling.hpp"
#include "client/door/Standing.hpp"
#include "client/door/subagentBase.hpp"
#include "client/groups/clChassisInfo.hpp"
#include "client/groups/clDiscreteGroups.hpp"
#include "client/groups/clInventory.hpp"
#include "client/groups/clSystemManagement.hpp"
#include "client/groups/clThresholdProbes.hpp"
#include "client/traps/eventHandler.hpp"

#include <atomic>
#include <functional>
#include <memory>
#include <string>

/// The one client: owns a group for each MIB object, and the event handler.
class smClient : public subagentBase, public client::traps::AgentState {
public:
    smClient() = default;
    ~smClient() override { smClient::shutdown(); }
    smClient(const smClient&) = delete;
    smClient& operator=(const smClient&) = delete;

    /// Makes the groups in order and has each read its data; a group that fails stays empty. 2 after an exception, the
    /// event handler's result if that fails.
    int init() override;
    /// Deletes the groups and the event handler, but only after a complete init. No other thread may use the client any
    /// more. Safe to call twice.
    void shutdown() override;

    int processEvent() override;
    int addEvent(const eventData& event) override;
    int setHealthStatus(int status) override;
    int getHealthStatus() override;
    int isSetEnabled() override;
    int isTrapEnabled() override;
    int isInitComplete() override { return m_bInitComplete; }
    BaseAccessor* getEntity(_SMEntity entity) override;
    eventHandler* getEventHandler() override { return mEventHandler.get(); }

    /// See client::door::findRow.
    int findRow(_SMEntity entity, int deviceId, const std::string& sensorName);
    int addShownEvent(const eventData& event, const std::string& shown);

    /// See Filling.hpp.
    bool fillGroups(client::door::Sources sources);
    bool readUnreadFigures(const std::function<bool()>& goOn);
    std::optional<client::status::DeviceStatus> readPresentStatus(int deviceId);
    int noteEventOf(int deviceId);
    int noteAllRead(bool all);
    int followReadings();
    /// See Standing.hpp.
    std::vector<client::door::GroupStanding> standingOfGroups();

    std::unique_ptr<systemManagement> mSystemManagement;
    std::unique_ptr<chassisInfo> mChassisInfo;
    std::unique_ptr<powerSupply> mPowerSupply;
    std::unique_ptr<powerUnit> mPowerUnit;
    std::unique_ptr<voltageProbe> mVoltageProbe;
    std::unique_ptr<discreteVoltage> mDiscreteVoltage;
    std::unique_ptr<currentProbe> mCurrentProbe;
    std::unique_ptr<coolingDevice> mCoolingDevice;
    std::unique_ptr<coolingUnit> mCoolingUnit;
    std::unique_ptr<discreteCooling> mDiscreteCooling;
    std::unique_ptr<temperatureProbe> mTemperatureProbe;
    std::unique_ptr<memoryArray> mMemoryArray;
    std::unique_ptr<memoryDevice> mMemoryDevice;
    std::unique_ptr<discreteMemory> mDiscreteMemory;
    std::unique_ptr<processorDevice> mProcessorDevice;
    std::unique_ptr<discreteProcessor> mDiscreteProcessor;
    std::unique_ptr<driveSlot> mDriveSlot;
    std::unique_ptr<miscSensor> mMiscSensor;
    std::unique_ptr<eventHandler> mEventHandler;
    std::atomic<int> m_bInitComplete{0};

private:
    std::atomic<bool> allRead{false}; ///< rows

    int runInit();
    void withSensor(int deviceId, const std::function<void(BaseAccessor& group, int row)>& use);
};

/// The one client, null before initSMClient. It is never deleted: detached threads may call to the last.
extern std::atomic<smClient*> gSubagent;

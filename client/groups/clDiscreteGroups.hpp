#pragma once

#include "client/groups/BaseContainer.hpp"
#include "client/groups/SensorRows.hpp"
#include "client/status/clDiscreteWords.hpp"

namespace client::groups {

/// The columns that the groups of state sensors have in common, in the order of their attributes. What the fifth one
/// is differs from group to group.
enum class DiscreteColumn { DeviceId, Description, StatusString, Status, Extra };

struct SensorTypeRow {
    int m_nSensorType; ///< IPMI 2.0, table 42-3
    bool discrete;     ///< read without thresholds
};

/// What differs between the groups of state sensors.
struct DiscreteTraits {
    _SMAttribute firstAttribute; ///< DEVICEID; the others follow it
    std::span<const SensorTypeRow> sensorTypes;
    bool nonLinearOnly = false; ///< linear sensors belong to a group with readings
    const char* defaultName;
    const status::StatusWords* words;
    int (*statusNumber)(std::string_view text, const status::StatusWords& words);
    int (*extraNumber)(std::string_view text) = nullptr;
    const char* (*extraText)(std::string_view text) = nullptr;
    std::span<const int> otherTypesThan = {};            ///< also takes sensors of other types than these
    const char* countMessage = nullptr;                  ///< traced with the count of rows
    std::unique_ptr<readings::SensorDatabase>* database; ///< row i of the table is element i
};

/// A table of sensors that report states. Rows keep the status 0 with which they are made: status and status string
/// are read live.
template<class Row>
class DiscreteGroup : public BaseContainer<Row> {
public:
    explicit DiscreteGroup(const DiscreteTraits& groupTraits) : traits(groupTraits), sensors(*traits.database) {}

    int init() override;
    int getIntInfo(_SMAttribute attribute, int row, long& out) override;
    int getStrInfo(_SMAttribute attribute, int row, char*& out) override;
    int getIntData(_SMAttribute attribute, int row, long& out) override;
    int getStrData(_SMAttribute attribute, int row, char*& out) override;
    void goLive() override { sensors.goLive(); }
    bool readUnread(int row, std::mutex& guard) override;
    void readNow(int row) override { client::readings::readNow(sensors[row]); }
    void outdate(int row) override { sensors[row].m_bOutdated = true; }
    std::optional<status::DeviceStatus> presentStatus(int row) override;

private:
    void readDatabase();
    CSensorWrapper readLive(int row);
    std::string readText(int row);
    status::Judgement readStatus(int row);
    int readStatusNumber(int row);

    const DiscreteTraits& traits;
    SensorRows sensors;
    static constexpr unsigned short m_nChassisId = 0;
    static constexpr long m_nMultiplier = 1;
};

} // namespace client::groups

extern std::unique_ptr<client::readings::SensorDatabase> pPowerSupplyWrapper;
extern std::unique_ptr<client::readings::SensorDatabase> pPowerUnitWrapper;
extern std::unique_ptr<client::readings::SensorDatabase> pCoolingUnitWrapper;
extern std::unique_ptr<client::readings::SensorDatabase> pDiscreteVoltageWrapper;
extern std::unique_ptr<client::readings::SensorDatabase> pDiscreteCoolingWrapper;
extern std::unique_ptr<client::readings::SensorDatabase> pDriverSlotWrapper;
extern std::unique_ptr<client::readings::SensorDatabase> pMiscSensorWrapper;
extern std::unique_ptr<client::readings::SensorDatabase> pDiscreteProcessorWrapper;
extern std::unique_ptr<client::readings::SensorDatabase> pDiscreteMemoryWrapper;

struct powerSupply : client::groups::DiscreteGroup<PowerSupplyInfo> {
    powerSupply();
};
struct powerUnit : client::groups::DiscreteGroup<PowerUnitInfo> {
    powerUnit();
};
struct discreteVoltage : client::groups::DiscreteGroup<DiscreteVoltageInfo> {
    discreteVoltage();
};
struct discreteCooling : client::groups::DiscreteGroup<DiscreteCoolingInfo> {
    discreteCooling();
};
struct driveSlot : client::groups::DiscreteGroup<DriveSlotInfo> {
    driveSlot();
};
struct miscSensor : client::groups::DiscreteGroup<miscSensorInfo> {
    miscSensor();
};
struct discreteProcessor : client::groups::DiscreteGroup<discreteProcessorInfo> {
    discreteProcessor();
};
struct discreteMemory : client::groups::DiscreteGroup<discreteMemoryInfo> {
    discreteMemory();
};

/// Its rows have a caption beside the description.
struct coolingUnit : client::groups::DiscreteGroup<CoolingUnitInfo> {
    coolingUnit();
    int init() override;
    int getStrInfo(_SMAttribute attribute, int row, char*& out) override;
};

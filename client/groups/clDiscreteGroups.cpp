#include "client/groups/clDiscreteGroups.hpp"

#include "client/readings/SensorAcquisition.hpp"
#include "client/status/StatusWords.hpp"
#include "common/Policy.hpp"

using namespace client::groups;
using namespace client::status;
using namespace client::words;
using client::readings::SensorDatabase;

std::unique_ptr<SensorDatabase> pPowerSupplyWrapper;
std::unique_ptr<SensorDatabase> pPowerUnitWrapper;
std::unique_ptr<SensorDatabase> pCoolingUnitWrapper;
std::unique_ptr<SensorDatabase> pDiscreteVoltageWrapper;
std::unique_ptr<SensorDatabase> pDiscreteCoolingWrapper;
std::unique_ptr<SensorDatabase> pDriverSlotWrapper;
std::unique_ptr<SensorDatabase> pMiscSensorWrapper;
std::unique_ptr<SensorDatabase> pDiscreteProcessorWrapper;
std::unique_ptr<SensorDatabase> pDiscreteMemoryWrapper;

namespace {

constexpr SensorTypeRow powerSupplyTypes[] = {{8, false}};
constexpr SensorTypeRow powerUnitTypes[] = {{9, false}};
constexpr SensorTypeRow coolingUnitTypes[] = {{10, false}};
constexpr SensorTypeRow voltageTypes[] = {{2, true}};
constexpr SensorTypeRow coolingTypes[] = {{4, true}};
constexpr SensorTypeRow driveSlotTypes[] = {{13, true}};
constexpr SensorTypeRow processorTypes[] = {{7, true}};
constexpr SensorTypeRow memoryTypes[] = {{12, true}};
constexpr SensorTypeRow miscTypes[] = {
    {5, true},  {11, true}, {15, false}, {16, true}, {18, true}, {19, true}, {20, true}, {21, true},
    {22, true}, {24, true}, {33, true},  {35, true}, {37, true}, {40, true}, {41, true}, {243, true},
};

/// All that have a table; the same sensor in two of them would have two rows.
constexpr int typesOfGroups[] = {1,  2,  3,  4,  5,  7,  8,  9,  10, 11, 12, 13, 15,
                                 16, 18, 19, 20, 21, 22, 24, 33, 35, 37, 40, 41, 243};

int statusNumberByWord(std::string_view text, const StatusWords& words)
{
    return rowStatusOf(mapValueToStatus(text, words));
}

int statusNumberByEnum(std::string_view text, const StatusWords& words)
{
    return getNewHealthEnum(mapValueToStatusEnum(text, words));
}

int redundancyOf(std::string_view text)
{
    return mapValueToRedundancyStatus(text, common::policy().judgesEachState);
}

constexpr DiscreteTraits powerSupplyTraits{
    .firstAttribute = POWERSUPPLY_DEVICEID,
    .sensorTypes = powerSupplyTypes,
    .defaultName = "HW_PowerSupply",
    .words = &powerSupplyWords,
    .statusNumber = statusNumberByWord,
    .database = &pPowerSupplyWrapper,
};

constexpr DiscreteTraits powerUnitTraits{
    .firstAttribute = POWERUNIT_DEVICEID,
    .sensorTypes = powerUnitTypes,
    .defaultName = "HW_PowerUnit",
    .words = &redundancyWords,
    .statusNumber = statusNumberByEnum,
    .extraNumber = redundancyOf,
    .database = &pPowerUnitWrapper,
};

constexpr DiscreteTraits coolingUnitTraits{
    .firstAttribute = COOLINGUNIT_DEVICEID,
    .sensorTypes = coolingUnitTypes,
    .defaultName = "HW_CoolingUnit",
    .words = &redundancyWords,
    .statusNumber = statusNumberByWord,
    .extraNumber = redundancyOf,
    .database = &pCoolingUnitWrapper,
};

constexpr DiscreteTraits discreteVoltageTraits{
    .firstAttribute = DISCRETEVOLTAGE_DEVICEID,
    .sensorTypes = voltageTypes,
    .nonLinearOnly = true,
    .defaultName = "HW_DiscreteVoltage",
    .words = &discreteVoltageWords,
    .statusNumber = statusNumberByWord,
    .extraNumber = getVoltagePerformanceEnum,
    .database = &pDiscreteVoltageWrapper,
};

constexpr DiscreteTraits discreteCoolingTraits{
    .firstAttribute = DISCRETECOOLING_DEVICEID,
    .sensorTypes = coolingTypes,
    .nonLinearOnly = true,
    .defaultName = "HW_DiscreteCooling",
    .words = &discreteCoolingWords,
    .statusNumber = statusNumberByWord,
    .extraNumber = getCoolingPerformanceEnum,
    .database = &pDiscreteCoolingWrapper,
};

constexpr DiscreteTraits driveSlotTraits{
    .firstAttribute = DRIVESLOT_PRESENCE_SENSOR_DEVICEID,
    .sensorTypes = driveSlotTypes,
    .defaultName = "Drive Slot Presence Sensor",
    .words = &driveSlotWords,
    .statusNumber = statusNumberByWord,
    .extraText = mapValueToPresenceStatusString,
    .database = &pDriverSlotWrapper,
};

constexpr DiscreteTraits miscSensorTraits{
    .firstAttribute = MISCELLANEOUS_SENSOR_DEVICEID,
    .sensorTypes = miscTypes,
    .defaultName = "HW_MiscellaneousSensor",
    .words = &miscSensorWords,
    .statusNumber = statusNumberByWord,
    .otherTypesThan = typesOfGroups,
    .countMessage = "miscSensor::init() Number of sensors = %d \n",
    .database = &pMiscSensorWrapper,
};

constexpr DiscreteTraits discreteProcessorTraits{
    .firstAttribute = DISCRETE_PROCESSOR_DEVICEID,
    .sensorTypes = processorTypes,
    .defaultName = "HW_DiscreteProcessor",
    .words = &discreteProcessorWords,
    .statusNumber = statusNumberByWord,
    .database = &pDiscreteProcessorWrapper,
};

constexpr DiscreteTraits discreteMemoryTraits{
    .firstAttribute = DISCRETE_MEMORY_DEVICEID,
    .sensorTypes = memoryTypes,
    .defaultName = "HW_DiscreteMemory",
    .words = &discreteMemoryWords,
    .statusNumber = statusNumberByWord,
    .database = &pDiscreteMemoryWrapper,
};

/// What a live number is before it is read, and stays if it can't be.
constexpr long numberNotRead = 3;
constexpr const char* coolingUnitCaption = "Group for cooling unit table";

bool isColumn(_SMAttribute attribute, DiscreteColumn column, const DiscreteTraits& traits)
{
    return attribute - traits.firstAttribute == static_cast<int>(column);
}

} // namespace

powerSupply::powerSupply() : DiscreteGroup(powerSupplyTraits) {}
powerUnit::powerUnit() : DiscreteGroup(powerUnitTraits) {}
coolingUnit::coolingUnit() : DiscreteGroup(coolingUnitTraits) {}
discreteVoltage::discreteVoltage() : DiscreteGroup(discreteVoltageTraits) {}
discreteCooling::discreteCooling() : DiscreteGroup(discreteCoolingTraits) {}
driveSlot::driveSlot() : DiscreteGroup(driveSlotTraits) {}
miscSensor::miscSensor() : DiscreteGroup(miscSensorTraits) {}
discreteProcessor::discreteProcessor() : DiscreteGroup(discreteProcessorTraits) {}
discreteMemory::discreteMemory() : DiscreteGroup(discreteMemoryTraits) {}

namespace client::groups {

template<class Row>
int DiscreteGroup<Row>::init()
{
    readDatabase();
    sensors.settle(traits.defaultName);
    const SensorDatabase& database = sensors.all();
    if (const int result = this->allocTable(database.m_tdLen()); result != CLIENT_SUCCESS)
        return result;
    for (int row = 0; row < this->m_nCount; ++row) {
        const CSensorInfo& sensor = database.m_pT[static_cast<std::size_t>(row)].m_cInfo;
        Row& stored = *this->getAddress(row);
        stored.nDeviceId = sensor.m_iIdNumber;
        copyText(stored.stDescription,
                 sensor.m_cDescription.isEmpty() ? traits.defaultName : sensor.m_cDescription.narrow());
    }
    return CLIENT_SUCCESS;
}

template<class Row>
void DiscreteGroup<Row>::readDatabase()
{
    SensorDatabase& database = sensors.begin();
    for (const SensorTypeRow& type : traits.sensorTypes)
        GetAllSensorData(type.m_nSensorType, &database, m_nMultiplier, type.discrete);
    if (!traits.otherTypesThan.empty() && common::policy().listsEverySensor)
        client::readings::readOtherSensors(traits.otherTypesThan, database, m_nMultiplier);
    if (traits.nonLinearOnly)
        std::erase_if(database.m_pT, [](const CSensorWrapper& sensor) { return sensor.m_cInfo.m_bIsLinear == 0; });
    if (traits.countMessage)
        trace(traits.countMessage, database.m_tdLen());
}

/// The database keeps the text of start-up: what a failed read shows.
template<class Row>
CSensorWrapper DiscreteGroup<Row>::readLive(int row)
{
    CSensorWrapper sensor = sensors[row];
    sensor.m_cInfo.m_iIdNumber = this->getAddress(row)->nDeviceId;
    sensor.m_cInfo.m_usChassisId = m_nChassisId;
    GetSensorData(sensor, m_nMultiplier);
    return sensor;
}

template<class Row>
std::string DiscreteGroup<Row>::readText(int row)
{
    return readLive(row).m_cData.m_cValueString.narrow();
}

template<class Row>
Judgement DiscreteGroup<Row>::readStatus(int row)
{
    const CSensorWrapper sensor = readLive(row);
    if (const auto judged = judge(sensor, *traits.words))
        return *judged;
    return {mapValueToStatus(sensor.m_cData.m_cValueString.narrow(), *traits.words)};
}

template<class Row>
int DiscreteGroup<Row>::readStatusNumber(int row)
{
    const CSensorWrapper sensor = readLive(row);
    if (const auto judged = judge(sensor, *traits.words))
        return rowStatusOf(judged->status);
    return traits.statusNumber(sensor.m_cData.m_cValueString.narrow(), *traits.words);
}

template<class Row>
bool DiscreteGroup<Row>::readUnread(int row, std::mutex& guard)
{
    if (!this->getAddress(row) || !readLive(row).m_cData.m_bAnswered)
        return true;
    return sensors.readUnread(row, m_nMultiplier, guard);
}

template<class Row>
std::optional<DeviceStatus> DiscreteGroup<Row>::presentStatus(int row)
{
    const Row* const stored = this->getAddress(row);
    if (!stored)
        return std::nullopt;
    const Judgement judged = readStatus(row);
    return DeviceStatus{stored->nDeviceId, eventStatusOf(judged.status), judged.side};
}

template<class Row>
int DiscreteGroup<Row>::getIntInfo(_SMAttribute attribute, int row, long& out)
{
    const Row* const stored = this->getAddress(row);
    if (!stored)
        return CLIENT_ERROR_NO_ROW;
    if (!isColumn(attribute, DiscreteColumn::DeviceId, traits))
        return CLIENT_ERROR_NOSUCHNAME;
    out = stored->nDeviceId;
    return CLIENT_SUCCESS;
}

template<class Row>
int DiscreteGroup<Row>::getStrInfo(_SMAttribute attribute, int row, char*& out)
{
    const Row* const stored = this->getAddress(row);
    if (!stored)
        return CLIENT_ERROR_NO_ROW;
    if (!isColumn(attribute, DiscreteColumn::Description, traits))
        return CLIENT_ERROR_NOSUCHNAME;
    return answerText(stored->stDescription, out);
}

template<class Row>
int DiscreteGroup<Row>::getIntData(_SMAttribute attribute, int row, long& out)
{
    out = numberNotRead;
    if (!this->getAddress(row))
        return CLIENT_ERROR_NO_ROW;
    if (isColumn(attribute, DiscreteColumn::Status, traits))
        out = readStatusNumber(row);
    else if (traits.extraNumber && isColumn(attribute, DiscreteColumn::Extra, traits))
        out = traits.extraNumber(readText(row));
    else
        return CLIENT_ERROR_NOSUCHNAME;
    return CLIENT_SUCCESS;
}

template<class Row>
int DiscreteGroup<Row>::getStrData(_SMAttribute attribute, int row, char*& out)
{
    if (!this->getAddress(row))
        return CLIENT_ERROR_NO_ROW;
    if (isColumn(attribute, DiscreteColumn::StatusString, traits))
        out = getNewHealthString(readStatus(row).status);
    else if (traits.extraText && isColumn(attribute, DiscreteColumn::Extra, traits))
        out = newTextBlock(traits.extraText(readText(row)));
    else
        return CLIENT_ERROR_NOSUCHNAME;
    return out ? CLIENT_SUCCESS : CLIENT_ERROR_MEMORY;
}

} // namespace client::groups

int coolingUnit::init()
{
    const int result = DiscreteGroup::init();
    for (CoolingUnitInfo& row : rows())
        copyText(row.stCaption, coolingUnitCaption);
    return result;
}

int coolingUnit::getStrInfo(_SMAttribute attribute, int row, char*& out)
{
    const CoolingUnitInfo* const stored = getAddress(row);
    if (!stored || attribute != COOLINGUNIT_CAPTION)
        return DiscreteGroup::getStrInfo(attribute, row, out);
    return answerText(stored->stCaption, out);
}

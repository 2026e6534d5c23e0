#include "client/groups/clInventory.hpp"

#include "client/groups/RowNames.hpp"
#include "client/query/QLInterface.hpp"
#include "common/Policy.hpp"
#include "ipmi/Hex.hpp"
#include "ipmi/SdrView.hpp"
#include "ipmi/SensorReading.hpp"

#include <cctype>

using namespace client::groups;
using namespace client::readings;
using namespace client::words;

namespace {

constexpr char compactRecords[] = "/BMC/SDR/RECORD_TYPE[2]";

constexpr IntField<ProcessorInfo> processorInts[] = {
    {PROC_DEVICEID, &ProcessorInfo::nDeviceId},
    {PROC_STATUS, &ProcessorInfo::nStatus},
    {PROC_TYPE, &ProcessorInfo::nDeviceType},
    {PROC_FAMILY, &ProcessorInfo::nDeviceFamily},
    {PROC_MAXSPEED, &ProcessorInfo::nMaxSpeed},
    {PROC_CURRENTSPEED, &ProcessorInfo::nCurrentSpeed},
    {PROC_EXTCLOCKSPEED, &ProcessorInfo::nClockSpeed},
    {PROC_VOLTAGE, &ProcessorInfo::nVoltage},
    {PROC_UPGRADEMETHOD, &ProcessorInfo::nUpgradeMethod},
};

constexpr TextField<ProcessorInfo> processorTexts[] = {
    {PROC_DESCRIPTION, &ProcessorInfo::stDescription}, {PROC_STATUSSTRING, &ProcessorInfo::stStatusString},
    {PROC_PARTNUMBER, &ProcessorInfo::stPartNumber},   {PROC_MANUFACTURERNAME, &ProcessorInfo::stManufacturer},
    {PROC_VERSIONNAME, &ProcessorInfo::stVersionName}, {PROC_SOCKETDESIGNATION, &ProcessorInfo::stSocketDesignation},
    {PROC_PROCESSORID, &ProcessorInfo::stProcessorId},
};

constexpr IntField<MemoryArrayInfo> arrayInts[] = {
    {MEMORYARRAY_DEVICEID, &MemoryArrayInfo::nDeviceId},
    {MEMORYARRAY_STATUS, &MemoryArrayInfo::nStatus},
    {MEMORYARRAY_LOCATION, &MemoryArrayInfo::nLocation},
    {MEMORYARRAY_MAXCAPACITY, &MemoryArrayInfo::nMaxCapacity},
    {MEMORYARRAY_NUMOFDEVICE, &MemoryArrayInfo::nNumOfDevice},
    {MEMORYARRAY_ERRORCORRECTION, &MemoryArrayInfo::nErrorCorrection},
    {MEMORYARRAY_HANDLE, &MemoryArrayInfo::nHandle},
    {MEMORYARRAY_USAGECODE, &MemoryArrayInfo::nUsageCode},
    {MEMORYARRAY_USEDSLOT, &MemoryArrayInfo::nUsedSlot},
};

constexpr TextField<MemoryArrayInfo> arrayTexts[] = {
    {MEMORYARRAY_DESCRIPTION, &MemoryArrayInfo::stDescription},
    {MEMORYARRAY_STATUSSTRING, &MemoryArrayInfo::stStatusString},
    {MEMORYARRAY_TAG, &MemoryArrayInfo::stTag},
};

constexpr IntField<MemoryDeviceInfo> deviceInts[] = {
    {MEMORYDEVICE_DEVICEID, &MemoryDeviceInfo::nDeviceId},
    {MEMORYDEVICE_STATUS, &MemoryDeviceInfo::nStatus},
    {MEMORYDEVICE_HANDLE, &MemoryDeviceInfo::nHandle},
    {MEMORYDEVICE_ASSOCIATEDARRAY, &MemoryDeviceInfo::nAssociatedArray},
    {MEMORYDEVICE_TOTALWIDTH, &MemoryDeviceInfo::nTotalWidth},
    {MEMORYDEVICE_DATAWIDTH, &MemoryDeviceInfo::nDataWidth},
    {MEMORYDEVICE_SIZE, &MemoryDeviceInfo::nSize},
    {MEMORYDEVICE_FORMFACTOR, &MemoryDeviceInfo::nFormFactor},
    {MEMORYDEVICE_MEMORYTYPE, &MemoryDeviceInfo::nMemoryType},
    {MEMORYDEVICE_TYPEDETAIL, &MemoryDeviceInfo::nTypeDetail},
    {MEMORYDEVICE_SPEED, &MemoryDeviceInfo::nSpeed},
};

constexpr TextField<MemoryDeviceInfo> deviceTexts[] = {
    {MEMORYDEVICE_DESCRIPTION, &MemoryDeviceInfo::stDescription},
    {MEMORYDEVICE_STATUSSTRING, &MemoryDeviceInfo::stStatusString},
    {MEMORYDEVICE_TAG, &MemoryDeviceInfo::stTag},
    {MEMORYDEVICE_LOCATOR, &MemoryDeviceInfo::stLocator},
    {MEMORYDEVICE_BANKLABEL, &MemoryDeviceInfo::stBankLabel},
    {MEMORYDEVICE_MANUFACTURER, &MemoryDeviceInfo::stManufacturer},
    {MEMORYDEVICE_SERIALNUMBER, &MemoryDeviceInfo::stSerialNumber},
    {MEMORYDEVICE_ASSETTAG, &MemoryDeviceInfo::stAssetTag},
    {MEMORYDEVICE_PARTNUMBER, &MemoryDeviceInfo::stPartNumber},
};

struct ProcessorSensor {
    int number;
    int packedId;
};

/// The sensors that watch processors, in the order of the records.
std::vector<ProcessorSensor> listProcessorSensors()
{
    std::vector<ProcessorSensor> sensors;
    const auto records = client::query::tryQuery(compactRecords, "\n Failed For the Processor").value_or(ResultMap());
    for (const auto& [path, node] : records) {
        if (node.mType != NODE_LEAF || node.mXNodeList.empty())
            continue;
        const ipmi::Bytes record = ipmi::parseBytes(node.mXNodeList.front());
        const ipmi::SdrView sensor(record);
        if (sensor.sensorType() == ipmi::sensortype::processor)
            sensors.push_back({sensor.number(), sensor.packedId()});
    }
    return sensors;
}

/// Letters, in upper case, and digits of a name: boards and firmware write the rest as they like.
std::string reduced(std::string_view name)
{
    std::string letters;
    for (const char character : name)
        if (const auto byte = static_cast<unsigned char>(character); std::isalnum(byte))
            letters.push_back(static_cast<char>(std::toupper(byte)));
    return letters;
}

std::string counted(int count, const char* what)
{
    return count > 0 ? std::to_string(count) + what : std::string();
}

/// Words that say more than that it is memory.
std::string specialTechnology(const std::string& word)
{
    static constexpr std::string_view usual[] = {"", "Other", "Unknown", "DRAM"};
    return std::ranges::find(usual, word) == std::end(usual) && !word.starts_with("0X") ? word : std::string();
}

/// The name, and behind it what the columns have no place or number for.
std::string described(std::string name, std::initializer_list<std::string> notes)
{
    if (common::policy().describesInventory)
        for (const std::string& note : notes)
            if (!note.empty())
                addMark(name, note);
    return name;
}

template<class Row>
void tellRowsApart(std::span<Row> rows, std::vector<std::string> (*marksOf)(const Row& row, int number))
{
    std::vector<RowName> names;
    for (int number = 0; const Row& row : rows)
        names.push_back({row.stDescription, marksOf(row, ++number)});
    tellApart(names);
    for (std::size_t i = 0; i < rows.size(); ++i)
        copyText(rows[i].stDescription, names[i].text);
}

/// The tables have no live state: a row is healthy until an event says otherwise.
template<class Row>
void setHealthy(BaseContainer<Row>& group, Row& row)
{
    row.nStatus = ENUM_STATUS_HEALTHY;
    group.getStatusString(ENUM_STATUS_OK, row.stStatusString);
}

} // namespace

int processorDevice::init()
{
    getNumberOfProcessorPresent(&m_nCount);
    if (const int result = allocTable(m_nCount); result != CLIENT_SUCCESS) {
        trace("allocTable failed processorDevice::init returning\n");
        return result;
    }
    int number = 0;
    for (ProcessorInfo& row : rows())
        fillRow(++number, row);
    tellRowsApart<ProcessorInfo>(
        rows(), [](const ProcessorInfo&, int place) { return std::vector{"number " + std::to_string(place)}; });
    trace("Leaving processorDevice::init with success\n");
    return CLIENT_SUCCESS;
}

void processorDevice::fillRow(int processor, ProcessorInfo& row)
{
    // a machine may have fewer sensors than processors: the last watches those that are left
    if (const auto sensors = listProcessorSensors(); !sensors.empty())
        row.nDeviceId = sensors[std::min(sensors.size(), static_cast<std::size_t>(processor)) - 1].number;
    getProcessorPresentInfo(processor, m_processorInfo);
    setHealthy(*this, row);
    copyText(row.stDescription, described(m_processorInfo.socketDesignation,
                                          {m_processorInfo.unnamed, counted(m_processorInfo.cores, " cores"),
                                           counted(m_processorInfo.threads, " threads")}));
    copyText(row.stSocketDesignation, m_processorInfo.socketDesignation);
    copyText(row.stManufacturer, m_processorInfo.manufacturer);
    copyText(row.stVersionName, m_processorInfo.version);
    copyText(row.stPartNumber, m_processorInfo.partNumber);
    copyText(row.stProcessorId, m_processorInfo.processorId);
    row.nDeviceType = m_processorInfo.type_;
    row.nDeviceFamily = m_processorInfo.family;
    row.nMaxSpeed = m_processorInfo.maxSpeed;
    row.nCurrentSpeed = m_processorInfo.currentSpeed;
    row.nClockSpeed = m_processorInfo.externalClock;
    row.nVoltage = m_processorInfo.voltage;
    row.nUpgradeMethod = m_processorInfo.upgrade;
}

int processorDevice::getIntInfo(_SMAttribute attribute, int row, long& out)
{
    const ProcessorInfo* const found = getAddress(row);
    return found ? answerInt(processorInts, *found, attribute, out) : PROCESSOR_ERROR_NO_ROW;
}

int processorDevice::getStrInfo(_SMAttribute attribute, int row, char*& out)
{
    const ProcessorInfo* const found = getAddress(row);
    return found ? answerText(processorTexts, *found, attribute, out) : PROCESSOR_ERROR_NO_ROW;
}

int processorDevice::getIndex(int deviceId)
{
    const auto sensors = listProcessorSensors();
    const auto found = std::ranges::find(sensors, deviceId, &ProcessorSensor::packedId);
    if (found == sensors.end())
        return BaseContainer::getIndex(deviceId);
    const auto row = static_cast<int>(found - sensors.begin()) + 1;
    const bool watchesMore = row == static_cast<int>(sensors.size()) && row < m_nCount;
    return row > m_nCount || watchesMore ? 0 : row;
}

int memoryArray::init()
{
    std::vector<MemoryArrayDetails> arrays;
    GetMemoryArrayDetails(arrays);
    if (const int result = allocTable(static_cast<int>(arrays.size())); result != CLIENT_SUCCESS)
        return result;
    for (std::size_t place = 0; place < arrays.size(); ++place)
        fillRow(arrays[place].array, rows()[place]);
    return CLIENT_SUCCESS;
}

void memoryArray::fillRow(int array, MemoryArrayInfo& row)
{
    getPhyMemDevArrayInfo(array, m_arrayInfo);
    row.nDeviceId = array;
    row.nIndex = array;
    setHealthy(*this, row);
    copyText(row.stDescription, "Memory Array " + std::to_string(array));
    row.nLocation = m_arrayInfo.location;
    row.nMaxCapacity = m_arrayInfo.maxCapacity;
    row.nNumOfDevice = m_arrayInfo.numDevices;
    row.nErrorCorrection = m_arrayInfo.errorCorrection;
    row.nHandle = m_arrayInfo.errorInfoHandle;
    row.nUsageCode = m_arrayInfo.use;
    row.nUsedSlot = m_arrayInfo.devicesPresent;
}

int memoryArray::getIntInfo(_SMAttribute attribute, int row, long& out)
{
    const MemoryArrayInfo* const found = getAddress(row);
    return found ? answerInt(arrayInts, *found, attribute, out) : CLIENT_ERROR_NO_ROW;
}

int memoryArray::getStrInfo(_SMAttribute attribute, int row, char*& out)
{
    const MemoryArrayInfo* const found = getAddress(row);
    return found ? answerText(arrayTexts, *found, attribute, out) : CLIENT_ERROR_NO_ROW;
}

int memoryDevice::init()
{
    std::vector<MemoryArrayDetails> arrays;
    GetMemoryArrayDetails(arrays);
    int count = 0;
    for (const MemoryArrayDetails& each : arrays) {
        trace("\nMemory Array %d contains %zu devices \n", each.array, each.devices.size());
        count += static_cast<int>(each.devices.size());
    }
    if (const int result = allocTable(count); result != CLIENT_SUCCESS)
        return result;
    int number = 0;
    for (const MemoryArrayDetails& each : arrays)
        for (const int device : each.devices) {
            trace(" \n Add Memory Device::Memory Array Index %d, Memory Device Index = %d\n", each.array, device);
            MemoryDeviceInfo& row = *getAddress(number++);
            row.nDeviceId = number;
            fillRow(each.array, device, row);
        }
    tellRowsApart<MemoryDeviceInfo>(rows(), [](const MemoryDeviceInfo& row, int place) {
        return std::vector<std::string>{row.stBankLabel, "number " + std::to_string(place)};
    });
    return CLIENT_SUCCESS;
}

void memoryDevice::fillRow(int array, int device, MemoryDeviceInfo& row)
{
    getMemoryDeviceInfo(array, device, m_deviceInfo);
    setHealthy(*this, row);
    row.nAssociatedArray = array;
    row.nTotalWidth = m_deviceInfo.totalWidth;
    row.nDataWidth = m_deviceInfo.dataWidth;
    row.nSize = m_deviceInfo.size;
    row.nFormFactor = m_deviceInfo.formFactor;
    row.nMemoryType = m_deviceInfo.memoryType;
    row.nTypeDetail = m_deviceInfo.typeDetail;
    row.nSpeed = m_deviceInfo.speed;
    copyText(row.stDescription,
             described(m_deviceInfo.deviceLocator, {m_deviceInfo.unnamed, specialTechnology(m_deviceInfo.technology)}));
    copyText(row.stLocator, m_deviceInfo.deviceLocator);
    copyText(row.stBankLabel, m_deviceInfo.bankLocator);
    copyText(row.stManufacturer, m_deviceInfo.manufacturer);
    copyText(row.stSerialNumber, m_deviceInfo.serialNumber);
    copyText(row.stAssetTag, m_deviceInfo.assetTag);
    copyText(row.stPartNumber, m_deviceInfo.partNumber);
}

int memoryDevice::getIntInfo(_SMAttribute attribute, int row, long& out)
{
    const MemoryDeviceInfo* const found = getAddress(row);
    return found ? answerInt(deviceInts, *found, attribute, out) : CLIENT_ERROR_NO_ROW;
}

int memoryDevice::getStrInfo(_SMAttribute attribute, int row, char*& out)
{
    const MemoryDeviceInfo* const found = getAddress(row);
    return found ? answerText(deviceTexts, *found, attribute, out) : CLIENT_ERROR_NO_ROW;
}

int memoryDevice::findModule(const std::string& sensorName)
{
    const std::string wanted = reduced(sensorName);
    int found = 0;
    int number = 0;
    for (const MemoryDeviceInfo& row : rows()) {
        ++number;
        if (wanted.empty() || (reduced(row.stLocator) != wanted && reduced(row.stBankLabel) != wanted))
            continue;
        if (found != 0)
            return 0;
        found = number;
    }
    return found;
}

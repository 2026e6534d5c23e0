#include "client/events/Classifiers.hpp"

#include "client/events/ClassifierTables.hpp"
#include "client/events/SNMP_RouteEvent.hpp"
#include "client/events/SelWatcher.hpp"
#include "client/query/Answers.hpp"
#include "client/query/QLInterface.hpp"
#include "client/words/Trace.hpp"
#include "common/Waits.hpp"
#include "ipmi/Hex.hpp"
#include "ipmi/SdrView.hpp"

#include <cstdio>
#include <optional>

using namespace client::events;
using namespace client::words;
using client::query::tryQuery;

namespace {

using namespace std::chrono_literals;

constexpr int mostAttempts = 5;
constexpr auto pauseBetweenAttempts = 30'000s;
constexpr std::size_t recordTextBytes = 1022;

/// How the sensor's record is looked for.
enum class Search { none, bySensorType, byRecordTypes };
/// Whose words tell the event.
enum class Words { own, translators };

/// Generators of records made by the system's firmware (IPMI 2.0, table 5-4).
constexpr int firstFirmwareGenerator = 0x31;
constexpr int lastFirmwareGenerator = 0x3F;

/// What differs from family to family.
struct Family {
    const char* name;
    const char* sensorType; ///< word in place of the sensor type's number; null leaves the number
    Search search;
    int group;
    Words words;
    OffsetTable (*offsets)(const EVENT_DATA_STRUCT& record);
    int (*sensorNumber)(const EVENT_DATA_STRUCT& record);
    Meaning (*adjust)(const EVENT_DATA_STRUCT& record, int offset, Meaning meaning);
};

int ownSensorNumber(const EVENT_DATA_STRUCT& record)
{
    return record.ucSensorNumber;
}

Meaning asInTable(const EVENT_DATA_STRUCT&, int, Meaning meaning)
{
    return meaning;
}

bool isFromFirmware(const EVENT_DATA_STRUCT& record)
{
    return record.usGeneratorID >= firstFirmwareGenerator && record.usGeneratorID <= lastFirmwareGenerator;
}

int processorSensorNumber(const EVENT_DATA_STRUCT& record)
{
    return isFromFirmware(record) && record.ucEventData2 == 0 ? 0 : record.ucSensorNumber;
}

Meaning withWord(Meaning meaning, const char* severity, int CEventData::*counter)
{
    meaning.severity = severity;
    meaning.counter = counter;
    return meaning;
}

/// The firmware's own records say in event data 3 how grave an internal error is.
Meaning processorMeaning(const EVENT_DATA_STRUCT& record, int offset, Meaning meaning)
{
    if (record.ucEventTrigger == 0)
        return withWord(meaning, "", nullptr);
    if (!isFromFirmware(record) || *meaning.severity == '\0')
        return meaning;
    if (record.ucEventData2 != 0)
        return withWord(meaning, "", nullptr);
    if (offset != 0)
        return meaning;
    if (record.ucEventData3 == 0)
        return withWord(meaning, "Error", &CEventData::m_iCriticalErrors);
    if (record.ucEventData3 == 1)
        return withWord(meaning, "Fatal", &CEventData::m_iFatalErrors);
    if (record.ucEventData3 == 2)
        return withWord(meaning, "Degraded", &CEventData::m_iWarningErrors);
    return withWord(meaning, "", nullptr);
}

constexpr Family family(const char* name, const char* sensorType, Search search, int group, Words words,
                        OffsetTable (*offsets)(const EVENT_DATA_STRUCT&))
{
    return {name, sensorType, search, group, words, offsets, ownSensorNumber, asInTable};
}

constexpr auto byType = Search::bySensorType;

constexpr Family temperature =
    family("Temperature_EventOccurred", "Temperature", byType, 14, Words::own, thresholdOffsets);
constexpr Family voltage =
    family("Voltage_EventOccurred", "Voltage", Search::byRecordTypes, 15, Words::own, thresholdOffsets);
constexpr Family fan = family("Fan_EventOccurred", "Fan", byType, 4, Words::own, thresholdOffsets);
constexpr Family coolingRedundancy =
    family("CoolingRedundancy_EventOccurred", "CoolingDevice", byType, 5, Words::translators, coolingRedundancyOffsets);
constexpr Family powerSupply =
    family("PowerSupply_EventOccurred", "PowerSupply", byType, 10, Words::translators, powerSupplyOffsets);
constexpr Family powerSupplyRedundancy =
    family("PowerSupplyRedundancy_EventOccurred", "PowerSupply", byType, 11, Words::own, powerRedundancyOffsets);
constexpr Family memory = family("Memory_EventOccurred", "Memory", byType, 8, Words::translators, memoryOffsets);
constexpr Family processor = {"Processor_EventOccurred", "Processor",           byType,          12, Words::own,
                              processorOffsets,          processorSensorNumber, processorMeaning};
constexpr Family bios = family("Bios_EventOccurred", "BIOS Evt", byType, 2, Words::own, biosOffsets);
constexpr Family watchdog = family("Watchdog_EventOccurred", "WatchDog", byType, 16, Words::own, watchdogOffsets);
constexpr Family securityViolation =
    family("SecurityViolation_EventOccurred", nullptr, Search::none, 13, Words::own, securityViolationOffsets);
constexpr Family intrusion =
    family("Intrusion_EventOccurred", "Intrusion", Search::none, 3, Words::own, intrusionOffsets);
constexpr Family driveSlot = family("DriveSlot_EventOccurred", nullptr, byType, 19, Words::own, driveSlotOffsets);
constexpr Family phpSlot = family("PhpSlot_EventOccurred", "PhpSlot", byType, 9, Words::own, phpSlotOffsets);
constexpr Family surgeLoop =
    family("PGSurgeLoop_EventOccurred", "PGSurgeLoop", byType, 20, Words::own, surgeLoopOffsets);

constexpr char noRecords[] = "Query Failed to get the SDR's ";

/// The first record of that sensor among those that the query answers.
ipmi::Bytes recordOf(int sensorNumber, const ResultMap& records)
{
    for (const auto& [key, node] : records) {
        if (node.mType != NODE_LEAF || node.mXNodeList.empty())
            continue;
        ipmi::Bytes record = ipmi::parseBytes(node.mXNodeList.front().substr(0, recordTextBytes));
        if (record.size() > ipmi::sdr::number && ipmi::SdrView(record).number() == sensorNumber)
            return record;
    }
    return {};
}

ipmi::Bytes findByRecordTypes(int sensorNumber)
{
    for (const int recordType : {ipmi::sdrtype::full, ipmi::sdrtype::compact}) {
        const auto records = tryQuery("/BMC/SDR/RECORD_TYPE[" + std::to_string(recordType) + "]", noRecords, nullptr);
        if (!records)
            return {};
        if (auto record = recordOf(sensorNumber, *records); !record.empty())
            return record;
    }
    trace("The sensor number is not matched for record type 2\n");
    return {};
}

/// Empty without one, also when the query fails.
ipmi::Bytes findSensor(Search search, int sensorType, int sensorNumber)
{
    if (search == Search::byRecordTypes)
        return findByRecordTypes(sensorNumber);
    const auto records = tryQuery("/BMC/SDR/SENSOR_TYPE[" + std::to_string(sensorType) + "]", noRecords, nullptr);
    return records ? recordOf(sensorNumber, *records) : ipmi::Bytes();
}

std::string sensorName(const Family& family, int sensorNumber)
{
    const std::string path = "/BMC/SENSOR[" + std::to_string(sensorNumber) + "]/NAME";
    const std::string complaint = std::string("\n ") + family.name + " SensorNamequery failed";
    const auto answers = tryQuery(path, complaint, nullptr);
    const std::string* const name = answers ? client::query::findAnswer(*answers, path) : nullptr;
    return name ? *name : std::string();
}

Meaning meaningOf(const Family& family, const EVENT_DATA_STRUCT& record)
{
    const std::size_t offset = record.ucEventData1 % 16;
    const OffsetTable rows = family.offsets(record);
    if (offset >= rows.size())
        return {};
    const bool asserted = record.ucEventTrigger >> 7 == 0;
    const Meaning meaning = asserted ? rows[offset].asserted : rows[offset].deasserted;
    return family.adjust(record, static_cast<int>(offset), meaning);
}

void takeTranslatorsWords(const EVENT_DATA_STRUCT& record, CSelInfo& info)
{
    info.m_cDescription.SetString(record.sEventDiscription);
    info.m_cSeverity.SetString(record.sSeverity);
}

void describe(const Family& family, const EVENT_DATA_STRUCT& record, CEventData& event)
{
    CSelInfo& info = event.m_cSelWrapper.m_cInfo;
    const Meaning meaning = meaningOf(family, record);
    info.m_eEventDirection = static_cast<EventDirection>(record.ucEventTrigger >> 7);
    event.m_bAsserted = record.ucEventTrigger != 0;
    if (meaning.counter && event.m_bAsserted)
        ++(event.*meaning.counter);
    event.m_cStatus.SetString(meaning.severity);
    if (family.words == Words::translators)
        takeTranslatorsWords(record, info);
    else
        info.m_cDescription.SetString(meaning.status);
}

int deliver(CEventWrapper& wrapper, int group)
{
    const CObjectSmartPointer receiver(std::make_unique<SNMP_EventInterface>());
    int status = 0;
    for (int attempt = 0; attempt < mostAttempts && status == 0; ++attempt) {
        status = receiver->HandleEvent(wrapper, group);
        trace("\n Inside the trap function the value of status is %d:", status);
        if (status == 0)
            common::waitInterruptibly(pauseBetweenAttempts);
    }
    return status;
}

/// Finds the sensor the record is from and names it. False if there is none.
bool identify(const Family& family, const EVENT_DATA_STRUCT& record, CEventWrapper& wrapper)
{
    CSelInfo& info = wrapper.m_cData.m_cSelWrapper.m_cInfo;
    if (family.search != Search::none) {
        const int sensorNumber = family.sensorNumber(record);
        const ipmi::Bytes sensor = findSensor(family.search, record.ucSensorType, sensorNumber);
        if (sensor.empty())
            return false;
        info.m_cDescription.SetString(sensorName(family, sensorNumber).c_str());
        wrapper.m_cInfo.m_iIdNumber = ipmi::SdrView(sensor).packedId();
    }
    if (family.sensorType)
        info.m_cSensorType.SetString(family.sensorType);
    return true;
}

CEventWrapper wrapperOfRecord()
{
    CEventWrapper wrapper;
    wrapper.m_cData.m_cSelWrapper = aSelWrapper;
    return wrapper;
}

int classify(const Family& family, const EVENT_DATA_STRUCT* given)
{
    if (!given)
        return 0;
    const EVENT_DATA_STRUCT record = *given;
    CEventWrapper wrapper = wrapperOfRecord();
    if (!identify(family, record, wrapper))
        return 0;
    describe(family, record, wrapper.m_cData);
    return deliver(wrapper, family.group);
}

} // namespace

int Temperature_EventOccurred(EVENT_DATA_STRUCT* record)
{
    return classify(temperature, record);
}

int Voltage_EventOccurred(EVENT_DATA_STRUCT* record)
{
    return classify(voltage, record);
}

int Fan_EventOccurred(EVENT_DATA_STRUCT* record)
{
    if (record)
        trace("Fan_EventOccurred - ucEventOffset= %x  \n ", record->ucEventData1 % 16);
    return classify(fan, record);
}

int CoolingRedundancy_EventOccurred(EVENT_DATA_STRUCT* record)
{
    return classify(coolingRedundancy, record);
}

int PowerSupply_EventOccurred(EVENT_DATA_STRUCT* record)
{
    return classify(powerSupply, record);
}

int PowerSupplyRedundancy_EventOccurred(EVENT_DATA_STRUCT* record)
{
    return classify(powerSupplyRedundancy, record);
}

int Memory_EventOccurred(EVENT_DATA_STRUCT* record)
{
    return classify(memory, record);
}

int Processor_EventOccurred(EVENT_DATA_STRUCT* record)
{
    return classify(processor, record);
}

int Bios_EventOccurred(EVENT_DATA_STRUCT* record)
{
    return classify(bios, record);
}

int Watchdog_EventOccurred(EVENT_DATA_STRUCT* record)
{
    return classify(watchdog, record);
}

int SecurityViolation_EventOccurred(EVENT_DATA_STRUCT* record)
{
    return classify(securityViolation, record);
}

int Intrusion_EventOccurred(EVENT_DATA_STRUCT* record)
{
    return classify(intrusion, record);
}

int DriveSlot_EventOccurred(EVENT_DATA_STRUCT* record)
{
    if (record)
        trace(
            "CDriveSlotEvent::EventOccurred Event is triggered for Drive Slot Presence Sensor with EventType Value %d.",
            client::traps::eventTypeOf(*record));
    return classify(driveSlot, record);
}

int PhpSlot_EventOccurred(EVENT_DATA_STRUCT* record)
{
    return classify(phpSlot, record);
}

int PGSurgeLoop_EventOccurred(EVENT_DATA_STRUCT* record)
{
    return classify(surgeLoop, record);
}

int Generic_EventOccurred(EVENT_DATA_STRUCT* record)
{
    constexpr int noEvent = 0;
    if (!record)
        return noEvent;
    trace("Entering Generic_EventOccurred()...\n");
    CEventWrapper wrapper = wrapperOfRecord();
    trace("Checking for assertion.\n");
    wrapper.m_cData.m_cStatus.SetString(record->ucEventTrigger >> 7 == 0 ? "Information" : "");
    takeTranslatorsWords(*record, wrapper.m_cData.m_cSelWrapper.m_cInfo);
    trace("Event description %s\n", record->sEventDiscription);
    trace("Event Severity %s\n", record->sSeverity);
    trace("Returning from Generic_EventOccurred with status %d.\n", noEvent);
    return noEvent;
}

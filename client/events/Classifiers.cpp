#include "client/events/Classifiers.hpp"

#include "client/events/ClassifierTables.hpp"
#include "client/events/SNMP_RouteEvent.hpp"
#include "client/events/SelWatcher.hpp"
#include "client/query/Answers.hpp"
#include "client/query/QLInterface.hpp"
#include "client/words/Trace.hpp"
#include "common/Policy.hpp"
#include "common/Waits.hpp"
#include "ipmi/Hex.hpp"
#include "ipmi/SdrView.hpp"
#include "ipmi/SelView.hpp"
#include "ipmi/SensorReading.hpp"

#include <string>

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

/// What differs from family to family.
struct Family {
    const char* name;
    const char* sensorType; ///< word in place of the sensor type's number; null leaves the number
    Search search;
    int group;
    Words words;
    Meaning (*meaningOf)(const EVENT_DATA_STRUCT& record);
};

/// The firmware's own records about a processor may name none.
int sensorNumberOf(const EVENT_DATA_STRUCT& record)
{
    const bool namesNone =
        record.ucSensorType == ipmi::sensortype::processor && isFromFirmware(record) && record.ucEventData2 == 0;
    return namesNone ? 0 : record.ucSensorNumber;
}

constexpr auto byType = Search::bySensorType;

constexpr Family temperature = {"Temperature_EventOccurred", "Temperature", byType, 14, Words::own, meaningOfThreshold};
constexpr Family voltage = {"Voltage_EventOccurred", "Voltage", Search::byRecordTypes, 15, Words::own,
                            meaningOfThreshold};
constexpr Family fan = {"Fan_EventOccurred", "Fan", byType, 4, Words::own, meaningOfThreshold};
constexpr Family coolingRedundancy = {"CoolingRedundancy_EventOccurred", "CoolingDevice", byType, 5, Words::translators,
                                      meaningOfCoolingRedundancy};
constexpr Family powerSupply = {"PowerSupply_EventOccurred", "PowerSupply",       byType, 10,
                                Words::translators,          meaningOfPowerSupply};
constexpr Family powerSupplyRedundancy = {
    "PowerSupplyRedundancy_EventOccurred", "PowerSupply", byType, 11, Words::own, meaningOfPowerRedundancy};
constexpr Family memory = {"Memory_EventOccurred", "Memory", byType, 8, Words::translators, meaningOfMemory};
constexpr Family processor = {"Processor_EventOccurred", "Processor", byType, 12, Words::own, meaningOfProcessor};
constexpr Family bios = {"Bios_EventOccurred", "BIOS Evt", byType, 2, Words::own, meaningOfState};
constexpr Family watchdog = {"Watchdog_EventOccurred", "WatchDog", byType, 16, Words::own, meaningOfState};
constexpr Family securityViolation = {
    "SecurityViolation_EventOccurred", nullptr, Search::none, 13, Words::own, meaningOfState};
constexpr Family intrusion = {"Intrusion_EventOccurred", "Intrusion", Search::none, 3, Words::own, meaningOfState};
constexpr Family driveSlot = {"DriveSlot_EventOccurred", nullptr, byType, 19, Words::own, meaningOfState};
constexpr Family phpSlot = {"PhpSlot_EventOccurred", "PhpSlot", byType, 9, Words::own, meaningOfState};
constexpr Family surgeLoop = {"PGSurgeLoop_EventOccurred", "PGSurgeLoop", byType, 20, Words::own, meaningOfState};

constexpr char noRecords[] = "Query Failed to get the SDR's ";

/// A sensor's record, and whether others have its number.
struct Found {
    ipmi::Bytes record;
    bool isOnly = true;
    int fit = -1;
};

/// How well a record's sensor fits the maker of the event: by owner, then LUN, then channel.
int fitOf(const ipmi::SdrView& sensor, const ipmi::SelView& event)
{
    if (sensor.owner() != event.generator())
        return 0;
    return 1 + (sensor.lun() == event.lun() ? 2 : 0) + (sensor.channel() == event.channel() ? 1 : 0);
}

/// The first record of that number. Satellite controllers and further LUNs use the same numbers again: among several
/// the first that fits the event's maker best.
Found recordOf(int sensorNumber, ipmi::ByteView event, const ResultMap& records)
{
    Found best;
    for (const auto& [key, node] : records) {
        if (node.mType != NODE_LEAF || node.mXNodeList.empty())
            continue;
        ipmi::Bytes record = ipmi::parseBytes(node.mXNodeList.front().substr(0, recordTextBytes));
        if (record.size() <= ipmi::sdr::number || ipmi::SdrView(record).number() != sensorNumber)
            continue;
        best.isOnly = best.record.empty();
        if (const int fit = fitOf(ipmi::SdrView(record), ipmi::SelView(event)); fit > best.fit) {
            best.fit = fit;
            best.record = std::move(record);
        }
    }
    return best;
}

/// Full records first: a compact one counts only where it is the event's maker's and the full one is not.
Found findByRecordTypes(int sensorNumber, const EVENT_DATA_STRUCT& event)
{
    const ipmi::Bytes bytes = bytesOf(event);
    Found best;
    for (const int recordType : {ipmi::sdrtype::full, ipmi::sdrtype::compact}) {
        const auto records = tryQuery("/BMC/SDR/RECORD_TYPE[" + std::to_string(recordType) + "]", noRecords, nullptr);
        if (!records)
            break;
        if (Found found = recordOf(sensorNumber, bytes, *records); found.fit > best.fit)
            best = std::move(found);
        if (best.fit > 0 || (best.fit == 0 && bytes.empty()))
            return best;
    }
    if (best.record.empty())
        trace("The sensor number is not matched for record type 2\n");
    return best;
}

std::optional<ResultMap> recordsOfType(int sensorType)
{
    return tryQuery("/BMC/SDR/SENSOR_TYPE[" + std::to_string(sensorType) + "]", noRecords, nullptr);
}

/// Empty without one, also when the query fails.
Found findSensor(Search search, int sensorNumber, const EVENT_DATA_STRUCT& event)
{
    if (search == Search::byRecordTypes)
        return findByRecordTypes(sensorNumber, event);
    const auto records = recordsOfType(event.ucSensorType);
    return records ? recordOf(sensorNumber, bytesOf(event), *records) : Found();
}

std::string nameAt(const std::string& sensorPath, const std::string& complaint)
{
    const std::string path = sensorPath + "/NAME";
    const auto answers = tryQuery(path, complaint, nullptr);
    const std::string* const name = answers ? client::query::findAnswer(*answers, path) : nullptr;
    return name ? *name : std::string();
}

/// The number alone names the controller's own sensors; those of others are asked for by owner and LUN.
std::string sensorName(const Family& family, int sensorNumber, const Found& found)
{
    const std::string path = "/BMC/SENSOR[" + std::to_string(sensorNumber) + "]";
    const std::string complaint = std::string("\n ") + family.name + " SensorNamequery failed";
    std::string name = found.isOnly ? nameAt(path, complaint) : "";
    if (!name.empty() || found.record.empty())
        return name;
    const ipmi::SdrView sensor(found.record);
    return nameAt(path + "/OWNER[" + std::to_string(sensor.owner()) + "]/LUN[" + std::to_string(sensor.lunByte()) + "]",
                  complaint);
}

/// The text with the sensor's name before what it reports; empty where the text is to go out as it is.
std::string withName(const std::string& name, const std::string& text)
{
    if (!text.starts_with("reports "))
        return {};
    return (name.empty() ? "the sensor" : name) + " " + text;
}

void takeTranslatorsWords(const EVENT_DATA_STRUCT& record, CSelInfo& info)
{
    info.m_cDescription.SetString(record.sEventDiscription);
    info.m_cSeverity.SetString(record.sSeverity);
}

void describe(const Family& family, const EVENT_DATA_STRUCT& record, CEventWrapper& wrapper)
{
    CEventData& event = wrapper.m_cData;
    CSelInfo& info = event.m_cSelWrapper.m_cInfo;
    const Meaning own = family.meaningOf(record);
    const Meaning meaning = common::policy().agreesOnGravity ? agreed(record, own) : own;
    info.m_eEventDirection = static_cast<EventDirection>(record.ucEventTrigger >> 7);
    event.m_bAsserted = record.ucEventTrigger != 0;
    if (meaning.counter && event.m_bAsserted)
        ++(event.*meaning.counter);
    event.m_cStatus.SetString(meaning.severity);
    if (family.words == Words::translators) {
        takeTranslatorsWords(record, info);
        return;
    }
    info.m_cDescription.SetString(meaning.status.c_str());
    if (info.m_cShown.isEmpty())
        info.m_cShown.SetString(withName(wrapper.m_cInfo.m_cSensorName.narrow(), meaning.status).c_str());
}

int deliver(CEventWrapper& wrapper, int group)
{
    const CObjectSmartPointer receiver(std::make_unique<SNMP_EventInterface>());
    int status = 0;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        status = receiver->HandleEvent(wrapper, group);
        trace("\n Inside the trap function the value of status is %d:", status);
        if (status != 0 || common::policy().neverWaitsForRecords)
            break;
        common::waitInterruptibly(pauseBetweenAttempts);
    }
    return status;
}

/// Finds the sensor the record is from and names it. False if there is none.
bool identify(const Family& family, const EVENT_DATA_STRUCT& record, CEventWrapper& wrapper)
{
    CSelInfo& info = wrapper.m_cData.m_cSelWrapper.m_cInfo;
    const int sensorNumber = sensorNumberOf(record);
    Found found;
    if (family.search != Search::none) {
        found = findSensor(family.search, sensorNumber, record);
        if (found.record.empty())
            return false;
        wrapper.m_cInfo.m_iIdNumber = ipmi::SdrView(found.record).packedId();
    }
    wrapper.m_cInfo.m_cSensorName.SetString(sensorName(family, sensorNumber, found).c_str());
    info.m_cDescription = wrapper.m_cInfo.m_cSensorName;
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
    describe(family, record, wrapper);
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
        trace("Fan_EventOccurred - ucEventOffset= %x  \n ", static_cast<unsigned>(offsetOf(*record)));
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

bool client::events::hasRecordOfSensor(ipmi::ByteView event)
{
    const ipmi::SelView view(event);
    const auto records = recordsOfType(view.sensorType());
    return records && recordOf(view.sensorNumber(), event, *records).fit > 0;
}

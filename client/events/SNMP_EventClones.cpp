#include "client/events/SNMP_EventClones.hpp"

#include "client/door/Filling.hpp"
#include "client/door/Functions.hpp"
#include "client/words/Text.hpp"
#include "client/words/Trace.hpp"
#include "common/Policy.hpp"

#include <algorithm>
#include <string>

namespace client::events {

namespace {

using namespace words;

constexpr _SMEntity noTable{};

/// One clone: its group, and the tables asked in turn for the device's row.
struct Clone {
    int group;
    const char* name;
    _SMEntity tables[2] = {noTable, noTable};
};

constexpr int coolingSpareGroup = 5;
constexpr int memoryGroup = 8;

constexpr Clone clones[] = {
    {2, "SNMP_BiosEventClone"},
    {3, "SNMP_ChassisEventClone"},
    {4, "SNMP_CoolingSensorEventClone", {COOLINGDEVICE, DISCRETECOOLING}},
    {coolingSpareGroup, "SNMP_CoolingSpareEventClone", {COOLINGUNIT, DISCRETECOOLING}},
    {memoryGroup, "SNMP_MemoryEventClone", {MEMORYDEVICE}},
    {9, "SNMP_PhpSlotEventClone"},
    {10, "SNMP_PowerSupplyEventClone", {POWERSUPPLY}},
    {11, "SNMP_PowerSpareEventClone", {POWERUNIT}},
    {12, "SNMP_ProcessorEventClone", {PROCESSOR}},
    {14, "SNMP_TemperatureSensorEventClone", {TEMPERATURE}},
    {15, "SNMP_VoltageSensorEventClone", {VOLTAGE, DISCRETEVOLTAGE}},
    {19, "SNMP_DriveSlotEventClone", {DRIVESLOT}},
    {20, "SNMP_PGSurgeLoopEventClone"},
};

struct SeverityTail {
    std::string_view tail;
    HEALTH_STATUS severity;
};

/// In this order: "Critical" is the tail of "Non-Critical".
constexpr SeverityTail severityTails[] = {
    {"OK", ENUM_STATUS_OK},
    {"Non-Critical", ENUM_STATUS_NONCRI},
    {"Critical", ENUM_STATUS_CRITICAL},
    {"Non-Recoverable", ENUM_STATUS_NONREC},
};

int severityOf(const Clone& clone, std::string_view description)
{
    for (const auto& [tail, severity] : severityTails) {
        if (!description.ends_with(tail))
            continue;
        trace("%s::HandleEvent setting severity to %s\n", clone.name, tail.data());
        return severity;
    }
    trace("%s::HandleEvent setting severity to Unknown\n", clone.name);
    return ENUM_STATUS_UNKNOWN;
}

void findRow(const Clone& clone, const std::string& sensorName, eventData& event)
{
    for (const _SMEntity table : clone.tables) {
        if (table == noTable)
            return;
        event.nInstIndex = door::findRow(table, event.nDeviceId, sensorName);
        const char* const description = getDesc(table, event.nInstIndex - 1);
        copyText(event.stDeviceDesc, description ? description : "");
        if (event.nInstIndex != 0)
            return;
    }
}

void traceOddities(const Clone& clone, const eventData& event, const CSelInfo& info)
{
    if (clone.group == coolingSpareGroup && event.nInstIndex > 0)
        trace("%s::HandleEvent index = %d\n", clone.name, event.nInstIndex);
    if (clone.group == memoryGroup)
        trace("SNMP_MemoryEventClone::HandleEvent() "
              "aEventWrapper.m_cData.m_cSelWrapper.m_cInfo.GetGeneratorID() = %x\n",
              info.m_usGeneratorID);
}

eventData makeEvent(const Clone& clone, const CEventWrapper& wrapper)
{
    const CSelInfo& info = wrapper.m_cData.m_cSelWrapper.m_cInfo;
    eventData event;
    event.nDeviceId = wrapper.m_cInfo.m_iIdNumber;
    findRow(clone, wrapper.m_cInfo.m_cSensorName.narrow(), event);
    traceOddities(clone, event, info);
    copyText(event.stEventDesc, info.m_cDescription.narrow());
    if (!wrapper.m_cData.m_cStatus.isEmpty())
        event.nSeverity = severityOf(clone, event.stEventDesc);
    copyText(event.stTimeStamp, info.m_cLocalTimeStamp.narrow());
    copyText(event.stSensorType, info.m_cSensorType.narrow());
    event.nEventGroup = clone.group;
    return event;
}

/// "OK" at the end becomes what still holds.
std::string sayingStill(std::string text, const status::DeviceStatus& still)
{
    constexpr std::string_view over = "OK";
    const auto* const tail = std::ranges::find(severityTails, still.status, &SeverityTail::severity);
    if (tail != std::end(severityTails) && text.ends_with(over))
        text.replace(text.size() - over.size(), over.size(), still.side + std::string(tail->tail));
    return text;
}

/// A recovery from one state is none as long as another holds. What the bounds are now is read after any event.
void tellWhatHolds(eventData& event, std::string& shown)
{
    door::noteEventOf(event.nDeviceId);
    if (event.nSeverity != ENUM_STATUS_OK)
        return;
    const auto still = door::readPresentStatus(event.nDeviceId);
    if (!still || still->status <= ENUM_STATUS_OK)
        return;
    event.nSeverity = still->status;
    copyText(event.stEventDesc, sayingStill(event.stEventDesc, *still));
    shown = sayingStill(shown, *still);
}

} // namespace

int handleByClone(CEventWrapper& wrapper, int eventGroup)
{
    const auto* const clone = std::ranges::find(clones, eventGroup, &Clone::group);
    if (clone == std::end(clones))
        return 0;
    eventData event = makeEvent(*clone, wrapper);
    std::string shown = wrapper.m_cData.m_cSelWrapper.m_cInfo.m_cShown.narrow();
    if (common::policy().tellsWhatHolds)
        tellWhatHolds(event, shown);
    door::addShownEvent(event, shown);
    // The same as the doorbell's signal to this thread, but for the signal: handlers may not do what this does.
    processEvent();
    return 1;
}

} // namespace client::events

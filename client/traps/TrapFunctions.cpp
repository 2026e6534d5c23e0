#include "client/traps/TrapFunctions.hpp"

#include "client/status/StatusWords.hpp"

#include <span>
#include <string_view>

using namespace client::traps;

namespace {

struct TextRule {
    std::string_view part;
    const TrapOid* oid;
};

constexpr TextRule driveSlotRules[] = {
    {"reports the device has been removed or is absent", &DriveSlotDeviceRemovedEventOid},
    {"reports the device has been inserted or is present", &DriveSlotDeviceInsertedEventOid},
    {"drive removed", &DriveSlotDeviceRemovedEventOid},
    {"drive presence", &DriveSlotDeviceInsertedEventOid},
};

constexpr TextRule biosRules[] = {
    {"system has been reconfigured", &SysReconfig},
    {"system boot event has occurred", &SysBoot},
    {"undetermined system hardware failure", &HardwareFail},
};

constexpr TextRule memoryRules[] = {
    {"correctable ECC", &MemSingleBit},
    {"uncorrectable ECC", &MemMultiBit},
    {"Parity Error", &MemParity},
    {"memory scrub failed", &MemScrubFail},
};

constexpr TextRule slotInOrderRules[] = {
    {"OFF", &SlotPowerOff},
    {"ON", &SlotPowerOn},
    {"", &SlotOk},
};

constexpr TextRule powerSupplyRules[] = {
    {"power supply's presence has been detected", &PSPresent},
    {"Power Supply Presence Detected", &PSPresent},
    {"power supply's presence has been lost", &PSRemoval},
    {"power supply has suffered a failure", &PSFailure},
    {"predictive failure has been detected for the power supply", &PSPredFailure},
    {"power supply's input (AC/DC) has been lost", &PSACLost},
    {"Power Supply Input (AC/DC) Lost", &PSACLost},
    {"Power Supply A/C is OK", &PSACOK},
    {"power supply's input (AC/DC) has been regained", &PSACOK},
};

constexpr TextRule processorRules[] = {
    {"IERR (Internal Error)", &ProcIERR},
    {"Thermal Trip", &ProcThermal},
    {"FRB1/BIST Failure", &ProcFRB1},
    {"FRB2/Hang in POST Failure", &ProcFRB2},
    {"FRB3:", &ProcFRB3},
    {"Configuration Error", &ProcConfigErr},
    {"processor's presence has been detected", &ProcPresence},
    {"processor has been disabled", &ProcDisabled},
    {"terminator's presence has been detected", &ProcEnabled},
    {"SM BIOS 'Uncorrectable CPU-Complex Error'", &ProcSMBIOS},
};

constexpr TextRule surgeLoopRules[] = {
    {"reports it has been asserted.", &PGSurgeLoopEvtAsserted},
    {"reports it has been deasserted.", &PGSurgeLoopEvtDeasserted},
};

bool holds(const eventData& event, std::string_view part)
{
    return std::string_view(event.stEventDesc).find(part) != std::string_view::npos;
}

const TrapOid* firstThatFits(std::span<const TextRule> rules, const eventData& event)
{
    for (const auto& [part, oid] : rules)
        if (holds(event, part))
            return oid;
    return nullptr;
}

struct SeverityRule {
    int severity;
    const TrapOid* oid;
    const TrapOid* lowerOid; ///< when a text of the threshold's side says "Lower"
};

constexpr SeverityRule healthRules[] = {
    {ENUM_STATUS_OTHER, &HealthOther, nullptr},
    {ENUM_STATUS_UNKNOWN, &HealthUnknown, nullptr},
    {ENUM_STATUS_OK, &HealthOk, nullptr},
    {ENUM_STATUS_NONCRI, &HealthNonCri, nullptr},
    {ENUM_STATUS_CRITICAL, &HealthCritical, nullptr},
    {ENUM_STATUS_NONREC, &HealthNonRec, nullptr},
};

constexpr SeverityRule powerUnitRules[] = {
    {ENUM_STATUS_OK, &PUFullRedund, nullptr},
    {ENUM_STATUS_NONCRI, &PURedundDegraded, nullptr},
    {ENUM_STATUS_CRITICAL, &PURedundLost, nullptr},
};

constexpr SeverityRule coolingUnitRules[] = {
    {ENUM_STATUS_OK, &CUFullRedund, nullptr},
    {ENUM_STATUS_NONCRI, &CURedundDegraded, nullptr},
    {ENUM_STATUS_CRITICAL, &CURedundLost, nullptr},
};

constexpr SeverityRule temperatureRules[] = {
    {ENUM_STATUS_OK, &TEventOk, &TEventOk},
    {ENUM_STATUS_NONCRI, &TUpNonCri, &TLowNonCri},
    {ENUM_STATUS_CRITICAL, &TUpCri, &TLowCri},
    {ENUM_STATUS_NONREC, &TUpNonRec, &TLowNonRec},
};

constexpr SeverityRule voltageRules[] = {
    {ENUM_STATUS_OK, &VEventOk, &VEventOk},
    {ENUM_STATUS_NONCRI, &VUpNonCri, &VLowNonCri},
    {ENUM_STATUS_CRITICAL, &VUpCri, &VLowCri},
    {ENUM_STATUS_NONREC, &VUpNonRec, &VLowNonRec},
};

constexpr SeverityRule coolingDeviceRules[] = {
    {ENUM_STATUS_OK, &CEventOk, &CEventOk},
    {ENUM_STATUS_NONCRI, &CUpNonCri, &CLowNonCri},
    {ENUM_STATUS_CRITICAL, &CUpCri, &CLowCri},
    {ENUM_STATUS_NONREC, &CUpNonRec, &CLowNonRec},
};

const TrapOid* bySeverity(std::span<const SeverityRule> rules, const eventData& event, bool isLower = false)
{
    for (const SeverityRule& rule : rules)
        if (rule.severity == event.nSeverity)
            return isLower ? rule.lowerOid : rule.oid;
    return nullptr;
}

bool saysLower(const eventData& event)
{
    return holds(event, "Lower") || holds(event, "lower");
}

const TrapOid* byPerformance(const eventData& event, const TrapOid& met, const TrapOid& lags)
{
    const std::string_view text = event.stEventDesc;
    if (text == "performance has been met")
        return &met;
    return text == "performance is lagging" ? &lags : nullptr;
}

constexpr TrapGroup trapGroups[] = {
    {1, getSystemMgtEventOID, TrapGroup::two},
    {2, getBiosEventOID, TrapGroup::two},
    {3, getChassisEventOID, TrapGroup::two},
    {4, getCoolingDeviceEventOID, TrapGroup::four, true, {600, 20}},
    {5, getCoolingUnitEventOID, TrapGroup::four, false, {600, 10}},
    {8, getMemoryEventOID, TrapGroup::four, true, {500, 20}},
    {9, getPhpSlotEventOID, TrapGroup::fourOfSlot},
    {10, getPowerSupplyEventOID, TrapGroup::four, true, {400, 20}},
    {11, getPowerUnitEventOID, TrapGroup::four, true, {400, 10}},
    {12, getProcessorEventOID, TrapGroup::four, true, {300, 10}},
    {14, getTemperatureEventOID, TrapGroup::four, true, {600, 40}},
    {15, getVoltageEventOID, TrapGroup::four, true, {400, 30}},
    {17, getDiscreteVoltageEventOID, TrapGroup::four, false, {400, 40}},
    {18, getDiscreteCoolingEventOID, TrapGroup::four, false, {600, 30}},
    {19, getDriveSlotEventOID, TrapGroup::four, false, {700, 10}},
    {20, getPGSurgeLoopEventOID, TrapGroup::two},
};

constexpr int systemGroup = 1;
constexpr std::size_t arcPlace = trapBase.size();

template<std::size_t Length>
std::vector<SubId> subIds(const std::array<SubId, Length>& name)
{
    return {name.begin(), name.end()};
}

Varbind trapName(const TrapOid& oid)
{
    return {subIds(objid_snmptrap), subIds(oid)};
}

Varbind eventText(const eventData& event)
{
    return {subIds(eventDescOID), std::string(event.stEventDesc)};
}

long shownSeverity(const eventData& event)
{
    return getNewHealthEnum(event.nSeverity);
}

/// The object's name for a row of a table.
ObjectOid inTable(ObjectOid name, const SubId (&arc)[2], int row)
{
    std::ranges::copy(arc, name.begin() + arcPlace);
    name.back() = static_cast<SubId>(row);
    return name;
}

/// The front of the object's name only: what stood behind it stays.
void takeFront(ObjectOid& name, const TrapOid& front)
{
    copyOID(name.data(), front.data(), static_cast<int>(front.size()));
}

} // namespace

const TrapOid* getSystemMgtEventOID(const eventData& event)
{
    return bySeverity(healthRules, event);
}

const TrapOid* getPowerUnitEventOID(const eventData& event)
{
    return bySeverity(powerUnitRules, event);
}

const TrapOid* getCoolingUnitEventOID(const eventData& event)
{
    return bySeverity(coolingUnitRules, event);
}

const TrapOid* getDriveSlotEventOID(const eventData& event)
{
    return firstThatFits(driveSlotRules, event);
}

const TrapOid* getBiosEventOID(const eventData& event)
{
    return firstThatFits(biosRules, event);
}

const TrapOid* getPhpSlotEventOID(const eventData& event)
{
    switch (event.nSeverity) {
    case ENUM_STATUS_OK:
        return firstThatFits(slotInOrderRules, event);
    case ENUM_STATUS_NONCRI:
    case ENUM_STATUS_CRITICAL:
        return &SlotFault;
    default:
        return nullptr;
    }
}

const TrapOid* getTemperatureEventOID(const eventData& event)
{
    return bySeverity(temperatureRules, event, holds(event, "Lower"));
}

const TrapOid* getMemoryEventOID(const eventData& event)
{
    return firstThatFits(memoryRules, event);
}

const TrapOid* getVoltageEventOID(const eventData& event)
{
    return bySeverity(voltageRules, event, saysLower(event));
}

const TrapOid* getPowerSupplyEventOID(const eventData& event)
{
    return firstThatFits(powerSupplyRules, event);
}

const TrapOid* getProcessorEventOID(const eventData& event)
{
    return firstThatFits(processorRules, event);
}

const TrapOid* getDiscreteCoolingEventOID(const eventData& event)
{
    return byPerformance(event, DCPerformMet, DCPerformLags);
}

const TrapOid* getDiscreteVoltageEventOID(const eventData& event)
{
    return byPerformance(event, DVPerformMet, DVPerformLags);
}

const TrapOid* getCoolingDeviceEventOID(const eventData& event)
{
    return bySeverity(coolingDeviceRules, event, saysLower(event));
}

const TrapOid* getChassisEventOID(const eventData& event)
{
    if (!holds(event, "the chassis is now closed"))
        return &IntrusionCleared;
    if (!holds(event, "there has been a chassis intrusion"))
        return &IntrusionDetected;
    if (std::string_view(event.stEventDesc) == "LAN Leash Lost: System Unplugged From LAN")
        return &LanLeashLost;
    return nullptr;
}

const TrapOid* getPGSurgeLoopEventOID(const eventData& event)
{
    return firstThatFits(surgeLoopRules, event);
}

void copyOID(unsigned long* to, const unsigned long* from, int length)
{
    std::copy_n(from, length, to);
}

namespace client::traps {

const TrapGroup* findTrapGroup(int group)
{
    const auto* const found = std::ranges::find(trapGroups, group, &TrapGroup::group);
    return found == std::end(trapGroups) ? nullptr : found;
}

Trap TrapMaker::makeTwoObjects(const eventData& event, const TrapOid& oid)
{
    const TrapOid& severityName = event.nEventGroup == systemGroup ? systemSeverityOID : eventSeverityOID;
    return {trapName(oid), eventText(event), {subIds(severityName), shownSeverity(event)}};
}

Trap TrapMaker::makeFourObjects(const TrapGroup& group, const eventData& event, const TrapOid& oid)
{
    nameObjects(group, event.nInstIndex);
    return {trapName(oid),
            eventText(event),
            {subIds(severity), shownSeverity(event)},
            {subIds(description), std::string(event.stDeviceDesc)},
            {subIds(deviceId), static_cast<long>(event.nDeviceId)}};
}

void TrapMaker::nameObjects(const TrapGroup& group, int row)
{
    if (group.objects == TrapGroup::fourOfSlot) {
        takeFront(deviceId, phpDeviceIdOID);
        takeFront(description, phpDeviceDescOID);
        takeFront(severity, phpSeverityOID);
        return;
    }
    deviceId = inTable(otherDeviceIdOID, group.arc, row);
    description = inTable(otherDeviceDescOID, group.arc, row);
    severity = inTable(otherSeverityOID, group.arc, row);
}

} // namespace client::traps

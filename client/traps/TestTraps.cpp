#include "client/traps/TestTraps.hpp"

#include "client/words/Entities.hpp"
#include "client/words/Text.hpp"

namespace client::traps {

namespace {

struct TestTrap {
    std::string_view name;
    const TrapOid* oid;
    int group;
    int severity;
};

/// All traps, each with the group of its events and what it stands for.
constexpr TestTrap testTraps[] = {
    {"trapHealthOther", &HealthOther, 1, ENUM_STATUS_OTHER},
    {"trapHealthUnknown", &HealthUnknown, 1, ENUM_STATUS_UNKNOWN},
    {"trapHealthOk", &HealthOk, 1, ENUM_STATUS_OK},
    {"trapHealthNonCri", &HealthNonCri, 1, ENUM_STATUS_NONCRI},
    {"trapHealthCritical", &HealthCritical, 1, ENUM_STATUS_CRITICAL},
    {"trapHealthNonRec", &HealthNonRec, 1, ENUM_STATUS_NONREC},
    {"trapIntrusionDetected", &IntrusionDetected, 3, ENUM_STATUS_OK},
    {"trapIntrusionCleared", &IntrusionCleared, 3, ENUM_STATUS_OK},
    {"trapLanLeashLost", &LanLeashLost, 3, ENUM_STATUS_NONCRI},
    {"trapProcIERR", &ProcIERR, 12, ENUM_STATUS_CRITICAL},
    {"trapProcThermal", &ProcThermal, 12, ENUM_STATUS_CRITICAL},
    {"trapProcFRB1", &ProcFRB1, 12, ENUM_STATUS_CRITICAL},
    {"trapProcFRB2", &ProcFRB2, 12, ENUM_STATUS_CRITICAL},
    {"trapProcFRB3", &ProcFRB3, 12, ENUM_STATUS_CRITICAL},
    {"trapProcConfigErr", &ProcConfigErr, 12, ENUM_STATUS_NONCRI},
    {"trapProcPresence", &ProcPresence, 12, ENUM_STATUS_OK},
    {"trapProcDisabled", &ProcDisabled, 12, ENUM_STATUS_CRITICAL},
    {"trapProcEnabled", &ProcEnabled, 12, ENUM_STATUS_OK},
    {"trapProcSMBIOS", &ProcSMBIOS, 12, ENUM_STATUS_CRITICAL},
    {"trapPUFullRedund", &PUFullRedund, 11, ENUM_STATUS_OK},
    {"trapPURedundDegraded", &PURedundDegraded, 11, ENUM_STATUS_NONCRI},
    {"trapPURedundLost", &PURedundLost, 11, ENUM_STATUS_CRITICAL},
    {"trapPSPresent", &PSPresent, 10, ENUM_STATUS_OK},
    {"trapPSRemoval", &PSRemoval, 10, ENUM_STATUS_NONCRI},
    {"trapPSFailure", &PSFailure, 10, ENUM_STATUS_CRITICAL},
    {"trapPSPredFailure", &PSPredFailure, 10, ENUM_STATUS_NONCRI},
    {"trapPSACLost", &PSACLost, 10, ENUM_STATUS_CRITICAL},
    {"trapPSACOK", &PSACOK, 10, ENUM_STATUS_OK},
    {"trapVLowNonRec", &VLowNonRec, 15, ENUM_STATUS_NONREC},
    {"trapVLowCri", &VLowCri, 15, ENUM_STATUS_CRITICAL},
    {"trapVLowNonCri", &VLowNonCri, 15, ENUM_STATUS_NONCRI},
    {"trapVEventOk", &VEventOk, 15, ENUM_STATUS_OK},
    {"trapVUpNonCri", &VUpNonCri, 15, ENUM_STATUS_NONCRI},
    {"trapVUpCri", &VUpCri, 15, ENUM_STATUS_CRITICAL},
    {"trapVUpNonRec", &VUpNonRec, 15, ENUM_STATUS_NONREC},
    {"trapDVPerformMet", &DVPerformMet, 17, ENUM_STATUS_OK},
    {"trapDVPerformLags", &DVPerformLags, 17, ENUM_STATUS_NONCRI},
    {"trapMemSingleBit", &MemSingleBit, 8, ENUM_STATUS_NONCRI},
    {"trapMemMultiBit", &MemMultiBit, 8, ENUM_STATUS_CRITICAL},
    {"trapMemParity", &MemParity, 8, ENUM_STATUS_CRITICAL},
    {"trapMemScrubFail", &MemScrubFail, 8, ENUM_STATUS_CRITICAL},
    {"trapCUFullRedund", &CUFullRedund, 5, ENUM_STATUS_OK},
    {"trapCURedundDegraded", &CURedundDegraded, 5, ENUM_STATUS_NONCRI},
    {"trapCURedundLost", &CURedundLost, 5, ENUM_STATUS_CRITICAL},
    {"trapCLowNonRec", &CLowNonRec, 4, ENUM_STATUS_NONREC},
    {"trapCLowCri", &CLowCri, 4, ENUM_STATUS_CRITICAL},
    {"trapCLowNonCri", &CLowNonCri, 4, ENUM_STATUS_NONCRI},
    {"trapCEventOk", &CEventOk, 4, ENUM_STATUS_OK},
    {"trapCUpNonCri", &CUpNonCri, 4, ENUM_STATUS_NONCRI},
    {"trapCUpCri", &CUpCri, 4, ENUM_STATUS_CRITICAL},
    {"trapCUpNonRec", &CUpNonRec, 4, ENUM_STATUS_NONREC},
    {"trapDCPerformMet", &DCPerformMet, 18, ENUM_STATUS_OK},
    {"trapDCPerformLags", &DCPerformLags, 18, ENUM_STATUS_NONCRI},
    {"trapTLowNonRec", &TLowNonRec, 14, ENUM_STATUS_NONREC},
    {"trapTLowCri", &TLowCri, 14, ENUM_STATUS_CRITICAL},
    {"trapTLowNonCri", &TLowNonCri, 14, ENUM_STATUS_NONCRI},
    {"trapTEventOk", &TEventOk, 14, ENUM_STATUS_OK},
    {"trapTUpNonCri", &TUpNonCri, 14, ENUM_STATUS_NONCRI},
    {"trapTUpCri", &TUpCri, 14, ENUM_STATUS_CRITICAL},
    {"trapTUpNonRec", &TUpNonRec, 14, ENUM_STATUS_NONREC},
    {"trapSlotOk", &SlotOk, 9, ENUM_STATUS_OK},
    {"trapSlotFault", &SlotFault, 9, ENUM_STATUS_CRITICAL},
    {"trapSlotPowerOff", &SlotPowerOff, 9, ENUM_STATUS_OK},
    {"trapSlotPowerOn", &SlotPowerOn, 9, ENUM_STATUS_OK},
    {"trapSysReconfig", &SysReconfig, 2, ENUM_STATUS_OK},
    {"trapSysBoot", &SysBoot, 2, ENUM_STATUS_OK},
    {"trapHardwareFail", &HardwareFail, 2, ENUM_STATUS_CRITICAL},
    {"trapDriveSlotDeviceRemoved", &DriveSlotDeviceRemovedEventOid, 19, ENUM_STATUS_NONCRI},
    {"trapDriveSlotDeviceInserted", &DriveSlotDeviceInsertedEventOid, 19, ENUM_STATUS_OK},
    {"trapPGSurgeLoopEvtAsserted", &PGSurgeLoopEvtAsserted, 20, ENUM_STATUS_CRITICAL},
    {"trapPGSurgeLoopEvtDeasserted", &PGSurgeLoopEvtDeasserted, 20, ENUM_STATUS_OK},
};

} // namespace

std::optional<Trap> makeTestTrap(std::string_view name)
{
    const auto* const row = std::ranges::find(testTraps, name, &TestTrap::name);
    if (row == std::end(testTraps))
        return std::nullopt;
    eventData event;
    words::copyText(event.stEventDesc, "TEST, nothing has happened: " + std::string(name));
    words::copyText(event.stDeviceDesc, "TEST");
    event.nSeverity = row->severity;
    event.nEventGroup = row->group;
    const TrapGroup& group = *findTrapGroup(row->group);
    return group.objects == TrapGroup::two ? TrapMaker::makeTwoObjects(event, *row->oid)
                                           : TrapMaker().makeFourObjects(group, event, *row->oid);
}

std::string nameOf(const Trap& trap)
{
    const auto* const name = trap.empty() ? nullptr : std::get_if<std::vector<SubId>>(&trap.front().value);
    for (const TestTrap& each : testTraps)
        if (name && std::ranges::equal(*each.oid, *name))
            return std::string(each.name);
    return {};
}

} // namespace client::traps

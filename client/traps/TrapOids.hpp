#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

/// Names of the agent's traps and of what they carry.

namespace client::traps {

using SubId = unsigned long;

/// The trap base: 1.3.6.1.4.1.44444.2.10.3.5.
inline constexpr std::array<SubId, 11> trapBase = {1, 3, 6, 1, 4, 1, 44444, 2, 10, 3, 5};

/// The base and `tail` behind it.
template<class... Tail>
constexpr auto underBase(Tail... tail)
{
    std::array<SubId, trapBase.size() + sizeof...(Tail)> name{};
    std::ranges::copy(trapBase, name.begin());
    const std::array<SubId, sizeof...(Tail)> ending = {static_cast<SubId>(tail)...};
    std::ranges::copy(ending, name.begin() + trapBase.size());
    return name;
}

using TrapOid = std::array<SubId, 14>;

/// base.1000.group.number
constexpr TrapOid trapOid(SubId group, SubId number)
{
    return underBase(1000, group, number);
}

/// The zeros of a table's object are the table's arc and the row.
using ObjectOid = std::array<SubId, 16>;

/// Severity in the trap with two objects, where it does not speak of the system's health.
inline constexpr TrapOid eventSeverityOID = trapOid(10, 2);

} // namespace client::traps

inline constexpr client::traps::TrapOid HealthOther = client::traps::trapOid(20, 1);
inline constexpr client::traps::TrapOid HealthUnknown = client::traps::trapOid(20, 2);
inline constexpr client::traps::TrapOid HealthOk = client::traps::trapOid(20, 3);
inline constexpr client::traps::TrapOid HealthNonCri = client::traps::trapOid(20, 4);
inline constexpr client::traps::TrapOid HealthCritical = client::traps::trapOid(20, 5);
inline constexpr client::traps::TrapOid HealthNonRec = client::traps::trapOid(20, 6);

inline constexpr client::traps::TrapOid IntrusionDetected = client::traps::trapOid(30, 1);
inline constexpr client::traps::TrapOid IntrusionCleared = client::traps::trapOid(30, 2);
inline constexpr client::traps::TrapOid LanLeashLost = client::traps::trapOid(30, 3);

inline constexpr client::traps::TrapOid ProcIERR = client::traps::trapOid(40, 1);
inline constexpr client::traps::TrapOid ProcThermal = client::traps::trapOid(40, 2);
inline constexpr client::traps::TrapOid ProcFRB1 = client::traps::trapOid(40, 3);
inline constexpr client::traps::TrapOid ProcFRB2 = client::traps::trapOid(40, 4);
inline constexpr client::traps::TrapOid ProcFRB3 = client::traps::trapOid(40, 5);
inline constexpr client::traps::TrapOid ProcConfigErr = client::traps::trapOid(40, 6);
inline constexpr client::traps::TrapOid ProcPresence = client::traps::trapOid(40, 7);
inline constexpr client::traps::TrapOid ProcDisabled = client::traps::trapOid(40, 8);
inline constexpr client::traps::TrapOid ProcEnabled = client::traps::trapOid(40, 9);
inline constexpr client::traps::TrapOid ProcSMBIOS = client::traps::trapOid(40, 10);

inline constexpr client::traps::TrapOid PUFullRedund = client::traps::trapOid(50, 1);
inline constexpr client::traps::TrapOid PURedundDegraded = client::traps::trapOid(50, 2);
inline constexpr client::traps::TrapOid PURedundLost = client::traps::trapOid(50, 3);
inline constexpr client::traps::TrapOid PSPresent = client::traps::trapOid(50, 4);
inline constexpr client::traps::TrapOid PSRemoval = client::traps::trapOid(50, 5);
inline constexpr client::traps::TrapOid PSFailure = client::traps::trapOid(50, 6);
inline constexpr client::traps::TrapOid PSPredFailure = client::traps::trapOid(50, 7);
inline constexpr client::traps::TrapOid PSACLost = client::traps::trapOid(50, 8);
inline constexpr client::traps::TrapOid PSACOK = client::traps::trapOid(50, 9);
inline constexpr client::traps::TrapOid VLowNonRec = client::traps::trapOid(50, 10);
inline constexpr client::traps::TrapOid VLowCri = client::traps::trapOid(50, 11);
inline constexpr client::traps::TrapOid VLowNonCri = client::traps::trapOid(50, 12);
inline constexpr client::traps::TrapOid VEventOk = client::traps::trapOid(50, 13);
inline constexpr client::traps::TrapOid VUpNonCri = client::traps::trapOid(50, 14);
inline constexpr client::traps::TrapOid VUpCri = client::traps::trapOid(50, 15);
inline constexpr client::traps::TrapOid VUpNonRec = client::traps::trapOid(50, 16);
inline constexpr client::traps::TrapOid DVPerformMet = client::traps::trapOid(50, 17);
inline constexpr client::traps::TrapOid DVPerformLags = client::traps::trapOid(50, 18);

inline constexpr client::traps::TrapOid MemSingleBit = client::traps::trapOid(60, 1);
inline constexpr client::traps::TrapOid MemMultiBit = client::traps::trapOid(60, 2);
inline constexpr client::traps::TrapOid MemParity = client::traps::trapOid(60, 3);
inline constexpr client::traps::TrapOid MemScrubFail = client::traps::trapOid(60, 4);

inline constexpr client::traps::TrapOid CUFullRedund = client::traps::trapOid(70, 1);
inline constexpr client::traps::TrapOid CURedundDegraded = client::traps::trapOid(70, 2);
inline constexpr client::traps::TrapOid CURedundLost = client::traps::trapOid(70, 3);
inline constexpr client::traps::TrapOid CLowNonRec = client::traps::trapOid(70, 4);
inline constexpr client::traps::TrapOid CLowCri = client::traps::trapOid(70, 5);
inline constexpr client::traps::TrapOid CLowNonCri = client::traps::trapOid(70, 6);
inline constexpr client::traps::TrapOid CEventOk = client::traps::trapOid(70, 7);
inline constexpr client::traps::TrapOid CUpNonCri = client::traps::trapOid(70, 8);
inline constexpr client::traps::TrapOid CUpCri = client::traps::trapOid(70, 9);
inline constexpr client::traps::TrapOid CUpNonRec = client::traps::trapOid(70, 10);
inline constexpr client::traps::TrapOid DCPerformMet = client::traps::trapOid(70, 11);
inline constexpr client::traps::TrapOid DCPerformLags = client::traps::trapOid(70, 12);
inline constexpr client::traps::TrapOid TLowNonRec = client::traps::trapOid(70, 13);
inline constexpr client::traps::TrapOid TLowCri = client::traps::trapOid(70, 14);
inline constexpr client::traps::TrapOid TLowNonCri = client::traps::trapOid(70, 15);
inline constexpr client::traps::TrapOid TEventOk = client::traps::trapOid(70, 16);
inline constexpr client::traps::TrapOid TUpNonCri = client::traps::trapOid(70, 17);
inline constexpr client::traps::TrapOid TUpCri = client::traps::trapOid(70, 18);
inline constexpr client::traps::TrapOid TUpNonRec = client::traps::trapOid(70, 19);

inline constexpr client::traps::TrapOid SlotOk = client::traps::trapOid(80, 1);
inline constexpr client::traps::TrapOid SlotFault = client::traps::trapOid(80, 2);
inline constexpr client::traps::TrapOid SlotPowerOff = client::traps::trapOid(80, 3);
inline constexpr client::traps::TrapOid SlotPowerOn = client::traps::trapOid(80, 4);

inline constexpr client::traps::TrapOid SysReconfig = client::traps::trapOid(90, 1);
inline constexpr client::traps::TrapOid SysBoot = client::traps::trapOid(90, 2);
inline constexpr client::traps::TrapOid HardwareFail = client::traps::trapOid(90, 3);

inline constexpr client::traps::TrapOid DriveSlotDeviceRemovedEventOid = client::traps::trapOid(100, 1);
inline constexpr client::traps::TrapOid DriveSlotDeviceInsertedEventOid = client::traps::trapOid(100, 2);

inline constexpr client::traps::TrapOid PGSurgeLoopEvtAsserted = client::traps::trapOid(110, 1);
inline constexpr client::traps::TrapOid PGSurgeLoopEvtDeasserted = client::traps::trapOid(110, 2);

/// snmpTrapOID.0 (RFC 3418)
inline constexpr std::array<client::traps::SubId, 11> objid_snmptrap = {1, 3, 6, 1, 6, 3, 1, 1, 4, 1, 0};
inline constexpr client::traps::TrapOid eventDescOID = client::traps::trapOid(10, 1);
/// Severity when it speaks of the system's health.
inline constexpr client::traps::TrapOid systemSeverityOID = client::traps::underBase(100, 1, 0);

/// Names of the objects of a slot's trap.
inline constexpr client::traps::TrapOid phpDeviceIdOID = client::traps::trapOid(10, 4);
inline constexpr client::traps::TrapOid phpDeviceDescOID = client::traps::trapOid(10, 3);
inline constexpr client::traps::TrapOid phpSeverityOID = client::traps::trapOid(10, 2);

/// Names of the objects of a table's trap.
inline constexpr client::traps::ObjectOid otherDeviceIdOID = client::traps::underBase(0, 0, 1, 2, 0);
inline constexpr client::traps::ObjectOid otherDeviceDescOID = client::traps::underBase(0, 0, 1, 3, 0);
inline constexpr client::traps::ObjectOid otherSeverityOID = client::traps::underBase(0, 0, 1, 5, 0);
